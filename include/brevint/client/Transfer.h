#pragma once

#include "brevint/client/Error.h"
#include "brevint/client/StopToken.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

namespace brevint {

/// Runs a function, now or later: posts it to the application's own loop, for example.
using Executor = std::function<void(std::function<void()>)>;

/// No time limit.
inline constexpr std::chrono::milliseconds kForever = (std::chrono::milliseconds::max)();

namespace detail {
inline brevint_queue_settings QueueDefaults() {
    return Initial(brevint_queue_settings_init);
}
} // namespace detail

/// How a client's transfers behave.
struct TransferSettings {
    /// Transfers that run at a time: 4.
    std::uint32_t concurrent = detail::QueueDefaults().concurrent;
    /// Without progress in between, the first included: 5.
    std::uint32_t attempts = detail::QueueDefaults().attempts;
    /// Before the second attempt, doubled before each further one: 1 s.
    std::chrono::milliseconds firstPause{detail::QueueDefaults().first_pause};
    /// 30 s.
    std::chrono::milliseconds longestPause{detail::QueueDefaults().longest_pause};
    /// Without progress, after which a connection is broken: 60 s.
    std::chrono::milliseconds stallLimit{detail::QueueDefaults().stall_limit};
    /// For the reply to a file that was sent: 10 min.
    std::chrono::milliseconds replyLimit{detail::QueueDefaults().reply_limit};
};

/// How a transfer stands. The last three are final.
enum class TransferState : std::int32_t {
    Waiting = BREVINT_TRANSFER_WAITING,       ///< For its turn; a group: it is being planned.
    Running = BREVINT_TRANSFER_RUNNING,       ///< Bytes move, or it pauses before an attempt.
    Processing = BREVINT_TRANSFER_PROCESSING, ///< The service has the file; its job is not done.
    NeedsSignIn = BREVINT_TRANSFER_NEEDS_SIGN_IN, ///< It goes on after a sign-in.
    Finished = BREVINT_TRANSFER_FINISHED,
    Failed = BREVINT_TRANSFER_FAILED,
    Cancelled = BREVINT_TRANSFER_CANCELLED
};

/// Whether the state does not change any more.
[[nodiscard]] constexpr bool IsFinal(TransferState state) noexcept {
    return state == TransferState::Finished || state == TransferState::Failed ||
           state == TransferState::Cancelled;
}

/// A snapshot of a transfer.
struct Progress {
    TransferState state = TransferState::Waiting;
    std::uint64_t bytesDone = 0; ///< Of the file. Never goes back.
    std::optional<std::uint64_t> bytesTotal;
    std::uint64_t bytesPerSecond = 0; ///< Lately.
    std::optional<std::chrono::seconds> timeLeft;
    /// Of bytesDone: an earlier transfer has left them, and this one goes on from there.
    std::uint64_t bytesResumed = 0;
};

/// What came of a transfer, or how it stands: see `state`.
struct Outcome {
    TransferState state = TransferState::Waiting;
    Error error = {};                     ///< None unless it has failed or was cancelled.
    std::filesystem::path localPath = {}; ///< Of the file written or sent.
    std::string itemId = {};              ///< Of the item fetched, or made by the service.
    std::string jobId = {};               ///< Of a file that the service accepted.
    bool verified = false;   ///< The size was compared with what server or caller had said.
    bool jobGoesOn = false;  ///< The service goes on processing what was sent.
    bool keptBeside = false; ///< The content is complete, see Transfer::Finish.

    /// Whether it has finished.
    [[nodiscard]] explicit operator bool() const noexcept {
        return state == TransferState::Finished;
    }
};

namespace detail {

inline Outcome ToOutcome(const brevint_outcome& outcome) {
    const auto failure = static_cast<Failure>(outcome.failure);
    return {.state = static_cast<TransferState>(outcome.state),
            .error = {.failure = failure,
                      .code = failure == Failure::None ? 0 : outcome.code,
                      .connection = static_cast<Connection>(outcome.connection),
                      .httpStatus = static_cast<int>(outcome.http_status),
                      .text = Text(outcome.text),
                      .hint = Text(outcome.hint),
                      .serverMessage = Text(outcome.server_message),
                      .mayHaveHappened = outcome.may_have_happened != 0},
            .localPath = Path(outcome.local_path),
            .itemId = Text(outcome.item_id),
            .jobId = Text(outcome.job_id),
            .verified = outcome.verified != 0,
            .jobGoesOn = outcome.job_goes_on != 0,
            .keptBeside = outcome.kept_beside != 0};
}

/// What BasicTransfer needs to know of a transfer of one file.
struct OneFile {
    using Handle = brevint_transfer;
    using Raw = brevint_progress;
    using Progress = brevint::Progress;

