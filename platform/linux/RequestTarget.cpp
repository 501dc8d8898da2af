#include "platform/linux/RequestTarget.h"

#include "base/Hex.h"
#include "support/Utf8.h"

namespace platform {

std::string RequestTarget(std::wstring_view objectName) {
    const std::string text = Utf8::ToNarrow(objectName.substr(0, objectName.find(L'#')));
    std::string target;
    target.reserve(text.size() + 1);
    if (!text.starts_with('/') && !text.starts_with('\\')) {
        target += '/';
    }
    bool inQuery = false;
    for (const char c : text) {
        inQuery = inQuery || c == '?';
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\\' && !inQuery) {
            target += '/';
        } else if (byte <= 0x20 || byte >= 0x7F) {
            base::AppendPercentEscape(target, c);
        } else {
            target += c;
        }
    }
    return target;
}

} // namespace platform
