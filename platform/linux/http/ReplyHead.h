#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// What is kept of a reply's head.
struct ReplyHead {
    long status = 0; ///< 0 while there is none
    bool hasTransferEncoding = false;
    std::optional<std::string> contentLength;
    bool contradictsItself = false; ///< announces a length that is none, or two
    std::optional<std::string> location;
    std::optional<std::string> contentType;
    std::optional<std::string> contentRange;
    std::optional<std::string> entityTag;
    std::optional<std::string> lastModified;
    std::optional<std::string> retryAfter;
    std::vector<std::string> cookies; ///< values of Set-Cookie

    void AddHeader(std::string_view name, std::string_view value);
};

} // namespace platform
