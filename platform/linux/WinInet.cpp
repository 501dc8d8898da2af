#include "platform/linux/WinInet.h"

#include "base/Ascii.h"
#include "platform/linux/cookies/CookieJar.h"
#include "platform/linux/handles/ConnectionHandle.h"
#include "platform/linux/handles/HandleTable.h"
#include "platform/linux/handles/RequestHandle.h"
#include "platform/linux/handles/SessionHandle.h"
#include "platform/linux/urls/RequestTarget.h"
#include "platform/linux/urls/UrlCracker.h"
#include "support/Utf8.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstring>
#include <cwchar>
#include <exception>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

// The calls of WinInet.h: they check and convert what comes from outside, and keep exceptions in.

namespace {

using platform::ConnectionHandle;
using platform::CookieJar;
using platform::HandleSettings;
using platform::HandleTable;
using platform::HeaderList;
using platform::HttpRequest;
using platform::InternetHandle;
using platform::ReplyHead;
using platform::RequestHandle;
using platform::SessionHandle;

// Runs a call that returns its error, and turns that into what WinINet's functions return.
template <class Call>
BOOL Run(Call call) noexcept {
    DWORD error = ERROR_SUCCESS;
    try {
        error = call();
    } catch (const std::exception&) {
        error = ERROR_NOT_ENOUGH_MEMORY; // or threads have run out: nothing else throws
    }
    SetLastError(error);
    return error == ERROR_SUCCESS ? TRUE : FALSE;
}

// The same for a call that opens a handle.
template <class Call>
HINTERNET Open(Call call) noexcept {
    HINTERNET handle = nullptr;
    Run([&] { return call(handle); });
    return handle;
}

std::wstring_view View(LPCWSTR text) {
    return text == nullptr ? std::wstring_view() : std::wstring_view(text);
}

DWORD AddHandle(std::shared_ptr<InternetHandle> object, HINTERNET parent, HINTERNET& handle) {
    handle = HandleTable::Instance().Add(std::move(object), parent);
    return handle != nullptr ? ERROR_SUCCESS : ERROR_INVALID_HANDLE;
}

bool IsToken(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c > ' ' && c < '\x7F'; });
}

// Copies a component into the buffer given for it, or points into the URL where only a length is
// given. The length tells what was found either way.
DWORD StoreComponent(std::wstring_view text, LPWSTR& buffer, DWORD& length) {
    if (buffer != nullptr) {
        if (text.size() >= length) {
            return ERROR_INSUFFICIENT_BUFFER;
        }
        *std::ranges::copy(text, buffer).out = L'\0';
    } else if (length != 0) {
        buffer = const_cast<LPWSTR>(text.data());
    } else {
        return ERROR_SUCCESS;
    }
    length = static_cast<DWORD>(text.size());
    return ERROR_SUCCESS;
}

DWORD Crack(std::wstring_view url, URL_COMPONENTSW& components) {
    platform::UrlParts parts;
    if (const DWORD error = CrackUrl(url, parts)) {
        return error;
    }
    const bool wantsExtra =
        components.lpszExtraInfo != nullptr || components.dwExtraInfoLength != 0;
    const std::size_t pathLength =
        wantsExtra ? parts.path.find_first_of(L"?#") : std::wstring_view::npos;
    const std::wstring_view path = parts.path.substr(0, pathLength);
    components.nScheme = parts.scheme;
    components.nPort = parts.port;
    if (const DWORD error =
            StoreComponent(parts.schemeName, components.lpszScheme, components.dwSchemeLength)) {
        return error;
    }
    if (const DWORD error =
            StoreComponent(parts.host, components.lpszHostName, components.dwHostNameLength)) {
        return error;
    }
    if (const DWORD error =
            StoreComponent(path, components.lpszUrlPath, components.dwUrlPathLength)) {
        return error;
    }
    return StoreComponent(parts.path.substr(path.size()), components.lpszExtraInfo,
                          components.dwExtraInfoLength);
}

