#pragma once

#include "platform/linux/InternetHandle.h"

namespace platform {

// What InternetOpenW opens.
class Session final : public InternetHandle {
public:
    explicit Session(HandleSettings settings) : InternetHandle(std::move(settings), 0) {}
};

} // namespace platform
