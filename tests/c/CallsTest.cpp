#include "brevint/c.h"
#include "service/ReferenceService.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace brevint::test {
namespace {

template <auto Free>
struct Freed {
    void operator()(auto* object) const noexcept { Free(object); }
};
using Client = std::unique_ptr<brevint_client, Freed<brevint_client_free>>;
using Cancellation = std::unique_ptr<brevint_cancellation, Freed<brevint_cancellation_free>>;
using Error = std::unique_ptr<brevint_error, Freed<brevint_error_free>>;

Client MakeClient(const std::string& url) {
    return Client(brevint_client_new(url.c_str(), nullptr, nullptr));
}

/// Where a call stores something, which is freed at once.
template <auto Free>
class Stored;
template <class Kind, void (*Free)(Kind*)>
class Stored<Free> {
public:
    Stored() = default;
    Stored(const Stored&) = delete;
    Stored& operator=(const Stored&) = delete;
    ~Stored() { Free(m_stored); }
    operator Kind**() { return &m_stored; }

private:
    Kind* m_stored = nullptr;
};

/// What a call is given.
struct Given {
    brevint_client* client = nullptr;
    const char* id = "id";
    const char* name = R"("\#%)";
    const brevint_call* call = nullptr;
    brevint_error** error = nullptr;
};

/// A call that can be limited and cancelled.
struct Row {
    int32_t (*call)(const Given& g);
    bool takesName = false;
    bool takesId = false;
    bool changes = false; ///< Something at the service.
};

using Items = Stored<brevint_items_free>;
using Text = Stored<brevint_text_free>;

constexpr Row kSignIn = {[](const Given& g) {
    return brevint_sign_in(g.client, "ada", "ada-secret", g.call, g.error);
}};
constexpr Row kSignInBen = {[](const Given& g) {
    return brevint_sign_in(g.client, "ben", "ben-secret", g.call, g.error);
}};
constexpr Row kSignOut = {
    .call = [](const Given& g) { return brevint_sign_out(g.client, g.call, g.error); },
    .changes = true};
constexpr Row kList = {
    .call = [](const Given& g) { return brevint_list(g.client, g.id, g.call, Items(), g.error); },
    .takesId = true};
constexpr Row kDelete = {
    .call = [](const Given& g) { return brevint_delete(g.client, g.id, g.call, g.error); },
    .takesId = true,
    .changes = true};
constexpr Row kCreateFolder = {.call =
                                   [](const Given& g) {
                                       return brevint_create_folder(g.client, g.id, g.name, g.call,
                                                                    Text(), g.error);
                                   },
                               .takesName = true,
                               .takesId = true,
                               .changes = true};

constexpr Row kCalls[] = {
    kSignIn,
    kSignOut,
    kList,
    kDelete,
    kCreateFolder,
    {.call =
         [](const Given& g) {
             return brevint_find(g.client, g.id, "a/b", g.call, Items(), g.error);
         },
     .takesId = true},
    {.call =
         [](const Given& g) { return brevint_ask_path(g.client, g.id, g.call, Text(), g.error); },
     .takesId = true},
    {.call =
         [](const Given& g) {
             std::size_t count = 0;
             return brevint_read(g.client, g.id, 9, g.call, Text(), &count, g.error);
         },
     .takesId = true},
    {.call =
         [](const Given& g) {
             return brevint_ask_job(g.client, g.id, 0, g.call, Stored<brevint_job_free>(), g.error);
         },
     .takesId = true},
    {.call = [](const Given& g) { return brevint_check_out(g.client, g.id, g.call, g.error); },
     .takesId = true,
     .changes = true},
    {.call = [](const Given& g) { return brevint_check_in(g.client, g.id, g.call, g.error); },
     .takesId = true,
     .changes = true},
    {[](const Given& g) {
        return brevint_ask_identity(g.client, g.call, Stored<brevint_identity_free>(), g.error);
    }},
    {[](const Given& g) {
        return brevint_ask_versions(g.client, g.call, Stored<brevint_versions_free>(), g.error);
    }},
    {[](const Given& g) {
        return brevint_ask_templates(g.client, "a&b", g.call, Stored<brevint_templates_free>(),
                                     g.error);
    }},
};

/// The error of a call; null after a success.
Error ErrorOf(const Row& row, Given given) {
    brevint_error* stored = nullptr;
    given.error = &stored;
    const int32_t done = row.call(given);
    EXPECT_EQ(done == 0, stored != nullptr);
    EXPECT_TRUE(!stored || *stored->text != '\0');
    return Error(stored);
}

int32_t FailureOf(const Row& row, const Given& given) {
    const Error error = ErrorOf(row, given);
    return error ? error->failure : BREVINT_FAILURE_NONE;
}

TEST(Calls, TakeNothingForASuccessThatIsNotTheServices) {
    ScriptedServer server;
    const Client client = MakeClient(Narrow(server.Url("")));
    const std::string page = "<html><body>Accept the terms of this network.</body></html>";
    server.On("*").Reply(200, {{"Content-Type", "text/html"}}, page);
    for (const Row& row : kCalls) {
        SCOPED_TRACE(&row - kCalls);
        EXPECT_EQ(FailureOf(row, {client.get()}), BREVINT_FAILURE_NOT_THE_SERVICE);
    }
}

TEST(Calls, FollowNoRedirectWithTheSession) {
    ScriptedServer elsewhere;
    ScriptedServer server;
    const Client client = MakeClient(Narrow(server.Url("")));
    server.On("*").Reply(302, {{"Location", Narrow(elsewhere.Url("/"))}});
    for (const Row& row : kCalls) {
        SCOPED_TRACE(&row - kCalls);
        if (row.call == kSignIn.call) {
            continue; // that one is sent on to a portal
        }
        EXPECT_EQ(FailureOf(row, {client.get()}),
                  row.call == kSignOut.call ? BREVINT_FAILURE_NONE : BREVINT_FAILURE_NOT_SIGNED_IN);
    }
    EXPECT_EQ(elsewhere.ConnectionCount(), 0U);
}

TEST(Calls, TellNotSignedInFromNotAllowed) {
    const std::string refusal =
        "<ResponseData><Message>Authorization failed.</Message></ResponseData>";
    const std::string identity = "<ResponseData><IdentifyingPartyUri>u</IdentifyingPartyUri><Name>n"
                                 "</Name><IsUser>true</IsUser></ResponseData>";
    struct Case {
        int identityStatus;
        int32_t failure;
    };
    for (const Case& test :
         {Case{200, BREVINT_FAILURE_NOT_ALLOWED}, Case{403, BREVINT_FAILURE_NOT_SIGNED_IN},
          Case{503, BREVINT_FAILURE_UNAVAILABLE}}) {
        ScriptedServer server;
        const Client client = MakeClient(Narrow(server.Url("")));
        server.On("/application/identity").Reply(test.identityStatus, {}, identity);
        server.On("*").Reply(403, {}, refusal);
        EXPECT_EQ(FailureOf(kDelete, {client.get()}), test.failure) << test.identityStatus;
        EXPECT_EQ(server.RequestsFor("/application/identity").size(), 1U);
    }
}

/// What a call sends first; nothing if it refuses what it is given.
std::string FirstRequest(const Row& row, Given given) {
    ScriptedServer server;
    server.On("*").Reply(200);
    const Client client = MakeClient(Narrow(server.Url("")));
    given.client = client.get();
    ErrorOf(row, given);
    const auto requests = server.Requests();
    return requests.empty() ? ""
                            : requests[0].method + requests[0].target + '\n' + requests[0].body;
}

// What the table leaves out is tested nowhere else.
TEST(Calls, TakeAndChangeWhatTheTableSays) {
    for (const Row& row : kCalls) {
        SCOPED_TRACE(&row - kCalls);
        const std::string usual = FirstRequest(row, {});
        EXPECT_EQ(FirstRequest(row, {.id = "a?b"}), row.takesId ? "" : usual);
        EXPECT_EQ(FirstRequest(row, {.name = "a/b"}), row.takesName ? "" : usual);
        EXPECT_EQ(usual.find(R"("\"\\#%")") != std::string::npos, row.takesName) << usual;
        EXPECT_TRUE(row.changes || usual.starts_with("GET")) << usual;
    }
}

TEST(Calls, SendNoIdentifierOrNameThatWouldBreakARequest) {
    ScriptedServer server;
    const Client client = MakeClient(Narrow(server.Url("")));
    const char* const bad[] = {"",     "..",  "../../x", "a?b",     "a#b",
                               "a\"b", "a b", "a\r\nb",  "\xC3\xA4"};
    const char* const names[] = {"", ".", "..", "a/b", "a\nb", "a\x7F", "a\xC2\x85"};
    for (const Row& row : kCalls) {
        SCOPED_TRACE(&row - kCalls);
        for (const char* const id : bad) {
            EXPECT_TRUE(!row.takesId || FailureOf(row, {.client = client.get(), .id = id}) ==
                                            BREVINT_FAILURE_INVALID)
                << id;
        }
        for (const char* const name : names) {
            EXPECT_TRUE(!row.takesName || FailureOf(row, {.client = client.get(), .name = name}) ==
                                              BREVINT_FAILURE_INVALID)
                << name;
        }
    }
    EXPECT_EQ(server.ConnectionCount(), 0U);

    server.On("*").Reply(200, {}, "<ResponseData><UniqueId>../up</UniqueId></ResponseData>");
    EXPECT_EQ(FailureOf(kCreateFolder, {client.get()}), BREVINT_FAILURE_NOT_THE_SERVICE);
    EXPECT_EQ(server.Requests().size(), 1U);
}

TEST(SignIn, SendsNothingWhereItMustNotGo) {
    struct Case {
        const char* name;
        std::string portal; ///< "" stands for the portal beside the service
        std::string action; ///< "" stands for the service
        int32_t failure;
        std::size_t requests; ///< that the service and its portal see
    };
    ScriptedServer elsewhere;
    const std::string other = Narrow(elsewhere.Url("/in"));
    const Case cases[] = {
        {"portal in clear", "http://192.0.2.1/portal", "", BREVINT_FAILURE_NOT_THE_SERVICE, 1},
        {"portal of no kind", "ftp://127.0.0.1/portal", "", BREVINT_FAILURE_NOT_THE_SERVICE, 1},
        {"form for another host", "", "http://localhost:1/in", BREVINT_FAILURE_NOT_THE_SERVICE, 2},
        {"form for another port", "", other, BREVINT_FAILURE_NOT_THE_SERVICE, 2},
        {"form that goes nowhere", "", "javascript:alert(1)", BREVINT_FAILURE_NOT_THE_SERVICE, 2},
        {"all as it should be, but no session", "", "", BREVINT_FAILURE_NOT_THE_SERVICE, 3},
    };
    for (const Case& test : cases) {
        SCOPED_TRACE(test.name);
        ScriptedServer server;
        const std::string portal =
            test.portal.empty() ? Narrow(server.Url("/portal")) : test.portal;
        const std::string action = test.action.empty() ? Narrow(server.Url("/in")) : test.action;
        server.On("/").Reply(302, {{"Location", portal}});
        server.On("POST /portal?mode=VX")
            .Reply(200, {},
                   "<form action='" + action + "'><input type=hidden name=token value=t></form>");
        server.On("POST /in").Reply(200);
        EXPECT_EQ(FailureOf(kSignIn, {MakeClient(Narrow(server.Url(""))).get()}), test.failure);
        EXPECT_EQ(server.Requests().size(), test.requests);
    }
    EXPECT_EQ(elsewhere.ConnectionCount(), 0U);
}

TEST(Stopped, CallsReturnWhileTheServerIsSilent) {
    for (const Row& row : kCalls) {
        SCOPED_TRACE(&row - kCalls);
        ScriptedServer server;
        server.On("*").Wait("never");
        const Client client = MakeClient(Narrow(server.Url("")));
        const Cancellation cancellation(brevint_cancellation_new());
        brevint_call options;
        brevint_call_init(&options, sizeof options);
        options.cancellation = cancellation.get();
        std::thread canceller([&] {
            EXPECT_TRUE(server.AwaitArrivalAt("never"));
            brevint_cancellation_cancel(cancellation.get());
        });
        const Error cancelled = ErrorOf(row, {.client = client.get(), .call = &options});
        canceller.join();
        ASSERT_TRUE(cancelled);
        EXPECT_EQ(cancelled->failure, BREVINT_FAILURE_CANCELLED);
        EXPECT_EQ(cancelled->may_have_happened != 0, row.changes);

        brevint_call_init(&options, sizeof options);
        options.milliseconds = 1; // which may be over before anything is sent
        const Error late = ErrorOf(row, {.client = client.get(), .call = &options});
        ASSERT_TRUE(late);
        EXPECT_EQ(late->failure, BREVINT_FAILURE_TIMED_OUT);
        EXPECT_TRUE(row.changes || late->may_have_happened == 0);
        server.Open("never");
    }
}

TEST(Stopped, SignInsLeaveNoSession) {
    service::ReferenceService service;
    service.Start();
    const Client client = MakeClient(service.Url());
    std::mt19937 random(7); // the same moments in every run
    int stopped = 0;
    for (int round = 0; round < 60; ++round) {
        brevint_call limited;
        brevint_call_init(&limited, sizeof limited);
        const Cancellation cancellation(brevint_cancellation_new());
        limited.cancellation = cancellation.get();
        const auto moment =
            std::chrono::steady_clock::now() + std::chrono::microseconds(random() % 1000);
        std::thread canceller([&] {
            while (std::chrono::steady_clock::now() < moment) {}
            brevint_cancellation_cancel(cancellation.get());
        });
        // In turns, so that a session that is left stands in the way of the next.
        const int32_t failure = FailureOf(round % 2 == 0 ? kSignIn : kSignInBen,
                                          {.client = client.get(), .call = &limited});
        canceller.join();
        if (failure == BREVINT_FAILURE_NONE) {
            EXPECT_EQ(FailureOf(kSignOut, {client.get()}), BREVINT_FAILURE_NONE);
        } else {
            ++stopped;
            EXPECT_EQ(failure, BREVINT_FAILURE_CANCELLED);
        }
    }
    // The last to be given up may still be at work; the next sign-in waits for it.
    EXPECT_EQ(FailureOf(kSignIn, {client.get()}), BREVINT_FAILURE_NONE);
    EXPECT_EQ(FailureOf(kSignInBen, {client.get()}), BREVINT_FAILURE_SIGNED_IN_AS_OTHER);
    EXPECT_EQ(FailureOf(kSignOut, {client.get()}), BREVINT_FAILURE_NONE);
    EXPECT_EQ(FailureOf(kList, {client.get()}), BREVINT_FAILURE_NOT_SIGNED_IN);
    EXPECT_GT(stopped, 0);
}

TEST(Structures, OfOlderProgramsKeepWhatIsBehindThem) {
    brevint_item old;
    std::memset(&old, 0x5A, sizeof old);
    constexpr std::size_t kSize = offsetof(brevint_item, is_public); // it came later, say
    brevint_item_init(&old, kSize);
    EXPECT_EQ(old.size, kSize);
    EXPECT_EQ(old.bytes, BREVINT_UNKNOWN_SIZE);
    EXPECT_EQ(old.is_public, 0x5A5A5A5A);
}

} // namespace
} // namespace brevint::test
