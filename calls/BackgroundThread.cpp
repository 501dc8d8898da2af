#include "calls/BackgroundThread.h"

#include "platform/Thread.h"
#include "transport/KeepCodeLoaded.h"

#include <system_error>
#include <utility>

namespace calls {

bool TryStartThread(std::function<void()> function) {
    try {
        KeepCodeLoaded();
        platform::StartThread(std::move(function));
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

} // namespace calls
