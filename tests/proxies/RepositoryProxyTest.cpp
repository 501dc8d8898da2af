#include "brevint/brevint.h"
#include "tests/library/Helpers.h"
#include "tests/support/AwaitComplete.h"
#include "tests/support/RefusedPort.h"
#include "tests/support/ResponseKinds.h"
#include "tests/support/ScriptedServer.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <tuple>

namespace brevint::test {
namespace {

constexpr const wchar_t* kFileName = L"\u00DCberblick \u2014 \u6982\u8981.txt";
constexpr const char* kFileNameUtf8 = "\xC3\x9C"
                                      "berblick \xE2\x80\x94 \xE6\xA6\x82\xE8\xA6\x81.txt";

TEST(RepositoryProxy, OperationsOnTheWireAndTheirReplies) {
    const TempFolder folder;
    const std::string content("file\0\r\n\xFF content", 16);
    const auto path = WriteFile(folder.Path(kFileName), content);
    const auto file = Multipart(kFileNameUtf8, content);
    using Proxy = CRepositoryProxy;
    using Text = const std::wstring&;
    struct Case {
        const char* kind;
        std::function<IReadOnlyResponse*(Proxy&, Text url, Text id)> call;
        std::string request; ///< verb and target, in which "$" stands for the identifier
        std::string body;
        std::string reply;
        std::wstring detail; ///< what the success brings
        bool followsRedirects = false;
    };
    const Case cases[] = {
        {"CheckInOut", &Proxy::CheckOut, "PUT /app/Repository/Items/$/Locked",
         R"({"ItemId":"$","Locked":true})", "", L""},
        {"CheckInOut", &Proxy::CheckIn, "PUT /app/Repository/Items/$/Locked",
         R"({"ItemId":"$","Locked":false})", "<Message>Item already checked in.</Message>",
         L"Item already checked in."},
        {"DownloadFile",
         [&](Proxy& p, Text url, Text id) {
             auto* const response = p.DownloadFile(url, id, folder.Path(L"download"));
             EXPECT_TRUE(AwaitComplete(*response));
             return response;
         },
         "GET /app/Repository/Files/$", "", "", L""},
        {"OverwriteFile",
         [&](Proxy& p, Text url, Text id) { return p.OverwriteFile(url, id, path); },
         "PUT /app/Repository/Files/$", file, "<JobId>j1</JobId>", L"j1|"},
        {"UploadFile", [&](Proxy& p, Text url, Text id) { return p.UploadFile(url, id, path); },
         "POST /app/Repository/Items/$/Files", file, "<JobId>j2</JobId>", L"j2|"},
        {"GetFolderContents", &Proxy::GetFolderContents, "GET /app/Repository/Items/$/Items", "",
         "<Item><Name>\xC3\xBC</Name></Item>", L"|||\u00FC||||||||lockedpublic;"},
        {"Path", &Proxy::GetPath, "GET /app/Repository/Items/$/Path", "", "<Path>/a/b</Path>",
         L"/a/b"},
        {"CreateFolder",
         [](Proxy& p, Text url, Text id) {
             return p.CreateFolder(url, id, L"\u00FC \"\\%ITEMID%");
         },
         "POST /app/Repository/Items/$/Items",
         "{\"ItemType\":0,\"Name\":\"\xC3\xBC \"\\%ITEMID%\"}", "<UniqueId>n1</UniqueId>", L"n1|"},
        {"Delete", &Proxy::Delete, "DELETE /app/Repository/Items", R"({"ItemIds":["$"]})", "", L""},
        {"PollUploadStatus", &Proxy::PollUploadFileStatus, "GET /app/Repository/Jobs/$", "",
         "<Status>2</Status><Details>n2</Details>", L"1|n2", true},
        {"PollOverwriteStatus", &Proxy::PollOverwriteFileStatus, "GET /app/Repository/Jobs/$", "",
         "<Status>0</Status>", L"0|", true},
    };
    WebRequestFactory factory;
    const RefusedPort refused;
    for (const auto& test : cases) {
        SCOPED_TRACE(test.request);
        for (const std::string id :
             {"6f9619ff-8b86-d011-b42d-00c04fc964ff", "i/1?",
              "%ITEMID%%PARENTID%%FILEID%%FOLDERID%%JOBID%%PARENTFOLDERID%"}) {
            SCOPED_TRACE(id);
            const auto filledIn = [&id](const std::string& text) {
                return Replace(text, "$", id);
            };
            const std::wstring wideId(id.begin(), id.end());
            ScriptedServer server;
            server.On("*").Reply(200, {}, Document(std::string(250'000, ' ') + test.reply));
            server.On("*").Reply(401, {}, Document("<Message>Authorization failed.</Message>"));
            server.On("*").Reply(302, {{"Location", "/elsewhere"}}, "moved");
            server.On("/elsewhere").Reply(401, {}, Document("<Message>Elsewhere.</Message>"));
            CRepositoryProxy proxy(&factory);

            const auto call = [&](const std::wstring& url) {
                return Read(test.kind, test.call(proxy, url, wideId));
            };
            EXPECT_EQ(call(server.Url("/app")), Reading(ErrorCode::Success, test.detail));
            const auto request = server.Requests().at(0);
            EXPECT_EQ(request.method + ' ' + request.target, filledIn(test.request));
            EXPECT_EQ(request.Header("Accept"), test.kind == std::string("DownloadFile")
                                                    ? "application/octet-stream"
                                                    : "text/xml");
            EXPECT_EQ(request.Header("Content-Type"),
                      test.body == file ? "multipart/form-data; boundary=" + kBoundary : "");
            EXPECT_EQ(request.body, filledIn(test.body));

            EXPECT_EQ(call(server.Url("/app/")).first, ErrorCode::AuthorizationFailed);
            EXPECT_EQ(server.Requests().at(1).target, request.target) << "one slash in between";
            EXPECT_EQ(server.ConnectionCount(), 1u) << "calls in a row share it";
            call(server.Url("/app"));
            EXPECT_EQ(server.RequestsFor("/elsewhere").size(), test.followsRedirects ? 1u : 0u);
            for (const std::wstring& nowhere : {refused.Url(), std::wstring()}) {
                EXPECT_EQ(call(nowhere).first, ErrorCode::EmptyReply);
            }
        }
    }
}

TEST(RepositoryProxy, AnIdentifierCannotEndTheRequestLine) {
    const std::pair<const wchar_t*, std::string> cases[] = {
        {L"", "/app/Repository/Items//Path"},
        {L"..", "/app/Repository/Path"},
        {L"a\r\nX-Mine: 1", "/app/Repository/Items/a%0D%0AX-Mine:%201/Path"},
        {L"a\x01\t\x7F", "/app/Repository/Items/a%01%09%7F/Path"},
        {L"a#b", "/app/Repository/Items/a"}, // Wine sends the rest too
    };
    for (const auto& [id, target] : cases) {
        SCOPED_TRACE(target);
        ScriptedServer server;
        server.On("*").Reply(200, {}, Document("<Path>/</Path>"));
        WebRequestFactory factory;
        CRepositoryProxy proxy(&factory);
        EXPECT_EQ(Read("Path", proxy.GetPath(server.Url("/app"), id)).second, L"/");
        const auto request = server.Requests().at(0);
        EXPECT_EQ(request.target.substr(0, request.target.find('#')), target);
        EXPECT_EQ(request.HeaderCount("X-Mine"), 0u);
    }
}

/// Handle numbers are used again as soon as they are free, so a request that closed a number which
/// is not its own any more would hurt a request of another thread.
TEST(RepositoryProxy, ServesEachOfManyThreads) {
    const TempFolder folder;
    ScriptedServer server;
    std::atomic<int> wrong = 0;
    const auto work = [&](const std::wstring& id) {
        const auto url = server.Url("");
        const auto path = folder.Path(id);
        WebRequestFactory factory;
        CRepositoryProxy proxy(&factory);
        for (int round = 0; round < 125; ++round) {
            for (const auto& [kind, response, detail] :
                 {std::tuple<const char*, IReadOnlyResponse*, std::wstring>(
                      "Path", proxy.GetPath(url, id), id),
                  {"OverwriteFile", proxy.OverwriteFile(url, id, path), id + L'|'},
                  {"PollUploadStatus", proxy.PollUploadFileStatus(url, id), L"1|" + id},
                  {"GetFolderContents", proxy.GetFolderContents(url, id),
                   L"|||" + id + L"||||||||lockedpublic;"}}) {
                wrong += Read(kind, response) != Reading(ErrorCode::Success, detail);
            }
            // Handles that come and go without traffic make numbers change hands quickly.
            for (int opening = 0; opening < 5; ++opening) {
                WebRequest(url.c_str(), WebRequestTypeGet).Connect(0);
            }
            if (round % 25 == 0) {
                const std::unique_ptr<IDownloadFileResponse> file(
                    proxy.DownloadFile(url, id, path));
                wrong += !AwaitComplete(*file) || Utf8::ToWide(ReadFile(path)) != id;
            }
        }
    };
    std::vector<std::jthread> threads;
    for (const std::string id : {"a", "b", "c", "d", "e", "f", "g", "h"}) {
        server.On("GET /Repository/Files/" + id).Reply(200, {}, id);
        const auto reply =
            Document("<Path>" + id + "</Path><JobId>" + id + "</JobId><Status>2</Status><Details>" +
                     id + "</Details><Item><Name>" + id + "</Name></Item>");
        for (const auto* target : {"/Items/%/Path", "/Items/%/Items", "/Jobs/%", "/Files/%"}) {
            server.On("/Repository" + Replace(target, "%", id)).Reply(200, {}, reply);
        }
        threads.emplace_back(work, Utf8::ToWide(id));
    }
    threads.clear();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(server.Requests().size(), 8u * (500u + 5u));
}

} // namespace
} // namespace brevint::test
