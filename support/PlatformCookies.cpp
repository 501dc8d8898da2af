#include "support/PlatformCookies.h"

#include "platform/WinInet.h"

#include <vector>

namespace BaseHlpr {

std::wstring GetPlatformCookies(const wchar_t* url) {
    // Asked without a buffer the platform answers in bytes, with one it takes and gives
    // characters. Without cookies it fails and leaves the size alone.
    for (;;) {
        DWORD size = 0;
        if (!InternetGetCookieW(url, nullptr, nullptr, &size) || size == 0) {
            return {};
        }
        std::vector<wchar_t> buffer(size / sizeof(wchar_t) + 1);
        size = static_cast<DWORD>(buffer.size());
        if (InternetGetCookieW(url, nullptr, buffer.data(), &size)) {
            return buffer.data();
        }
        if (GetLastError() != ERROR_INSUFFICIENT_BUFFER) {
            return {};
        }
        // Another thread has added cookies in between.
    }
}

} // namespace BaseHlpr
