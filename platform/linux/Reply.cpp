#include "platform/linux/Reply.h"

#include "platform/linux/Ascii.h"

namespace platform {

void Reply::AddHeader(std::string_view name, std::string_view value) {
    if (EqualNames(name, "Transfer-Encoding")) {
        hasTransferEncoding = true;
    } else if (EqualNames(name, "Content-Length")) {
        contentLength = value;
    } else if (EqualNames(name, "Location") && !location) {
        location = value;
    }
}

} // namespace platform
