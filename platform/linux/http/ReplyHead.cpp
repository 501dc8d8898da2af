#include "platform/linux/http/ReplyHead.h"

#include "base/Ascii.h"

#include <charconv>
#include <cstdint>

namespace platform {

namespace {

// Those whose first value counts, and is kept as it is.
struct KeptHeader {
    std::string_view name;
    std::optional<std::string> ReplyHead::*value;
};
constexpr KeptHeader kKeptHeaders[] = {
    {"Location", &ReplyHead::location},          {"Content-Type", &ReplyHead::contentType},
    {"Content-Range", &ReplyHead::contentRange}, {"ETag", &ReplyHead::entityTag},
    {"Last-Modified", &ReplyHead::lastModified}, {"Retry-After", &ReplyHead::retryAfter},
};

} // namespace

void ReplyHead::AddHeader(std::string_view name, std::string_view value) {
    if (base::EqualsIgnoreCase(name, "Transfer-Encoding")) {
        hasTransferEncoding = true;
    } else if (base::EqualsIgnoreCase(name, "Content-Length")) {
        std::int64_t length = 0;
        const auto [end, error] =
            std::from_chars(value.data(), value.data() + value.size(), length);
        contradictsItself = contradictsItself || error != std::errc() ||
                            end != value.data() + value.size() || length < 0 ||
                            (contentLength && *contentLength != value);
        contentLength = value;
    } else if (base::EqualsIgnoreCase(name, "Set-Cookie")) {
        cookies.emplace_back(value);
    }
    for (const KeptHeader& kept : kKeptHeaders) {
        if (base::EqualsIgnoreCase(name, kept.name) && !(this->*kept.value)) {
            (this->*kept.value) = value;
        }
    }
}

} // namespace platform
