#include "transfers/TransferQueue.h"

#include "brevint/ErrorCodes.h"
#include "calls/BackgroundThread.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace transfers {

namespace {

TransferOutcome OutOfThreads() {
    TransferOutcome outcome;
    outcome.code = ErrorCode::EmptyReply;
    outcome.failure = ExchangeFailure::Other;
    outcome.text = L"The system has no thread to spare.";
    return outcome;
}

} // namespace

void TransferQueue::Add(const TransferPtr& transfer) {
    {
        const std::scoped_lock lock(transfer->m_mutex); // it may be cancelled now
        transfer->m_queue = weak_from_this();
    }
    std::unique_lock lock(m_mutex);
    m_waiting.push_back(transfer);
    StartDue(lock);
}

void TransferQueue::Join(const std::shared_ptr<QueueMember>& member) {
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_members, [](const auto& other) { return other.expired(); });
    m_members.push_back(member);
}

std::vector<std::shared_ptr<QueueMember>> TransferQueue::Members() {
    const std::scoped_lock lock(m_mutex);
    std::vector<std::shared_ptr<QueueMember>> members;
    for (const auto& member : m_members) {
        if (auto held = member.lock()) {
            members.push_back(std::move(held));
        }
    }
    return members;
}

void TransferQueue::OnSignedIn() {
    std::unique_lock lock(m_mutex);
    ++m_signIns;
    std::vector<TransferPtr> ready = std::exchange(m_needSignIn, {});
    // The last first, so that the first comes to stand before all.
    for (const TransferPtr& transfer : ready | std::views::reverse) {
        lock.unlock();
        const bool goesOn = transfer->ChangeState(TransferState::Waiting);
        lock.lock();
        if (goesOn) {
            m_waiting.push_front(transfer);
        }
    }
    StartDue(lock);
    lock.unlock();
    for (const auto& member : Members()) {
        member->OnSignedIn();
    }
}

void TransferQueue::GiveUp(const Transfer& transfer) {
    std::unique_lock lock(m_mutex);
    // Its thread may remain for a while, inside a call of the platform, and does not count.
    std::erase_if(m_running, [&](const TransferPtr& other) { return other.get() == &transfer; });
    Forget(transfer);
    StartDue(lock);
}

void TransferQueue::Forget(const Transfer& transfer) {
    const auto isIt = [&](const TransferPtr& other) {
        return other.get() == &transfer;
    };
    std::erase_if(m_waiting, isIt);
    std::erase_if(m_needSignIn, isIt);
    std::erase_if(m_processing, [&](const Processing& p) { return isIt(p.transfer); });
    m_changed.notify_all();
}

void TransferQueue::CancelAll() {
    for (const auto& member : Members()) {
        member->Cancel(); // first, so that it adds no more
    }
    std::vector<TransferPtr> all;
    {
        const std::scoped_lock lock(m_mutex);
        all.assign(m_waiting.begin(), m_waiting.end());
        all.insert(all.end(), m_running.begin(), m_running.end());
        all.insert(all.end(), m_needSignIn.begin(), m_needSignIn.end());
        for (const Processing& processing : m_processing) {
            all.push_back(processing.transfer);
        }
        m_waiting.clear(); // so that none starts in the place of one that is cancelled
    }
    for (const TransferPtr& transfer : all) {
        transfer->Cancel();
    }
}

void TransferQueue::StartDue(std::unique_lock<std::mutex>& lock) {
    while (!m_waiting.empty() && m_running.size() < m_settings.concurrent) {
        const TransferPtr transfer = m_waiting.front();
        m_waiting.pop_front();
        m_running.push_back(transfer);
        if (calls::TryStartThread(
                [self = shared_from_this(), transfer] { self->Work(transfer); })) {
            continue;
        }
        std::erase(m_running, transfer);
        if (!m_running.empty()) {
            m_waiting.push_front(transfer); // the next one that ends leaves it its thread
            return;
        }
        lock.unlock();
        transfer->End(TransferState::Failed, OutOfThreads());
        lock.lock();
    }
}

void TransferQueue::Work(TransferPtr transfer) {
    while (transfer) {
        const unsigned signIns = m_signIns;
        const Transfer::Step step = transfer->ChangeState(TransferState::Running)
                                        ? transfer->RunGuarded()
                                        : Transfer::Step::Ended;
        std::unique_lock lock(m_mutex);
        if (step == Transfer::Step::SignIn && signIns != m_signIns) {
            continue;
        }
        Sort(transfer, step, m_settings.firstPoll, lock);
        const auto place = std::ranges::find(m_running, transfer);
        if (place == m_running.end()) {
            return; // it was given up, and another thread has its place
        }
        if (m_waiting.empty()) {
            m_running.erase(place);
            return;
        }
        transfer = m_waiting.front();
        *place = transfer;
        m_waiting.pop_front();
    }
}

void TransferQueue::Sort(const TransferPtr& transfer, Transfer::Step step,
                         std::chrono::milliseconds pause, std::unique_lock<std::mutex>& lock) {
    if (step == Transfer::Step::Ended) {
        return;
    }
    // It has its place and its state first: the listener may be the one that signs in, or cancels.
    const bool polls = step == Transfer::Step::Poll;
    if (polls) {
        m_processing.push_back({transfer, Clock::now() + pause, pause});
        m_changed.notify_all();
    } else {
        m_needSignIn.push_back(transfer);
    }
    const TransferState state = polls ? TransferState::Processing : TransferState::NeedsSignIn;
    if (transfer->m_state != state) {
        if (transfer->SetState(state)) {
            lock.unlock();
            transfer->Tell();
            lock.lock();
        } else {
            Forget(*transfer);
        }
    }
    if (m_processing.empty() || m_polls) {
        return;
    }
    m_polls = calls::TryStartThread([self = shared_from_this()] { self->PollJobs(); });
    if (!m_polls) {
        Forget(*transfer);
        lock.unlock();
        TransferOutcome outcome = OutOfThreads();
        outcome.jobGoesOn = true;
        transfer->End(TransferState::Failed, std::move(outcome));
        lock.lock();
    }
}

void TransferQueue::PollJobs() {
    std::unique_lock lock(m_mutex);
    while (!m_processing.empty()) {
        const auto next = std::ranges::min_element(m_processing, {}, &Processing::due);
        if (const auto due = next->due; due > Clock::now()) {
            m_changed.wait_until(lock, due);
            continue;
        }
        next->due = Clock::time_point::max(); // it is being asked for
        const TransferPtr transfer = next->transfer;
        const auto longer = std::min(next->pause + next->pause / 2, m_settings.longestPoll);
        const unsigned signIns = m_signIns;
        lock.unlock();
        Transfer::Step step = transfer->PollGuarded();
        lock.lock();
        if (step == Transfer::Step::SignIn && signIns != m_signIns) {
            step = Transfer::Step::Poll;
        }
        Forget(*transfer);
        Sort(transfer, step, std::max(longer, transfer->m_pollPause), lock);
    }
    m_polls = false;
}

} // namespace transfers
