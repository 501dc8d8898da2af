#include "brevint/c.h"
#include "service/ReferenceService.h"
#include "tests/support/ScriptedServer.h"

#include <gtest/gtest.h>

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

using Function = int32_t (*)(brevint_client*, const brevint_call*, brevint_error**);

/// Frees what a call has stored after a success.
template <class Stored, class Call, class Free>
int32_t Drop(Call call, Free free) {
    Stored* stored = nullptr;
    const int32_t done = call(&stored);
    free(stored);
    return done;
}

int32_t List(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return Drop<brevint_items>(
        [&](auto** at) { return brevint_list(client, "id", call, at, error); }, brevint_items_free);
}
int32_t AskPath(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return Drop<char>([&](auto** at) { return brevint_ask_path(client, "id", call, at, error); },
                      brevint_text_free);
}
int32_t AskIdentity(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return Drop<brevint_identity>(
        [&](auto** at) { return brevint_ask_identity(client, call, at, error); },
        brevint_identity_free);
}
int32_t AskVersions(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return Drop<brevint_versions>(
        [&](auto** at) { return brevint_ask_versions(client, call, at, error); },
        brevint_versions_free);
}
int32_t AskTemplates(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return Drop<brevint_templates>(
        [&](auto** at) { return brevint_ask_templates(client, "a&b", call, at, error); },
        brevint_templates_free);
}
int32_t CreateFolder(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return Drop<char>(
        [&](auto** at) { return brevint_create_folder(client, "id", "\"\\#%", call, at, error); },
        brevint_text_free);
}
int32_t Delete(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return brevint_delete(client, "id", call, error);
}
int32_t CheckOut(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return brevint_check_out(client, "id", call, error);
}
int32_t SignIn(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return brevint_sign_in(client, "ada", "ada-secret", call, error);
}
int32_t SignInBen(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return brevint_sign_in(client, "ben", "ben-secret", call, error);
}
int32_t SignOut(brevint_client* client, const brevint_call* call, brevint_error** error) {
    return brevint_sign_out(client, call, error);
}

constexpr Function kCalls[] = {List,         AskPath, AskIdentity, AskVersions, AskTemplates,
                               CreateFolder, Delete,  CheckOut,    SignIn,      SignOut};

/// The failure of a call; "none" after a success.
int32_t FailureOf(Function call, brevint_client* client, const brevint_call* options = nullptr) {
    brevint_error* stored = nullptr;
    const int32_t done = call(client, options, &stored);
    const Error error(stored);
    EXPECT_EQ(done == 0, error != nullptr);
    EXPECT_TRUE(!error || *error->text != '\0');
    return error ? error->failure : BREVINT_FAILURE_NONE;
}

TEST(Calls, TakeNothingForASuccessThatIsNotTheServices) {
    ScriptedServer server;
    const Client client = MakeClient(Narrow(server.Url("")));
    const std::string page = "<html><body>Accept the terms of this network.</body></html>";
    server.On("*").Reply(200, {{"Content-Type", "text/html"}}, page);
    for (const Function call : kCalls) {
        EXPECT_EQ(FailureOf(call, client.get()), BREVINT_FAILURE_NOT_THE_SERVICE);
    }
}

TEST(Calls, FollowNoRedirectWithTheSession) {
    ScriptedServer elsewhere;
    ScriptedServer server;
    const Client client = MakeClient(Narrow(server.Url("")));
    server.On("*").Reply(302, {{"Location", Narrow(elsewhere.Url("/"))}});
    for (const Function call : kCalls) {
        if (call == SignIn) {
            continue; // that one is sent on to a portal
        }
        const int32_t failure = FailureOf(call, client.get());
        EXPECT_EQ(failure, call == SignOut ? BREVINT_FAILURE_NONE : BREVINT_FAILURE_NOT_SIGNED_IN);
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
        EXPECT_EQ(FailureOf(Delete, client.get()), test.failure) << test.identityStatus;
        EXPECT_EQ(server.RequestsFor("/application/identity").size(), 1U);
    }
}

