#include "brevint/IDownloadFileResponse.h"
#include "brevint/IRepositoryProxy.h"
#include "brevint/InterfaceIds.h"
#include "brevint/ProxyFactory.h"
#include "brevint/c.h"
#include "tests/support/Environment.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <thread>

namespace brevint::test {
namespace {

// A host of plug-ins loads the library, works with it and frees it, over and over: sometimes right
// behind a download, sometimes in the middle of one.
TEST(Module, IsLoadedAndFreedOverAndOver) {
    const TempFolder folder;
    ScriptedServer server;
    std::size_t before = 0;
    for (int round = 0; round < 100; ++round) {
        const auto gate = std::to_string(round);
        const bool finishes = round % 2 == 0;
        auto& script = server.On("/Repository/Files/" + gate).Head(200, {{"Content-Length", "9"}});
        finishes ? script.Send("123456789") : script.Send("1234").Wait(gate).Send("56789");

        void* const module = LoadModule(BREVINT_MODULE);
        ASSERT_NE(module, nullptr);
        alignas(CProxyFactory) std::byte memory[sizeof(CProxyFactory)];
        reinterpret_cast<void (*)(void*)>(FindSymbol(module, "_ZN13CProxyFactoryC1Ev"))(memory);
        auto* const factory = reinterpret_cast<IProxyFactory*>(memory);
        void* object = nullptr;
        ASSERT_EQ(factory->Create(IID_IRepositoryProxy, &object), 1);
        auto* const proxy = static_cast<IRepositoryProxy*>(object);
        const auto id = std::wstring(gate.begin(), gate.end());
        auto* const response = proxy->DownloadFile(server.Url(""), id, folder.Path(L"file"));
        while (finishes && !response->IsComplete()) {
            std::this_thread::yield();
        }
        ASSERT_TRUE(finishes || server.AwaitArrivalAt(gate));
        delete proxy;
        delete response;
        factory->~IProxyFactory();
        UnloadModule(module);
        server.Open(gate); // the platform goes on with what it was doing
        before = round == 20 ? CountHandles() : before;
    }
    // Connections that are kept for the next exchange come and go. One left in each round would
    // be 80.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (CountHandles() > before + 40 && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_LE(CountHandles(), before + 40);
}

// A cancelled upload's thread may remain inside the platform, and come back after that.
TEST(Module, MayBeFreedOnceATransferIsCancelled) {
    const TempFolder folder;
    const std::filesystem::path path = folder.Folder() / "file";
    std::ofstream(path) << "content";
    std::filesystem::resize_file(path, 40'000'000); // more than lies in a connection
    const std::string local = path.string();
    ScriptedServer server;
    server.OnConnect().Wait("gate");
    void* const module = LoadModule(BREVINT_MODULE);
#define BREVINT_FIND(name) reinterpret_cast<decltype(&(name))>(FindSymbol(module, #name))
    auto* const client =
        BREVINT_FIND(brevint_client_new)(Narrow(server.Url("")).c_str(), nullptr, nullptr);
    auto* const queue = BREVINT_FIND(brevint_queue_new)(client, nullptr);
    brevint_upload request;
    BREVINT_FIND(brevint_upload_init)(&request, sizeof request);
    request.folder_id = "id";
    request.local_path = local.c_str();
    auto* const transfer = BREVINT_FIND(brevint_queue_upload)(queue, &request);
    EXPECT_TRUE(server.AwaitArrivalAt("gate"));
    BREVINT_FIND(brevint_transfer_free)(transfer);
    BREVINT_FIND(brevint_queue_free)(queue);
    BREVINT_FIND(brevint_client_free)(client);
#undef BREVINT_FIND
    UnloadModule(module);
    server.Open("gate");
    std::error_code inUse; // on Windows, until the thread lets go of the file
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes(1);
    while (!std::filesystem::remove(path, inUse) && std::chrono::steady_clock::now() < deadline) {
        std::this_thread::yield();
    }
    EXPECT_FALSE(std::filesystem::exists(path));
}

} // namespace
} // namespace brevint::test
