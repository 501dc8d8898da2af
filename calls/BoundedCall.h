#pragma once

#include "calls/Failure.h"
#include "calls/Service.h"
#include "calls/StopSignal.h"

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace calls {

class BoundedCall;

/// Stops calls. Any thread.
class Cancellation {
public:
    /// Stops the calls that have it, those that come later too.
    void Cancel() noexcept;

private:
    friend class BoundedCall;

    bool Add(const std::shared_ptr<BoundedCall>& call);
    void Remove(const BoundedCall& call) noexcept;

    std::mutex m_mutex;
    bool m_isUsed = false;
    std::vector<std::shared_ptr<BoundedCall>> m_calls;
};

/// How long a call may take.
struct CallLimits {
    std::shared_ptr<Cancellation> cancellation; ///< Null: it cannot be cancelled.
    std::chrono::milliseconds time = std::chrono::seconds(60);
};

/// What the work of a call has at hand. It lives as long as the work.
struct CallContext {
    const Service& service;
    StopSignal& stop;
    ExchangeTimeouts timeouts;
    /// From here on the caller gets the outcome of the work. False when it has given up, and what
    /// the work has brought about is to be undone.
    std::function<bool()> commit = [] {
        return true;
    };
};

/// Whether a call changes anything at the service.
enum class Effect { None, Change };

/// The work of a call: it may go on after its caller has given up, so it holds what it needs.
using Work = std::function<Failure(const CallContext&)>;

/// Carries a call out on a thread of its own, and returns with its outcome or, before that, once it
/// is cancelled or its time is up. The thread then ends what it is at: on Linux at once, on Windows
/// when the platform's call under way returns, at the latest after the time limit.
Failure RunBounded(std::shared_ptr<const Service> service, const CallLimits& limits, Effect effect,
                   Work work);

} // namespace calls