// The headers that a request has before the caller adds any. False if one could not be sent.
bool SetOwnHeaders(HeaderList& headers, const std::string& agent, LPCWSTR* acceptTypes,
                   const std::string& referrer, DWORD flags) {
    std::string accept;
    for (LPCWSTR* type = acceptTypes; type != nullptr && *type != nullptr; ++type) {
        accept += (accept.empty() ? "" : ", ") + Utf8::ToNarrow(*type);
    }
    for (const auto& [name, value] : {std::pair<const char*, const std::string&>{"Accept", accept},
                                      {"User-Agent", agent},
                                      {"Referer", referrer}}) {
        if (base::HasControls(value)) {
            return false;
        }
        if (!value.empty()) {
            headers.Set(name, value);
        }
    }
    if ((flags & INTERNET_FLAG_KEEP_CONNECTION) != 0) {
        headers.Set("Connection", "Keep-Alive");
    }
    if ((flags & INTERNET_FLAG_PRAGMA_NOCACHE) != 0) {
        headers.Set("Pragma", "no-cache");
    }
    return true;
}

DWORD StatusNumber(const ReplyHead& reply, DWORD& number) {
    if (reply.status == 0) {
        return ERROR_HTTP_HEADER_NOT_FOUND;
    }
    number = static_cast<DWORD>(reply.status);
    return ERROR_SUCCESS;
}

DWORD ContentLengthNumber(const ReplyHead& reply, DWORD& number) {
    // The length of a message in chunks is not told, whatever else its head says.
    if (reply.hasTransferEncoding || !reply.contentLength) {
        return ERROR_HTTP_HEADER_NOT_FOUND;
    }
    const std::string& text = *reply.contentLength;
    DWORD length = 0;
    const auto outcome = std::from_chars(text.data(), text.data() + text.size(), length);
    if (outcome.ec != std::errc()) {
        return ERROR_HTTP_INVALID_HEADER;
    }
    number = length;
    return ERROR_SUCCESS;
}

// The headers that can be asked for as text.
struct TextRow {
    DWORD infoLevel;
    std::optional<std::string> ReplyHead::*value;
};
constexpr TextRow kTexts[] = {
    {HTTP_QUERY_CONTENT_TYPE, &ReplyHead::contentType},
    {HTTP_QUERY_CONTENT_LENGTH, &ReplyHead::contentLength},
    {HTTP_QUERY_LAST_MODIFIED, &ReplyHead::lastModified},
    {HTTP_QUERY_LOCATION, &ReplyHead::location},
    {HTTP_QUERY_RETRY_AFTER, &ReplyHead::retryAfter},
    {HTTP_QUERY_CONTENT_RANGE, &ReplyHead::contentRange},
    {HTTP_QUERY_ETAG, &ReplyHead::entityTag},
};

// Text with its zero, the size in bytes: without the zero when it was stored, with it when it did
// not fit.
template <class Character>
DWORD StoreText(const std::basic_string<Character>& text, LPVOID buffer, DWORD& size) {
    const std::size_t bytes = text.size() * sizeof(Character);
    if (buffer == nullptr || size < bytes + sizeof(Character)) {
        size = static_cast<DWORD>(bytes + sizeof(Character));
        return ERROR_INSUFFICIENT_BUFFER;
    }
    std::memcpy(buffer, text.c_str(), bytes + sizeof(Character));
    size = static_cast<DWORD>(bytes);
    return ERROR_SUCCESS;
}

DWORD QueryText(const ReplyHead& reply, DWORD infoLevel, LPVOID buffer, DWORD& size) {
    const auto* const row = std::ranges::find(kTexts, infoLevel, &TextRow::infoLevel);
    // The length of a message in chunks is not told, whatever else its head says.
    if (row == std::end(kTexts) ||
        (infoLevel == HTTP_QUERY_CONTENT_LENGTH && reply.hasTransferEncoding)) {
        return ERROR_HTTP_HEADER_NOT_FOUND;
    }
    const std::optional<std::string>& text = reply.*row->value;
    return text ? StoreText(Utf8::ToWide(*text), buffer, size) : ERROR_HTTP_HEADER_NOT_FOUND;
}

