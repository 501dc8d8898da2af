#pragma once

#include "platform/linux/http/HeaderList.h"

#include <chrono>
#include <cstdint>
#include <string>

namespace platform {

/// A limit of zero is no limit.
struct Timeouts {
    std::chrono::milliseconds connect{std::chrono::minutes(1)};
    /// Without a byte of progress.
    std::chrono::milliseconds send{std::chrono::hours(1)};
    std::chrono::milliseconds receive{std::chrono::hours(1)};
};

/// What one exchange sends, and how.
struct HttpRequest {
    std::string verb;
    std::string url; ///< absolute, escaped, with a port, without a fragment
    HeaderList headers;
    const char* body = nullptr; ///< not owned
    std::uint64_t bodySize = 0;
    bool streamed = false; ///< the body comes by Exchange::Write
    bool followRedirects = true;
    bool useCookies = true;
    bool useProxy = true; ///< the one that the environment names
    Timeouts timeouts;

    /// Whether libcurl is told of a body, be it an empty one.
    bool MayHaveBody() const { return verb != "HEAD" && (verb != "GET" || bodySize > 0); }
};

} // namespace platform
