#pragma once

#include "transfers/Transfer.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <vector>

namespace transfers {

/// Something that moves several files through a queue.
class QueueMember {
public:
    virtual ~QueueMember() = default;
    /// There is a session again.
    virtual void OnSignedIn() = 0;
    virtual void Cancel() = 0;
};

/// Runs transfers, some at a time, first come first served. Each that runs has a thread; those
/// whose job the service is processing share one; there are none when there is nothing to do. Any
/// thread.
class TransferQueue : public std::enable_shared_from_this<TransferQueue> {
public:
    explicit TransferQueue(const TransferSettings& settings) : m_settings(settings) {}
    TransferQueue(const TransferQueue&) = delete;
    TransferQueue& operator=(const TransferQueue&) = delete;

    void Add(const std::shared_ptr<Transfer>& transfer);
    /// From now on it is told of sign-ins, and cancelled with all others.
    void Join(const std::shared_ptr<QueueMember>& member);
    /// There is a session again: what waited for it goes on, before what has not begun.
    void OnSignedIn();
    /// A transfer has been cancelled: it takes no place any more.
    void GiveUp(const Transfer& transfer);
    /// Cancels all that has not ended.
    void CancelAll();

private:
    using Clock = std::chrono::steady_clock;
    using TransferPtr = std::shared_ptr<Transfer>;

    /// A transfer whose job the service is processing.
    struct Processing {
        TransferPtr transfer;
        Clock::time_point due;
        std::chrono::milliseconds pause;
    };

    /// Those members that there still are.
    std::vector<std::shared_ptr<QueueMember>> Members();

    /// Starts what has a place. Called, like all with this argument, while the mutex is held.
    void StartDue(std::unique_lock<std::mutex>& lock);
    void Work(TransferPtr transfer);
    /// Takes it off the lists of those that wait, while the mutex is held.
    void Forget(const Transfer& transfer);
    /// Puts a transfer where its last step says.
    void Sort(const TransferPtr& transfer, Transfer::Step step, std::chrono::milliseconds pause,
              std::unique_lock<std::mutex>& lock);
    void PollJobs();

    const TransferSettings m_settings;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::vector<std::weak_ptr<QueueMember>> m_members;
    std::deque<TransferPtr> m_waiting;
    std::vector<TransferPtr> m_running;
    std::vector<TransferPtr> m_needSignIn;
    /// How often a session has begun: what was refused before the last time is tried again.
    std::atomic<unsigned> m_signIns = 0;
    std::vector<Processing> m_processing;
    bool m_polls = false; ///< There is a thread that asks for jobs.
};

} // namespace transfers