DWORD Query(HINTERNET handle, DWORD infoLevel, LPVOID buffer, LPDWORD size) {
    const auto request = HandleTable::Instance().Find<RequestHandle>(handle);
    if (request == nullptr) {
        return ERROR_INVALID_HANDLE;
    }
    if (size == nullptr) {
        return ERROR_INVALID_PARAMETER;
    }
    const std::shared_ptr<const ReplyHead> kept = request->GetReply();
    const ReplyHead& reply = *kept;
    DWORD number = 0;
    DWORD error = ERROR_SUCCESS;
    switch (infoLevel) {
    case HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER:
        error = StatusNumber(reply, number);
        break;
    case HTTP_QUERY_CONTENT_LENGTH | HTTP_QUERY_FLAG_NUMBER:
        error = ContentLengthNumber(reply, number);
        break;
    default: return QueryText(reply, infoLevel, buffer, *size);
    }
    if (error != ERROR_SUCCESS) {
        return error;
    }
    const bool fits = buffer != nullptr && *size >= sizeof number;
    *size = sizeof number;
    if (!fits) {
        return ERROR_INSUFFICIENT_BUFFER;
    }
    std::memcpy(buffer, &number, sizeof number);
    return ERROR_SUCCESS;
}

} // namespace

HINTERNET InternetOpenW(LPCWSTR agent, DWORD accessType, LPCWSTR /*proxy*/, LPCWSTR /*proxyBypass*/,
                        DWORD flags) noexcept {
    return Open([&](HINTERNET& handle) -> DWORD {
        HandleSettings settings;
        settings.agent = Utf8::ToNarrow(View(agent));
        settings.asynchronous = (flags & INTERNET_FLAG_ASYNC) != 0;
        settings.useProxy = accessType == INTERNET_OPEN_TYPE_PRECONFIG;
        if (accessType > INTERNET_OPEN_TYPE_DIRECT || base::HasControls(settings.agent)) {
            return ERROR_INVALID_PARAMETER;
        }
        return AddHandle(std::make_shared<SessionHandle>(std::move(settings)), nullptr, handle);
    });
}

BOOL InternetSetOptionA(HINTERNET handle, DWORD option, LPVOID buffer, DWORD length) noexcept {
    return Run([&]() -> DWORD {
        const auto object = HandleTable::Instance().Find(handle);
        if (object == nullptr) {
            return ERROR_INVALID_HANDLE;
        }
        DWORD value = 0;
        if (buffer == nullptr || length != sizeof value) {
            return ERROR_INVALID_PARAMETER;
        }
        std::memcpy(&value, buffer, sizeof value);
        const std::chrono::milliseconds limit(value);
        platform::Timeouts timeouts = object->Settings().timeouts;
        switch (option) {
        case INTERNET_OPTION_CONNECT_TIMEOUT: timeouts.connect = limit; break;
        case INTERNET_OPTION_SEND_TIMEOUT: timeouts.send = limit; break;
        case INTERNET_OPTION_RECEIVE_TIMEOUT: timeouts.receive = limit; break;
        default: return ERROR_INTERNET_INVALID_OPTION;
        }
        object->SetTimeouts(timeouts);
        return ERROR_SUCCESS;
    });
}

INTERNET_STATUS_CALLBACK InternetSetStatusCallback(HINTERNET handle,
                                                   INTERNET_STATUS_CALLBACK callback) noexcept {
    INTERNET_STATUS_CALLBACK before = INTERNET_INVALID_STATUS_CALLBACK;
    Run([&]() -> DWORD {
        const auto object = HandleTable::Instance().Find(handle);
        if (object == nullptr) {
            return ERROR_INVALID_HANDLE;
        }
        before = object->SetCallback(callback);
        return ERROR_SUCCESS;
    });
    return before;
}

BOOL InternetCrackUrlW(LPCWSTR url, DWORD length, DWORD flags,
                       LPURL_COMPONENTSW components) noexcept {
    return Run([&]() -> DWORD {
        if (url == nullptr || flags != 0 || components == nullptr ||
            components->dwStructSize != sizeof *components) {
            return ERROR_INVALID_PARAMETER;
        }
        return Crack({url, length != 0 ? length : std::wcslen(url)}, *components);
    });
}

