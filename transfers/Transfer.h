#pragma once

#include "calls/StopSignal.h"
#include "transfers/Attempts.h"
#include "transfers/ListenerGate.h"
#include "transfers/Service.h"
#include "transfers/Speed.h"
#include "transfers/TransferState.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace transfers {

class TransferQueue;

using TransferListener = ListenerGate<TransferProgress>::Listener;

/// One file on its way. A queue runs it; whoever started it holds it too, and lets go of it once.
class Transfer : public std::enable_shared_from_this<Transfer> {
public:
    Transfer(std::shared_ptr<const Service> service, TransferListener listener);
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;
    virtual ~Transfer() = default;

    /// Any thread, without a lock.
    TransferProgress GetProgress() const noexcept;
    /// Waits until the state is final and the listener has been told so, or a sign-in is needed;
    /// false when the time was up before.
    bool Wait(std::chrono::milliseconds time) const;
    /// Null until the state is final. Does not change any more then.
    const TransferOutcome* GetOutcome() const;

    /// Ends it, unless it has ended. Returns at once, however silent the server is; a block that is
    /// being written to a file is waited for. The state is final on return.
    void Cancel();
    /// Tries once more to put content in place that is kept beside its destination.
    virtual bool Finish() { return false; }
    /// Cancels, and has the listener called no more.
    void LetGo();

protected:
    /// What a run or a poll has come to.
    enum class Step {
        Ended,  ///< End has been called, or the transfer was cancelled.
        SignIn, ///< It can go on after a sign-in.
        Poll,   ///< The service is to be asked how its job stands.
    };
    /// How an attempt ended.
    enum class Result {
        GoesOn, ///< It has not ended yet.
        Complete,
        Again, ///< Another attempt, at once.
        Later, ///< Another attempt after a pause.
        SignIn,
        Cancelled,
        Failed, ///< m_result says how.
    };

    const Service& TheService() const { return *m_service; }
    calls::StopSignal& Stop() { return m_stop; }

    /// Attempts it until it is complete or there is no point in another attempt.
    Step RunAttempts();
    /// To be called before each exchange whose reply may come to JudgeReply.
    void BeginExchange();
    /// Judges a reply that is no success, whose document `response` has read.
    Result JudgeReply(const CBaseResponse& response);
    Result Fail(double code, std::wstring text);
    /// Whether that can be an identifier; otherwise m_result says so.
    bool CheckIdentifier(const std::wstring& id, double code);

    /// The state becomes final, unless it is.
    void End(TransferState state, TransferOutcome outcome);
    /// With m_result.
    virtual Step EndAsFailed();
    void SetTotal(std::uint64_t bytes) noexcept { m_total = bytes; }
    void SetResumed(std::uint64_t bytes) noexcept { m_resumed = bytes; }
    /// Tells how many bytes of the file are through. Less than before counts for nothing.
    void Report(std::uint64_t done);

    // Of the thread that runs it.
    Attempts m_attempts;
    StreamHead m_head;                       ///< Of the last reply.
    TransferOutcome m_result;                ///< As far as is known.
    std::chrono::milliseconds m_pollPause{}; ///< Before the next poll, at least.

private:
    friend class TransferQueue;

    /// Carries the transfer out, or goes on with it after a sign-in. On a thread of the queue.
    virtual Step Run() = 0;
    /// Asks once how the service's job stands. On the queue's thread for that.
    virtual Step Poll() { return Step::Ended; }
    virtual Result Attempt() = 0;
    /// An attempt was complete.
    virtual Step OnComplete() = 0;
    /// Somebody cancels: clears up, and fills the outcome. False when it is too late, as the end is
    /// being reached on another thread.
    virtual bool OnCancel(TransferOutcome& outcome) noexcept = 0;

    /// The same with lack of memory turned into a failure.
    Step RunGuarded() noexcept;
    Step PollGuarded() noexcept;
    Step FailForMemory() noexcept;

    /// Null before it is added to one, and after the queue's end.
    std::shared_ptr<TransferQueue> Queue() const;

    /// False when the state is final.
    bool SetState(TransferState state);
    /// The same, and the listener is told.
    bool ChangeState(TransferState state);
    /// Tells the listener how it stands.
    void Tell();

    const std::shared_ptr<const Service> m_service;
    ListenerGate<TransferProgress> m_gate;
    calls::StopSignal m_stop;

    std::atomic<TransferState> m_state = TransferState::Waiting;
    std::atomic<std::uint64_t> m_done = 0;
    std::atomic<std::uint64_t> m_total = kUnknownSize;
    std::atomic<std::uint64_t> m_resumed = 0;
    Speed m_speed;
    std::wstring m_cookies; ///< When its last exchange began. Of the thread that runs it.

    mutable std::mutex m_mutex; ///< Held to change the state, and for what follows.
    mutable std::condition_variable m_changed;
    std::weak_ptr<TransferQueue> m_queue;
    TransferOutcome m_outcome;
    bool m_isSettled = false; ///< The listener has been told of the final state.
};

} // namespace transfers