    static Progress ToProgress(const Raw& raw) {
        return {.state = static_cast<TransferState>(raw.state),
                .bytesDone = raw.bytes_done,
                .bytesTotal = Size(raw.bytes_total),
                .bytesPerSecond = raw.bytes_per_second,
                .timeLeft = Duration(raw.seconds_left),
                .bytesResumed = raw.bytes_resumed};
    }
    static Progress GetProgress(const Handle* handle) {
        Raw raw = Initial(brevint_progress_init);
        brevint_transfer_progress(handle, &raw);
        return ToProgress(raw);
    }
    static bool GetOutcome(const Handle* handle, brevint_outcome* outcome) {
        return brevint_transfer_outcome(handle, outcome) != 0;
    }
    static void Cancel(Handle* handle) { brevint_transfer_cancel(handle); }
    static void Free(Handle* handle) noexcept { brevint_transfer_free(handle); }
};

/// Stands between the library's listener and the application's callback. It is shared by the
/// transfer, the listener while it is called, and what has been posted.
template <class Kind>
class Watcher : public std::enable_shared_from_this<Watcher<Kind>> {
public:
    using Handle = typename Kind::Handle;
    using Progress = typename Kind::Progress;
    using Callback = std::function<void(const Progress&)>;

    Watcher(Callback callback, Executor executor)
        : m_callback(std::move(callback)), m_executor(std::move(executor)) {}

    /// As the library calls it, with the watcher as `user`.
    static void Listen(void* user, Handle*, const typename Kind::Raw* raw) {
        const auto self = static_cast<Watcher*>(user)->shared_from_this(); // lasts for the call
        self->OnChange(Kind::ToProgress(*raw));
    }

    /// The transfer has begun. A callback may have failed already.
    void Begun(const std::shared_ptr<Handle>& handle) {
        std::unique_lock lock(m_mutex);
        m_handle = handle;
        if (m_thrown) {
            lock.unlock();
            Kind::Cancel(handle.get());
        }
    }

    /// The callback is not called any more, except where it is being called on another thread.
    void Leave() noexcept { m_isWatched = false; }

    /// Waits until the end has been told, or a sign-in is needed, or the token is stopped, or the
    /// time is up. Throws what the callback has thrown.
    void Wait(const Handle* handle, const StopToken& stop, std::chrono::milliseconds limit) {
        const StopCallback<std::function<void()>> wake(stop, [this] { Wake(); });
        std::unique_lock lock(m_mutex);
        const auto isOver = [&] {
            return m_hasEnded || stop.stop_requested() ||
                   Kind::GetProgress(handle).state == TransferState::NeedsSignIn;
        };
        if (limit > std::chrono::hours(24 * 365)) { // the clock would overflow
            m_changed.wait(lock, isOver);
        } else {
            m_changed.wait_for(lock, limit, isOver);
        }
        if (m_hasEnded && m_thrown) {
            std::rethrow_exception(std::exchange(m_thrown, nullptr));
        }
    }

private:
    void OnChange(const Progress& progress) {
        if (m_callback && m_isWatched) {
            Post(progress);
        }
        Wake(IsFinal(progress.state));
    }

    void Post(const Progress& progress) {
        if (!m_executor) {
            Tell(progress);
            return;
        }
        Guard([&] {
            m_executor([weak = this->weak_from_this(), progress] {
                if (const auto self = weak.lock()) {
                    self->Tell(progress);
                }
            });
        });
    }

    void Tell(const Progress& progress) {
        if (m_isWatched) {
            Guard([&] { m_callback(progress); });
        }
    }

    /// Calls what is the application's. What that throws cancels the transfer.
    template <class Function>
    void Guard(Function function) {
        std::exception_ptr thrown;
        try {
            function();
            return;
        } catch (...) {
            thrown = std::current_exception();
        }
        std::unique_lock lock(m_mutex);
        if (!m_thrown) {
            m_thrown = std::move(thrown);
        }
        const std::shared_ptr<Handle> handle = m_handle.lock();
        lock.unlock();
        if (handle) {
            Kind::Cancel(handle.get());
        }
    }

    void Wake(bool hasEnded = false) {
        const std::lock_guard lock(m_mutex);
        m_hasEnded = m_hasEnded || hasEnded;
        m_changed.notify_all();
    }

    const Callback m_callback;
    const Executor m_executor;
    std::atomic<bool> m_isWatched = true;

