#pragma once

#include "brevint/client/Error.h"
#include "brevint/client/Item.h"
#include "brevint/client/StopToken.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace brevint {

/// What every call takes as its last argument.
///
///     brevint::Error error;
///     client.List(folder, {.stop = token, .limit = std::chrono::seconds(5), .error = &error});
struct CallOptions {
    /// Ends the call at once, however silent the server is.
    StopToken stop = {};
    /// For the whole call, with its lookup of a path. At most 49 days.
    std::chrono::milliseconds limit = std::chrono::seconds(60);
    /// Where the call stores what went wrong, or that nothing did. Then a failed call returns an
    /// empty value. Null: it throws Exception.
    Error* error = nullptr;
};

namespace detail {

/// One call of a client, or several that belong together and share a time limit.
class Call {
public:
    /// The options live longer.
    Call(brevint_client* client, const CallOptions& options)
        : m_client(client), m_options(options),
          m_deadline(Clock::now() + std::clamp(options.limit, std::chrono::milliseconds::zero(),
                                               std::chrono::milliseconds(UINT32_MAX))),
          m_cancellation(options.stop.stop_possible() ? NewCancellation() : nullptr),
          m_onStop(options.stop, Cancel{m_cancellation.get()}) {}

    /// What is left of the time limit. Never 0, by which the library means the default.
    [[nodiscard]] std::chrono::milliseconds TimeLeft() const {
        return (std::max)(std::chrono::ceil<std::chrono::milliseconds>(m_deadline - Clock::now()),
                          std::chrono::milliseconds(1));
    }

    /// As the library takes it.
    brevint_call How() const {
        brevint_call how = Initial(brevint_call_init);
        how.cancellation = m_cancellation.get();
        how.milliseconds = static_cast<std::uint32_t>(TimeLeft().count());
        return how;
    }

    /// Stores or throws what came of the call. Returns whether it succeeded.
    bool Conclude(Error error) const {
        const bool succeeded = !error;
        if (m_options.error) {
            *m_options.error = std::move(error);
        } else if (!succeeded) {
            throw Exception(std::move(error));
        }
        return succeeded;
    }

    /// Calls a function of brevint/c.h that takes (arguments…, error).
    template <class Function>
    bool Plain(Function function) {
        brevint_error* error = nullptr;
        const bool succeeded = function(&error) != 0;
        const Owned<brevint_error> owned(error);
        return Conclude(succeeded ? Error() : ToError(error));
    }

    /// Calls one that takes (client, arguments…, call, error). The first may be an ItemRef.
    template <class Function, class... Arguments>
    bool Do(Function function, const Arguments&... arguments) {
        const brevint_call how = How();
        return Plain([&](brevint_error** error) {
            return function(m_client, Terminated(arguments)..., &how, error);
        });
    }
    template <class Function, class... Arguments>
    bool Do(Function function, const ItemRef& item, const Arguments&... arguments) {
        const std::optional<ItemRef> found = Resolve(item);
        return found && Do(function, found->Id(), arguments...);
    }

    /// Calls one that takes (client, arguments…, call, result, error), likewise. Null: failed.
    template <class Result, class Function, class... Arguments>
    Owned<Result> Ask(Function function, const Arguments&... arguments) {
        const brevint_call how = How();
        Result* result = nullptr;
        Plain([&](brevint_error** error) {
            return function(m_client, Terminated(arguments)..., &how, &result, error);
        });
        return Owned<Result>(result);
    }
    template <class Result, class Function, class... Arguments>
    Owned<Result> Ask(Function function, const ItemRef& item, const Arguments&... arguments) {
        const std::optional<ItemRef> found = Resolve(item);
        return found ? Ask<Result>(function, found->Id(), arguments...) : nullptr;
    }

    /// The item itself, after a lookup if it is meant by a path. None after a failure.
    std::optional<ItemRef> Resolve(const ItemRef& item) {
        const std::optional<std::string>& path = item.Path();
        if (!path) {
            return item;
        }
        const Owned<brevint_items> found = Ask<brevint_items>(brevint_find, item.Id(), *path);
        return found ? std::optional<ItemRef>(GetItem(found.get(), 0)) : std::nullopt;
    }

private:
    using Clock = std::chrono::steady_clock;

    struct Cancel {
        brevint_cancellation* cancellation;
        void operator()() const noexcept { brevint_cancellation_cancel(cancellation); }
    };

    static brevint_cancellation* NewCancellation() {
        brevint_cancellation* made = brevint_cancellation_new();
        return made ? made : throw std::bad_alloc();
    }

    brevint_client* m_client;
    const CallOptions& m_options;
    Clock::time_point m_deadline;
    Owned<brevint_cancellation> m_cancellation;
    StopCallback<Cancel> m_onStop; ///< Goes first.
};

} // namespace detail

} // namespace brevint
