#pragma once

#include "platform/linux/handles/InternetHandle.h"

namespace platform {

/// What InternetOpenW opens.
class SessionHandle final : public InternetHandle {
public:
    explicit SessionHandle(HandleSettings settings) : InternetHandle(std::move(settings), 0) {}
};

} // namespace platform