    std::mutex m_mutex; ///< Guards what follows. Not held while anybody else's code runs.
    std::condition_variable m_changed;
    bool m_hasEnded = false; ///< And the callback has been told so, or what tells it is posted.
    std::exception_ptr m_thrown;
    std::weak_ptr<Handle> m_handle;
};

} // namespace detail

/// What Transfer and TransferGroup have in common. Any thread may call its functions, while none
/// moves or destroys it. Destroying it cancels what has not ended.
///
/// **The callback** is told of every change of state, and of progress at most ten times a second.
/// It is called by the client's executor, or without one on a thread of the library, or within the
/// call that causes the change. Two threads may be in it at once then: the transfer's own, and the
/// one that cancels. Without an executor destroying waits for a call on another thread; with one,
/// a transfer that is destroyed on the executor's thread is told nothing more. It may be destroyed
/// within its own callback. What the callback throws cancels the transfer, and the next Wait throws
/// it again.
template <class Kind>
class BasicTransfer {
public:
    /// What the callback is told: brevint::Progress or GroupProgress.
    using ProgressType = typename Kind::Progress;

    /// None. Every function but the comparison with true throws std::logic_error.
    BasicTransfer() = default;

    /// Whether there is one.
    [[nodiscard]] explicit operator bool() const noexcept { return m_running != nullptr; }

    /// Returns at once.
    [[nodiscard]] ProgressType GetProgress() const { return Kind::GetProgress(Handle()); }

    /// Waits until it has ended and its callback has been told so, or until a sign-in is needed;
    /// not longer than the limit, and only until the token is stopped. The state of what it returns
    /// tells which. The transfer goes on unless it has ended: destroy or Cancel it to give up.
    ///
    /// With an executor, told means posted, so the executor's own thread may wait.
    Outcome Wait(const StopToken& stop = {}, std::chrono::milliseconds limit = kForever) const {
        Running().watcher->Wait(Handle(), stop, limit);
        return GetOutcome();
    }

    /// What came of it. Before its end only the state.
    [[nodiscard]] Outcome GetOutcome() const {
        brevint_outcome outcome = detail::Initial(brevint_outcome_init);
        return Kind::GetOutcome(Handle(), &outcome) ? detail::ToOutcome(outcome)
                                                    : Outcome{.state = GetProgress().state};
    }

    /// Ends it, unless it has ended, and removes what it made. Returns at once, however silent the
    /// server is. A job that the service has begun goes on.
    void Cancel() { Kind::Cancel(Handle()); }

protected:
    /// What stands between the library and the callback.
    using Watcher = detail::Watcher<Kind>;

    /// Takes over what the library has begun.
    BasicTransfer(std::shared_ptr<Watcher> watcher, typename Kind::Handle* begun) {
        // The watcher lives as long as the library may call it, and then lets go of the handle.
        std::shared_ptr<typename Kind::Handle> handle(begun, [watcher](auto* freed) mutable {
            Kind::Free(freed);
            watcher.reset();
        });
        m_running.reset(new State{watcher, handle});
        watcher->Begun(handle);
    }

    /// For the functions of brevint/c.h.
    typename Kind::Handle* Handle() const { return Running().handle.get(); }

private:
    struct State {
        std::shared_ptr<Watcher> watcher;
        std::shared_ptr<typename Kind::Handle> handle;

        ~State() { watcher->Leave(); }
    };

    const State& Running() const {
        return m_running ? *m_running : throw std::logic_error("brevint: there is no transfer");
    }

    std::unique_ptr<State> m_running;
};

/// How a file is fetched.
struct DownloadOptions {
    /// See BasicTransfer; may be empty.
    std::function<void(const Progress&)> onChange = {};
    /// A download of another size fails. Unless set, it is what the Item tells.
    std::optional<std::uint64_t> listedSize = {};
    bool durable = false;   ///< Flushed to the disk before it takes its place.
    bool keepsPart = false; ///< When cancelled, what has come stays for a later download.
};

/// How a file is sent.
struct UploadOptions {
    /// See BasicTransfer; may be empty.
    std::function<void(const Progress&)> onChange = {};
};

/// One file on its way.
///
///     brevint::Transfer transfer = client.Download(item, "Plan.xlsx");
///     if (const brevint::Outcome outcome = transfer.Wait(); !outcome) {
///         std::cerr << outcome.error.text << '\n';
///     }
class Transfer : public BasicTransfer<detail::OneFile> {
public:
    Transfer() = default;

    /// Puts content that is kept beside its destination in place. False: it still cannot take it.
    bool Finish() { return brevint_transfer_finish(Handle()) != 0; }

private:
    friend class Client;
    using BasicTransfer::BasicTransfer;
};

} // namespace brevint
