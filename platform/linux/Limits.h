#pragma once

#include <cstddef>

namespace platform {

// What a server can make this layer do or keep; docs/faults.md tells users of these limits.

constexpr int kMostRedirects = 10; ///< that one exchange follows

/// Of the head of one reply, with interim replies before it and trailers after it. libcurl 7.88
/// ends an exchange by itself at a header line of 100 KiB or a trailer of 4 KiB, and in some builds
/// at 300 KiB altogether.
constexpr std::size_t kMostHeadBytes = 200 * 1024;

/// Of cookies that one request could have to carry together: all of one domain and of those above
/// and below it. libcurl 7.88 sends no request whose head exceeds 1 MiB.
constexpr std::size_t kMostCookies = 1000;
constexpr std::size_t kMostCookieBytes = 256 * 1024;

} // namespace platform
