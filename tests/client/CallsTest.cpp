#include "brevint/RootFolder.h"
#include "brevint/client.h"
#include "service/ReferenceService.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <functional>
#include <optional>
#include <ranges>
#include <string>
#include <thread>
#include <vector>

namespace brevint::test {
namespace {

static_assert(std::ranges::random_access_range<Listing> && std::ranges::sized_range<Listing>);
static_assert(std::ranges::input_range<FolderWalk>);

using How = const CallOptions&;

/// What a call ends with, which it stores and throws alike.
template <class Function>
Error ErrorOf(Function call, const StopToken& stop = {}) {
    Error error;
    call(CallOptions{.stop = stop, .error = &error});
    try {
        call(CallOptions{.stop = stop});
        EXPECT_FALSE(error);
    } catch (const Exception& thrown) {
        EXPECT_EQ(thrown.GetError().failure, error.failure);
        EXPECT_EQ(thrown.what(), error.text);
        EXPECT_NE(error.text, "");
    }
    return error;
}

class Calls : public testing::Test {
protected:
    Calls() {
        m_service.Start();
        m_client = Client(m_service.Url());
        m_client.SignIn("ada", "ada-secret");
    }

    service::ReferenceService m_service;
    Client m_client{"http://127.0.0.1"};
};

TEST_F(Calls, SignInOnceAndOut) {
    m_client.SignIn("ada", "ada-secret"); // the same user again
    EXPECT_EQ(m_client.WhoAmI().name, "ada");
    EXPECT_EQ(m_client.WhoAmI().role, Role::Administrator);
    EXPECT_EQ(ErrorOf([&](How how) { m_client.SignIn("ben", "ben-secret", how); }).failure,
              Failure::SignedInAsOther);
    const std::string session = m_client.SaveSession();
    EXPECT_TRUE(m_client.RestoreSession(session));
    EXPECT_EQ(m_client.WhoAmI().name, "ada");
    EXPECT_EQ(ErrorOf([&](How how) {
                  m_client.Delete({kProjects, ""}, how);
              }).failure,
              Failure::Invalid);
    EXPECT_EQ(ErrorOf([&](How how) { m_client.RestoreSession("none", how); }).failure,
              Failure::Invalid);
    m_client.SignOut();
    const Error refused = ErrorOf([&](How how) { m_client.SignIn("ada", "wrong", how); });
    EXPECT_EQ(refused.failure, Failure::SignInRefused);
    EXPECT_NE(refused.serverMessage, "");
    EXPECT_EQ(ErrorOf([&](How how) { std::ignore = m_client.List(kProjects, how); }).failure,
              Failure::NotSignedIn);
}

TEST_F(Calls, HandOnWhatTheServiceTells) {
    EXPECT_TRUE(std::ranges::equal(std::string(kProjects), std::wstring(RootFolder::Projects)));
    EXPECT_TRUE(std::ranges::equal(std::string(kTemplates), std::wstring(RootFolder::Templates)));
    const Item notes = m_client.Find(kProjects, "Bridge/Notes.txt");
    EXPECT_EQ(notes.kind, ItemKind::File);
    EXPECT_EQ(notes.size, 28U);
    EXPECT_EQ(notes.description, "First inspection");
    EXPECT_FALSE(notes.isLocked);
    using namespace std::chrono_literals;
    EXPECT_EQ(notes.createdTime, std::chrono::sys_days(2024y / 3 / 1) + 9h + 30min);
    m_client.CheckOut({kProjects, "Bridge/Notes.txt"});
    EXPECT_EQ(m_client.Find(notes.parentId, "Notes.txt").lockedBy, "ada");
    m_client.CheckIn(notes);
    EXPECT_EQ(m_client.Read(notes, 28), "Span 3 needs a second look.\n");
    EXPECT_EQ(m_client.Read({kProjects, "Bridge/Empty.txt"}, 0), "");
    for (const ItemRef& larger : {ItemRef(notes), ItemRef(notes.id)}) {
        EXPECT_EQ(ErrorOf([&](How how) { std::ignore = m_client.Read(larger, 27, how); }).failure,
                  Failure::Refused);
    }
    EXPECT_FALSE(m_client.GetVersions().applications.empty());
    const std::vector<Template> templates = m_client.GetTemplates();
    ASSERT_FALSE(templates.empty());
    EXPECT_EQ(m_client.GetTemplates(templates[0].key).front().id, templates[0].id);
}

TEST_F(Calls, TakeNamesThatHurtThereAndBack) {
    const std::vector<std::string> names = {
        "R&D 'plan' [draft]", "..leading",    "100% #1", "a+b;c=d,e", "&amp;",
        "日本 📷 é",           "{0} %s $HOME",
    };
    const std::string parent = m_client.CreateFolder(kProjects, "Names");
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        const std::string id = m_client.CreateFolder({kProjects, "Names"}, name);
        EXPECT_EQ(m_client.Find(kProjects, "Names/" + name).id, id);
        EXPECT_EQ(m_client.PathOf(id), "/Projects/Names/" + name);
    }
    const Listing listing = m_client.List(parent);
    std::vector<std::string> listed;
    std::ranges::transform(listing, std::back_inserter(listed), &Item::name);
    EXPECT_TRUE(std::ranges::is_permutation(listed, names));
    ASSERT_EQ(listing.size(), names.size());
    EXPECT_EQ((listing.end() - 1)[0].id, listing[names.size() - 1].id);
    EXPECT_EQ(ErrorOf([&](How how) { m_client.CreateFolder(parent, names[0], how); }).failure,
              Failure::Exists);
    m_client.Delete({kProjects, "Names"});
    EXPECT_EQ(ErrorOf([&](How how) {
                  m_client.Delete({kProjects, "Names"}, how);
              }).failure,
              Failure::NotFound);
}

TEST_F(Calls, WalkDepthFirst) {
    std::vector<std::string> paths;
    FolderWalk walk = m_client.Walk(kProjects);
    for (const WalkEntry& entry : walk) {
        EXPECT_EQ(entry.depth, static_cast<std::size_t>(std::ranges::count(entry.path, '/')));
        EXPECT_EQ(m_client.Find(kProjects, entry.path).id, entry.item.id);
        paths.push_back(entry.path);
        if (entry.path == "Archive") {
            walk.SkipContents();
        }
    }
    ASSERT_GE(paths.size(), 3U);
    EXPECT_EQ(paths[0], "Archive");
    EXPECT_EQ(paths[1], "Bridge");
    EXPECT_EQ(paths[2].substr(0, 7), "Bridge/");
    FolderWalk below = m_client.Walk({kProjects, "Bridge"});
    EXPECT_EQ("Bridge/" + below.begin()->path, paths[2]);
    m_client.SignOut();
    const auto failure = [&](How how) {
        for (const WalkEntry& entry : m_client.Walk(kProjects, how)) {
            ADD_FAILURE() << entry.path;
        }
    };
    EXPECT_EQ(ErrorOf(failure).failure, Failure::NotSignedIn);
}

TEST(Walk, EndsWhereAFolderContainsItself) {
    const std::string name = R"(a "quoted" back\slash <b>?)";
    ScriptedServer server;
    server.On("*").Reply(200, {},
                         "<ResponseData><Item><UniqueId>again</UniqueId><ItemType>0</ItemType>"
                         "<Name>a \"quoted\" back\\slash &lt;b>?</Name></Item></ResponseData>");
    const Client client(Narrow(server.Url("/")));
    EXPECT_EQ(client.Find("top", name + '/' + name).id, "again");
    const auto walk = [&](How how) {
        std::size_t depth = 0;
        for (const WalkEntry& entry : client.Walk("top", how)) {
            ASSERT_EQ(entry.path, depth == 0 ? name : name + '/' + name);
            ASSERT_LT(++depth, 3U);
        }
    };
    EXPECT_EQ(ErrorOf(walk).failure, Failure::NotTheService);
}

TEST(Stopped, CallsEndAtOnce) {
    ScriptedServer server;
    server.On("*").Wait("never");
    const Client client(Narrow(server.Url("/")));
    for (const ItemRef& folder : {ItemRef("id"), ItemRef("id", "below/it")}) {
        StopSource stop;
        std::thread stopper([&] {
            server.AwaitArrivalAt("never");
            stop.request_stop();
        });
        const auto list = [&](How how) {
            std::ignore = client.List(folder, how);
        };
        EXPECT_EQ(ErrorOf(list, stop.get_token()).failure, Failure::Cancelled);
        stopper.join();
    }
    Error error;
    std::ignore = client.Read("id", 1, {.limit = std::chrono::milliseconds(1), .error = &error});
    EXPECT_EQ(error.failure, Failure::TimedOut);
    server.Open("never");
}

TEST(Stopped, CallbacksMayGoWhileTheyAreCalled) {
    for (int round = 0; round < 300; ++round) {
        StopSource source;
        std::atomic<bool> isCalled = false;
        std::optional<StopCallback<std::function<void()>>> callback(
            std::in_place, source.get_token(), [&] {
                isCalled = true;
                for (int i = 0; i < round % 40; ++i) {
                    std::this_thread::yield();
                }
            });
        std::thread stopper([&] { source.request_stop(); });
        while (!isCalled) {
            std::this_thread::yield();
        }
        callback.reset();
        stopper.join();
    }
}

TEST(Misuse, IsALogicError) {
    Error error;
    const Client none("no address", {}, &error);
    EXPECT_EQ(error.failure, Failure::Invalid);
    EXPECT_THROW(Client("no address"), Exception);
    EXPECT_THROW(std::ignore = none.List("id", {.error = &error}), std::logic_error);
    const Client client("http://127.0.0.1");
    EXPECT_THROW(std::ignore = client.List(std::string("i\0d", 3)), std::logic_error);
    EXPECT_THROW(std::ignore = Transfer().GetProgress(), std::logic_error);
}

} // namespace
} // namespace brevint::test
