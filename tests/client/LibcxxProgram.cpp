#include <brevint/client.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

void Require(bool holds, const char* what) {
    if (!holds) {
        std::cerr << "not so: " << what << '\n';
        std::exit(1);
    }
}

using Callback = brevint::StopCallback<std::function<void()>>;

void StopWhatHasAToken() {
    brevint::StopSource source;
    const brevint::StopToken token = source.get_token();
    Require(token.stop_possible() && !token.stop_requested(), "nobody has stopped it");
    Require(!brevint::StopToken().stop_possible(), "nobody can stop a token without a source");
    int calls = 0;
    std::optional<Callback> gone(std::in_place, token, [&] { calls += 100; });
    gone.reset();
    const Callback first(token, [&] { ++calls; });
    std::optional<Callback> ending;
    ending.emplace(token, [&] { ending.reset(), ++calls; });
    std::atomic<bool> isCalled = false;
    std::atomic<bool> mayEnd = false;
    std::atomic<bool> hasEnded = false;
    std::optional<Callback> slow(std::in_place, token, [&] {
        isCalled = true;
        isCalled.notify_one();
        mayEnd.wait(false);
        hasEnded = true;
    });
    std::thread stopper([&] { Require(source.request_stop(), "the first stop says so"); });
    isCalled.wait(false);
    Require(token.stop_requested(), "the token is stopped");
    std::thread opener([&] { mayEnd = true, mayEnd.notify_one(); });
    slow.reset();
    Require(hasEnded, "a callback under way is waited for");
    stopper.join();
    opener.join();
    const brevint::StopCallback late(token, [&] { ++calls; });
    Require(calls == 3, "each callback is called once while it exists");
    Require(!source.request_stop(), "a second stop does nothing");

    auto owner = std::make_unique<brevint::StopSource>();
    const brevint::StopCallback last(owner->get_token(), [&] { owner.reset(); });
    owner->request_stop();
    Require(!owner, "a callback may end the source");
}

void UseTheService(const char* url) {
    brevint::Client client(url);
    client.SignIn("ada", "ada-secret");
    std::vector<std::string> paths;
    for (const brevint::WalkEntry& entry : client.Walk(brevint::kProjects)) {
        paths.push_back(entry.path);
    }
    Require(paths.size() > 5, "a walk goes through the folders");
    Require(client.Read({brevint::kProjects, "Bridge/Notes.txt"}, 100).size() == 28,
            "files are read");

    brevint::StopSource source;
    source.request_stop();
    brevint::Error error;
    const brevint::Listing none =
        client.List(brevint::kProjects, {.stop = source.get_token(), .error = &error});
    Require(none.empty() && error.failure == brevint::Failure::Cancelled, "a stopped call ends");

    brevint::Transfer transfer =
        client.Download({brevint::kProjects, "Big.bin"}, "Big.bin", {.onChange = [](const auto&) {
                            throw std::domain_error("the callback's");
                        }});
    try {
        transfer.Wait();
        Require(false, "what a callback throws is thrown again");
    } catch (const std::domain_error&) {
        Require(transfer.GetOutcome().state == brevint::TransferState::Cancelled,
                "it is cancelled");
    }
}

} // namespace

// program URL: uses the headers, built with clang's standard library, in the working folder.
int main(int, char** argv) {
    StopWhatHasAToken();
    UseTheService(argv[1]);
}