HINTERNET InternetConnectW(HINTERNET session, LPCWSTR server, INTERNET_PORT port, LPCWSTR /*user*/,
                           LPCWSTR /*password*/, DWORD service, DWORD /*flags*/,
                           DWORD_PTR context) noexcept {
    return Open([&](HINTERNET& handle) -> DWORD {
        const auto parent = HandleTable::Instance().Find<SessionHandle>(session);
        if (parent == nullptr) {
            return ERROR_INVALID_HANDLE;
        }
        constexpr std::wstring_view kNeverInHost = L"/\\?#@";
        const std::wstring_view host = View(server);
        if (host.empty() || host.find_first_of(kNeverInHost) != std::wstring_view::npos ||
            service != INTERNET_SERVICE_HTTP) {
            return ERROR_INVALID_PARAMETER;
        }
        return AddHandle(std::make_shared<ConnectionHandle>(parent->Settings(), context,
                                                            Utf8::ToNarrow(host), port),
                         session, handle);
    });
}

HINTERNET HttpOpenRequestW(HINTERNET connection, LPCWSTR verb, LPCWSTR objectName,
                           LPCWSTR /*version*/, LPCWSTR referrer, LPCWSTR* acceptTypes, DWORD flags,
                           DWORD_PTR context) noexcept {
    return Open([&](HINTERNET& handle) -> DWORD {
        const auto parent = HandleTable::Instance().Find<ConnectionHandle>(connection);
        if (parent == nullptr) {
            return ERROR_INTERNET_INCORRECT_HANDLE_TYPE;
        }
        const HandleSettings settings = parent->Settings();
        HttpRequest description;
        description.verb = View(verb).empty() ? "GET" : Utf8::ToNarrow(verb);
        description.url = parent->Url((flags & INTERNET_FLAG_SECURE) != 0,
                                      platform::RequestTarget(View(objectName)));
        description.followRedirects = (flags & INTERNET_FLAG_NO_AUTO_REDIRECT) == 0;
        description.useCookies = (flags & INTERNET_FLAG_NO_COOKIES) == 0;
        description.useProxy = settings.useProxy;
        if (!IsToken(description.verb) ||
            !SetOwnHeaders(description.headers, settings.agent, acceptTypes,
                           Utf8::ToNarrow(View(referrer)), flags)) {
            return ERROR_INVALID_PARAMETER;
        }
        return AddHandle(std::make_shared<RequestHandle>(settings, context, std::move(description)),
                         connection, handle);
    });
}

BOOL HttpSendRequestW(HINTERNET request, LPCWSTR headers, DWORD headersLength, LPVOID body,
                      DWORD bodyLength) noexcept {
    return Run([&]() -> DWORD {
        const auto object = HandleTable::Instance().Find<RequestHandle>(request);
        if (object == nullptr) {
            return ERROR_INTERNET_INCORRECT_HANDLE_TYPE;
        }
        constexpr DWORD kUntilNul = std::numeric_limits<DWORD>::max();
        HeaderList list;
        if (headers != nullptr) {
            list.SetBlock(
                {headers, headersLength != kUntilNul ? headersLength : std::wcslen(headers)});
        }
        return object->Send(list, static_cast<const char*>(body), body != nullptr ? bodyLength : 0);
    });
}

BOOL InternetReadFile(HINTERNET request, LPVOID buffer, DWORD size, LPDWORD read) noexcept {
    return Run([&]() -> DWORD {
        const auto object = HandleTable::Instance().Find<RequestHandle>(request);
        if (object == nullptr) {
            return ERROR_INVALID_HANDLE;
        }
        if (read == nullptr || (buffer == nullptr && size != 0)) {
            return ERROR_INVALID_PARAMETER;
        }
        return object->Read(static_cast<char*>(buffer), size, read);
    });
}

BOOL HttpSendRequestExW(HINTERNET request, LPINTERNET_BUFFERSW buffersIn,
                        LPINTERNET_BUFFERSW /*buffersOut*/, DWORD /*flags*/,
                        DWORD_PTR /*context*/) noexcept {
    return Run([&]() -> DWORD {
        const auto object = HandleTable::Instance().Find<RequestHandle>(request);
        if (object == nullptr) {
            return ERROR_INVALID_HANDLE;
        }
        if (buffersIn == nullptr || buffersIn->dwStructSize != sizeof *buffersIn) {
            return ERROR_INVALID_PARAMETER;
        }
        HeaderList headers;
        headers.SetBlock({buffersIn->lpcszHeader, buffersIn->dwHeadersLength});
        const std::uint64_t length =
            buffersIn->dwBufferTotal != 0 ? buffersIn->dwBufferTotal : headers.AnnouncedLength();
        return object->BeginSend(
            headers, length,
            {static_cast<const char*>(buffersIn->lpvBuffer), buffersIn->dwBufferLength});
    });
}

