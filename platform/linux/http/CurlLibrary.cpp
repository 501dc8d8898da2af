#include "platform/linux/http/CurlLibrary.h"

#include <curl/curl.h>
#include <mutex>
#include <new>

namespace platform {

void InitializeCurl() {
    static std::once_flag once;
    std::call_once(once, [] {
        if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
            throw std::bad_alloc();
        }
    });
}

} // namespace platform
