#pragma once

#include "brevint/client.h"
#include "explorer/system/Window.h"

#include <functional>
#include <memory>

namespace brevint::explorer {

/// Runs functions on the thread that made it, which must have a message loop. They run one after
/// the other in the order in which they were posted, in nested loops too. What has not run when the
/// dispatcher is destroyed does not run any more.
class Dispatcher {
public:
    Dispatcher();
    ~Dispatcher();
    Dispatcher(const Dispatcher&) = delete;
    Dispatcher& operator=(const Dispatcher&) = delete;

    /// Posts. It may be called on any thread, and outlive the dispatcher.
    Executor GetExecutor() const;

private:
    class Target;

    std::shared_ptr<Target> m_target;
};

} // namespace brevint::explorer
