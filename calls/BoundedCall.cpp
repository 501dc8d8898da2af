#include "calls/BoundedCall.h"

#include "calls/BackgroundThread.h"

#include <condition_variable>
#include <exception>
#include <optional>
#include <utility>

namespace calls {

/// One call under way, shared by its caller, its thread and its cancellation.
class BoundedCall : public std::enable_shared_from_this<BoundedCall> {
public:
    Failure Run(std::shared_ptr<const Service> service, const CallLimits& limits, Effect effect,
                Work work) {
        const Registration registration(limits.cancellation, shared_from_this());
        if (registration.isRefused) {
            return Stopped(FailureKind::Cancelled, Effect::None);
        }
        const bool isStarted =
            TryStartThread([self = shared_from_this(), service = std::move(service),
                            work = std::move(work), time = limits.time]() mutable {
                Failure outcome = self->Carry(*service, work, time);
                work = nullptr; // what it holds is gone before the caller goes on, and may exit
                self->Finish(std::move(outcome));
            });
        return isStarted ? Await(limits.time, effect) : OutOfMemory();
    }

    void Cancel() noexcept {
        {
            const std::scoped_lock lock(m_mutex);
            m_isCancelled = true;
            m_changed.notify_all();
        }
        m_stop.Raise();
    }

private:
    /// Keeps the call among those of its cancellation.
    struct Registration {
        Registration(std::shared_ptr<Cancellation> to, const std::shared_ptr<BoundedCall>& call)
            : cancellation(std::move(to)), registered(*call),
              isRefused(cancellation && !cancellation->Add(call)) {}
        Registration(const Registration&) = delete;
        Registration& operator=(const Registration&) = delete;
        ~Registration() {
            if (cancellation) {
                cancellation->Remove(registered);
            }
        }

        const std::shared_ptr<Cancellation> cancellation;
        const BoundedCall& registered;
        const bool isRefused;
    };

    Failure Carry(const Service& service, const Work& work, std::chrono::milliseconds time) {
        try {
            return work({service, m_stop, {time, time}, [this] {
                             return Commit();
                         }});
        } catch (const std::exception&) {
            return OutOfMemory(); // or out of what a lock takes
        }
    }

    bool Commit() {
        const std::scoped_lock lock(m_mutex);
        m_isCommitted = !m_isCancelled && !m_isGivenUp;
        return m_isCommitted;
    }

    void Finish(Failure outcome) {
        const std::scoped_lock lock(m_mutex);
        m_outcome = std::move(outcome);
        m_changed.notify_all();
    }

    Failure Await(std::chrono::milliseconds time, Effect effect) {
        std::unique_lock lock(m_mutex);
        m_changed.wait_for(lock, time,
                           [this] { return m_outcome || (m_isCancelled && !m_isCommitted); });
        m_changed.wait(lock, [this] { return m_outcome || !m_isCommitted; });
        if (m_outcome && m_outcome->kind != FailureKind::Cancelled) {
            return std::move(*m_outcome);
        }
        m_isGivenUp = true;
        const FailureKind kind = m_isCancelled ? FailureKind::Cancelled : FailureKind::TimedOut;
        lock.unlock();
        m_stop.Raise();
        return Stopped(kind, effect);
    }

    static Failure Stopped(FailureKind kind, Effect effect) {
        Failure failure;
        failure.kind = kind;
        failure.connection =
            kind == FailureKind::Cancelled ? ExchangeFailure::Cancelled : ExchangeFailure::TimedOut;
        failure.text = kind == FailureKind::Cancelled ? L"It was cancelled."
                                                      : L"The service did not answer in time.";
        failure.mayHaveHappened = effect == Effect::Change;
        if (failure.mayHaveHappened) {
            failure.text += L" Whether the service has carried it out is unknown.";
        }
        return failure;
    }

    StopSignal m_stop;
    std::mutex m_mutex; ///< For what follows.
    std::condition_variable m_changed;
    bool m_isCancelled = false;
    bool m_isCommitted = false;
    bool m_isGivenUp = false;
    std::optional<Failure> m_outcome;
};

void Cancellation::Cancel() noexcept {
    std::vector<std::shared_ptr<BoundedCall>> calls;
    {
        const std::scoped_lock lock(m_mutex);
        m_isUsed = true;
        calls.swap(m_calls);
    }
    for (const auto& call : calls) {
        call->Cancel();
    }
}

bool Cancellation::Add(const std::shared_ptr<BoundedCall>& call) {
    const std::scoped_lock lock(m_mutex);
    if (!m_isUsed) {
        m_calls.push_back(call);
    }
    return !m_isUsed;
}

void Cancellation::Remove(const BoundedCall& call) noexcept {
    const std::scoped_lock lock(m_mutex);
    std::erase_if(m_calls, [&](const auto& other) { return other.get() == &call; });
}

Failure RunBounded(std::shared_ptr<const Service> service, const CallLimits& limits, Effect effect,
                   Work work) {
    return std::make_shared<BoundedCall>()->Run(std::move(service), limits, effect,
                                                std::move(work));
}

} // namespace calls