BOOL InternetWriteFile(HINTERNET request, LPCVOID buffer, DWORD size, LPDWORD written) noexcept {
    return Run([&]() -> DWORD {
        const auto object = HandleTable::Instance().Find<RequestHandle>(request);
        if (object == nullptr) {
            return ERROR_INVALID_HANDLE;
        }
        if (written == nullptr || (buffer == nullptr && size != 0)) {
            return ERROR_INVALID_PARAMETER;
        }
        const DWORD error = object->Write(static_cast<const char*>(buffer), size);
        *written = error == ERROR_SUCCESS ? size : 0;
        return error;
    });
}

BOOL HttpEndRequestW(HINTERNET request, LPINTERNET_BUFFERSW /*buffers*/, DWORD /*flags*/,
                     DWORD_PTR /*context*/) noexcept {
    return Run([&]() -> DWORD {
        const auto object = HandleTable::Instance().Find<RequestHandle>(request);
        return object == nullptr ? ERROR_INVALID_HANDLE : object->EndSend();
    });
}

BOOL HttpQueryInfoW(HINTERNET request, DWORD infoLevel, LPVOID buffer, LPDWORD length,
                    LPDWORD /*index*/) noexcept {
    return Run([&] { return Query(request, infoLevel, buffer, length); });
}

BOOL HttpQueryInfoA(HINTERNET request, DWORD infoLevel, LPVOID buffer, LPDWORD length,
                    LPDWORD /*index*/) noexcept {
    return Run([&]() -> DWORD {
        if (infoLevel != HTTP_QUERY_LOCATION) {
            return Query(request, infoLevel, buffer, length);
        }
        const auto object = HandleTable::Instance().Find<RequestHandle>(request);
        if (object == nullptr) {
            return ERROR_INVALID_HANDLE;
        }
        const auto location = object->GetReply()->location;
        if (!location) {
            return ERROR_HTTP_HEADER_NOT_FOUND;
        }
        if (length == nullptr) {
            return ERROR_INVALID_PARAMETER;
        }
        return StoreText(*location, buffer, *length);
    });
}

BOOL InternetCloseHandle(HINTERNET handle) noexcept {
    return Run([&]() -> DWORD {
        const auto objects = HandleTable::Instance().Remove(handle);
        for (const auto& object : objects) {
            object->Close();
        }
        return objects.empty() ? ERROR_INVALID_HANDLE : ERROR_SUCCESS;
    });
}

BOOL InternetGetCookieW(LPCWSTR url, LPCWSTR /*name*/, LPWSTR buffer, LPDWORD size) noexcept {
    return Run([&]() -> DWORD {
        if (url == nullptr || size == nullptr) {
            return ERROR_INVALID_PARAMETER;
        }
        std::string cookies;
        if (const DWORD error = CookieJar::Instance().Get(url, cookies)) {
            return error == ERROR_NO_MORE_ITEMS ? error : ERROR_INVALID_PARAMETER;
        }
        const std::wstring text = Utf8::ToWide(cookies);
        const auto characters = static_cast<DWORD>(text.size() + 1);
        if (buffer == nullptr || *size < characters) {
            *size = characters * static_cast<DWORD>(sizeof(wchar_t));
            return buffer == nullptr ? ERROR_SUCCESS : ERROR_INSUFFICIENT_BUFFER;
        }
        std::copy_n(text.c_str(), characters, buffer);
        *size = characters;
        return ERROR_SUCCESS;
    });
}

BOOL InternetSetCookieW(LPCWSTR url, LPCWSTR name, LPCWSTR data) noexcept {
    return Run([&]() -> DWORD {
        if (url == nullptr || data == nullptr) {
            return ERROR_INVALID_PARAMETER;
        }
        return CookieJar::Instance().Set(url, Utf8::ToNarrow(View(name)), Utf8::ToNarrow(data));
    });
}
