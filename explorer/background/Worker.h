#pragma once

#include "brevint/client.h"

#include <functional>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace brevint::explorer {

/// What came of a piece of work.
template <class Value>
struct Reply {
    Error error;
    Value value = {}; ///< Empty after an error.
};

/// Work under way. Its owner and its result are on the window's thread. Destroying it gives it up,
/// and drops the result.
class Task {
public:
    Task() = default;
    Task(Task&& other) noexcept = default;
    Task& operator=(Task&& other) noexcept {
        std::swap(m_state, other.m_state);
        return *this;
    }
    ~Task();

    /// Ends the work at once. What comes of it is told as ever: that it was cancelled, most likely.
    void Stop();

private:
    friend class Worker;
    struct State;
    explicit Task(std::shared_ptr<State> state) : m_state(std::move(state)) {}

    std::shared_ptr<State> m_state;
};

/// Makes the calls that wait, each on a thread of its own, and brings what came of them to the
/// window's thread.
class Worker {
public:
    /// The executor runs functions on the window's thread.
    explicit Worker(Executor executor);
    /// Gives up all work, and waits for its threads, which takes no time: whatever the library
    /// waits for, it stops waiting when it is told so.
    ~Worker();
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    /// Calls `work` on a thread of its own, with a stop token, and then `done` with the Reply on
    /// the window's thread. A brevint::Exception that `work` throws is the reply's error.
    template <class Work, class Done>
    [[nodiscard]] Task Run(Work work, Done done) {
        using Value = std::invoke_result_t<Work, const StopToken&>;
        const auto reply = std::make_shared<Reply<Value>>();
        return Start(
            [work = std::move(work), reply](const StopToken& stop) {
                reply->error = Try([&] { reply->value = work(stop); });
            },
            [done = std::move(done), reply](const Error* notBegun) {
                if (notBegun) {
                    reply->error = *notBegun;
                }
                done(std::move(*reply));
            });
    }

private:
    /// `done` is told why there is no thread for the work, or null.
    Task Start(std::function<void(const StopToken&)> work, std::function<void(const Error*)> done);

    static Error Try(const std::function<void()>& work) {
        try {
            work();
            return {};
        } catch (const Exception& failed) {
            return failed.GetError();
        } catch (const std::bad_alloc&) {
            return {.failure = Failure::OutOfMemory, .text = "Out of memory."};
        }
    }

    struct Threads;
    Executor m_executor;
    std::shared_ptr<Threads> m_threads;
};

} // namespace brevint::explorer