TEST(Calls, SendNoIdentifierOrNameThatWouldBreakARequest) {
    ScriptedServer server;
    const Client client = MakeClient(Narrow(server.Url("")));
    const std::string_view bad[] = {"",     "..",  "../../x", "a?b",     "a#b",
                                    "a\"b", "a b", "a\r\nb",  "\xC3\xA4"};
    for (const std::string_view id : bad) {
        brevint_error* error = nullptr;
        brevint_delete(client.get(), std::string(id).c_str(), nullptr, &error);
        EXPECT_EQ(Error(error)->failure, BREVINT_FAILURE_INVALID) << id;
    }
    const std::string_view names[] = {"", ".", "..", "a/b", "a\nb", "a\x7F", "a\xC2\x85"};
    for (const std::string_view name : names) {
        brevint_error* error = nullptr;
        char* id = nullptr;
        brevint_create_folder(client.get(), "id", std::string(name).c_str(), nullptr, &id, &error);
        EXPECT_EQ(Error(error)->failure, BREVINT_FAILURE_INVALID) << name;
    }
    EXPECT_EQ(server.ConnectionCount(), 0U);

    server.On("*").Reply(200, {}, "<ResponseData><UniqueId>../up</UniqueId></ResponseData>");
    EXPECT_EQ(FailureOf(CreateFolder, client.get()), BREVINT_FAILURE_NOT_THE_SERVICE);
    ASSERT_EQ(server.Requests().size(), 1U);
    EXPECT_EQ(server.Requests()[0].body, R"({"ItemType":0,"Name":"\"\\#%"})");
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
        EXPECT_EQ(FailureOf(SignIn, MakeClient(Narrow(server.Url(""))).get()), test.failure);
        EXPECT_EQ(server.Requests().size(), test.requests);
    }
    EXPECT_EQ(elsewhere.ConnectionCount(), 0U);
}

TEST(Stopped, CallsReturnWhileTheServerIsSilent) {
    ScriptedServer server;
    server.On("*").Wait("never");
    const Client client = MakeClient(Narrow(server.Url("")));
    brevint_call limited;
    brevint_call_init(&limited, sizeof limited);
    limited.milliseconds = 1;
    for (const Function call : kCalls) {
        EXPECT_EQ(FailureOf(call, client.get(), &limited), BREVINT_FAILURE_TIMED_OUT);
        const Cancellation cancellation(brevint_cancellation_new());
        brevint_call options;
        brevint_call_init(&options, sizeof options);
        options.cancellation = cancellation.get();
        std::thread canceller([&] { brevint_cancellation_cancel(cancellation.get()); });
        EXPECT_EQ(FailureOf(call, client.get(), &options), BREVINT_FAILURE_CANCELLED);
        canceller.join();
    }
    server.Open("never");
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
        std::thread canceller([&, spins = random() % 3000] {
            for (unsigned i = 0; i < spins; ++i) {
                std::this_thread::yield();
            }
            brevint_cancellation_cancel(cancellation.get());
        });
        // In turns, so that a session that is left stands in the way of the next.
        const int32_t failure =
            FailureOf(round % 2 == 0 ? SignIn : SignInBen, client.get(), &limited);
        canceller.join();
        if (failure == BREVINT_FAILURE_NONE) {
            EXPECT_EQ(FailureOf(SignOut, client.get()), BREVINT_FAILURE_NONE);
        } else {
            ++stopped;
            EXPECT_EQ(failure, BREVINT_FAILURE_CANCELLED);
        }
    }
    // The last to be given up may still be at work; the next sign-in waits for it.
    EXPECT_EQ(FailureOf(SignIn, client.get()), BREVINT_FAILURE_NONE);
    EXPECT_EQ(FailureOf(SignInBen, client.get()), BREVINT_FAILURE_SIGNED_IN_AS_OTHER);
    EXPECT_EQ(FailureOf(SignOut, client.get()), BREVINT_FAILURE_NONE);
    EXPECT_EQ(FailureOf(List, client.get()), BREVINT_FAILURE_NOT_SIGNED_IN);
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
