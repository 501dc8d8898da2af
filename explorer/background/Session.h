#pragma once

#include "brevint/client.h"
#include "explorer/background/Worker.h"

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace brevint::explorer {

/// The user's session with one service, and the calls that are made in it. A call that finds no
/// session or no service waits until the user has signed in, and is then made again. All of it is
/// on the window's thread, except the work of a call, which has a thread of its own. A result comes
/// to nobody once the object is gone.
class Session {
public:
    struct Listener {
        std::function<void()> onCallsChanged; ///< One has begun or ended.
        std::function<void()> onSignInNeeded; ///< See ResumeCalls and FailCalls.
    };
    using CallId = unsigned;

    Session(Worker& worker, Executor executor, Listener listener);
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// A client for the service of that address: the session's own for its user, or a new one that
    /// the session does not know yet. With the session's own, what waits there for a sign-in goes
    /// on. Null where something is wrong with the address. Nothing is sent.
    std::shared_ptr<Client> ClientFor(const std::string& url, bool isItsUser, Error& error) const;
    /// Turns to the service of such a client. Another client's calls are given up.
    void Open(const std::string& url, const std::shared_ptr<Client>& client);
    /// Gives up the service with all calls.
    void Close();

    /// Whether that is the address of the service it is, or was last, open to.
    bool IsAt(const std::string& url) const;
    bool IsOpen() const { return m_client != nullptr; }
    const std::shared_ptr<Client>& GetClient() const { return m_client; }
    const std::string& Url() const { return m_url; }

    /// Calls `work(client, options)` on a thread of its own, and then `done` with the Reply.
    template <class Work, class Done>
    CallId Call(Work work, Done done) {
        const CallId id = ++m_lastCall;
        Make(id, std::move(work), std::move(done));
        return id;
    }
    /// The same in a client that may not be the session's. It never waits for a sign-in.
    template <class Work, class Done>
    CallId CallIn(const std::shared_ptr<Client>& client, const Work& work, const Done& done) {
        const CallId id = ++m_lastCall;
        MakeIn(client, id, work, done);
        return id;
    }
    /// Its result is wanted by nobody any more.
    void Drop(CallId id);
    /// Ends a call at once, which tells that it was cancelled.
    void Stop(CallId id);
    /// Ends all calls, which tell that they were cancelled.
    void StopAll();

    bool IsBusy() const { return !m_calls.empty(); }
    /// Since when the call that has taken longest is under way.
    std::chrono::seconds LongestWait() const;

    /// Makes the calls that wait for a sign-in.
    void ResumeCalls();
    /// There is none: these calls fail.
    void FailCalls();
    /// Another user, or service, follows: the calls that wait fail, and those under way are
    /// cancelled. None of them goes on in the session that follows.
    void GiveUp();
    /// Another number for each user and each service.
    unsigned Tenure() const { return m_tenure; }

private:
    using Clock = std::chrono::steady_clock;
    /// Long enough for any listing; whoever does not want to wait stops the call.
    static constexpr std::chrono::minutes kLimit{5};

    struct Pending {
        Clock::time_point begin;
        Task task;
        std::function<void()> cancel; ///< Tells so without waiting for the task.
    };
    struct Waiting {
        CallId id;
        std::function<void()> resume;
        std::function<void()> fail;
    };

    template <class Work, class Done>
    void Make(CallId id, Work work, Done done) {
        if (!m_client) {
            using Value = std::invoke_result_t<Work, Client&, const CallOptions&>;
            Wait(id, work, done,
                 Reply<Value>{{.failure = Failure::NotSignedIn, .text = "There is no session."}});
            return;
        }
        MakeIn(m_client, id, work, [this, id, work, done](auto&& reply) {
            if (reply.error.failure == Failure::NotSignedIn) {
                this->Wait(id, work, done, reply);
            } else {
                done(std::forward<decltype(reply)>(reply));
            }
        });
    }

    template <class Work, class Done>
    void MakeIn(const std::shared_ptr<Client>& client, CallId id, const Work& work,
                const Done& done) {
        auto onThread = [client, work](const StopToken& stop) {
            return work(*client, CallOptions{.stop = stop, .limit = kLimit});
        };
        auto onWindow = [this, id, done](auto&& reply) {
            m_calls.erase(id);
            m_listener.onCallsChanged();
            done(std::forward<decltype(reply)>(reply));
        };
        auto cancel = [done] {
            using Value = std::invoke_result_t<Work, Client&, const CallOptions&>;
            done(Reply<Value>{{.failure = Failure::Cancelled,
                               .text = "It was cancelled: another session has begun.",
                               .mayHaveHappened = true}});
        };
        m_calls[id] = {Clock::now(), m_worker.Run(std::move(onThread), std::move(onWindow)),
                       std::move(cancel)};
        m_listener.onCallsChanged();
    }

    template <class Work, class Done, class Reply>
    void Wait(CallId id, const Work& work, const Done& done, const Reply& reply) {
        m_waiting.push_back({id, [this, id, work, done] { Make(id, work, done); },
                             [done, reply] {
                                 done(reply);
                             }});
        m_listener.onSignInNeeded();
    }

    Worker& m_worker;
    const Executor m_executor;
    const Listener m_listener;
    std::string m_url;
    std::shared_ptr<Client> m_client;
    std::map<CallId, Pending> m_calls;
    std::vector<Waiting> m_waiting;
    CallId m_lastCall = 0;
    unsigned m_tenure = 0;
};

} // namespace brevint::explorer
