#pragma once

#include "platform/linux/Cookie.h"
#include "platform/linux/Types.h"

#include <array>
#include <curl/curl.h>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// The process's cookies. libcurl's cookie engine holds them and works on them during exchanges;
// this class reads and writes them in between. Any thread. Cookies end with the process.
class CookieJar {
public:
    static CookieJar& Instance(); // never destroyed; throws std::bad_alloc

    // What easy handles take part in.
    CURLSH* Share() const noexcept { return m_share; }

    // Sets a cookie as a page of the URL could. An empty name is taken from the data, which is
    // then "name=value; attributes", otherwise "value; attributes".
    DWORD Set(std::wstring_view url, std::string_view name, std::string_view data);

    // "name=value" pairs joined by "; ": what goes to the URL, but for HttpOnly cookies.
    // Returns ERROR_NO_MORE_ITEMS if that is nothing.
    DWORD Get(std::wstring_view url, std::string& text);

    // Whether an exchange with the URL sends any, HttpOnly ones included.
    bool HasCookies(const std::string& url);

private:
    CookieJar();

    static void Lock(CURL*, curl_lock_data data, curl_lock_access, void* self);
    static void Unlock(CURL*, curl_lock_data data, void* self);
    std::vector<Cookie> Cookies();

    CURLSH* m_share;
    std::array<std::mutex, CURL_LOCK_DATA_LAST> m_shareMutexes; // one for each kind of data
    std::mutex m_easyMutex;
    CURL* m_easy; // carries no transfer, only cookies in and out
};

} // namespace platform
