#include "platform/linux/urls/RequestTarget.h"

#include "base/Hex.h"
#include "support/Utf8.h"

namespace platform {

std::string RequestTarget(std::wstring_view objectName) {
    std::string target =
        EscapeReference(Utf8::ToNarrow(objectName.substr(0, objectName.find(L'#'))));
    return target.starts_with('/') ? target : "/" + target;
}

std::string EscapeReference(std::string_view reference) {
    std::string target;
    target.reserve(reference.size());
    bool inQuery = false;
    for (const char c : reference) {
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
