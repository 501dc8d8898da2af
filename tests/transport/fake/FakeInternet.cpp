#include "tests/transport/fake/FakeInternet.h"

#include <algorithm>
#include <sstream>
#include <string_view>
#include <thread>
#include <utility>

namespace brevint::test {
namespace {

thread_local DWORD t_lastError = 0;

// Handles are the addresses of their names.
char g_session[] = "session", g_connection[] = "connection", g_request[] = "request";

std::string Shown(HINTERNET handle) {
    return handle ? static_cast<char*>(handle) : "null";
}
std::string Shown(const wchar_t* text) {
    const std::wstring_view wide(text ? text : L"");
    return text ? "'" + std::string(wide.begin(), wide.end()) + "'" : "null";
}
std::string Shown(const std::string& text) {
    return text;
}
std::string Shown(std::uint64_t number) {
    return std::to_string(number);
}

std::string Hex(DWORD number) {
    std::ostringstream text;
    text << "0x" << std::hex << number;
    return text.str();
}

/// Writes a call down; gives the fake that plays its result.
template <class... Arguments>
FakeInternet& Called(std::string line, const Arguments&... arguments) {
    ((line += ' ' + Shown(arguments)), ...);
    FakeInternet::current->calls.push_back(line);
    return *FakeInternet::current;
}

BOOL Failure(DWORD error) {
    SetLastError(error);
    return FALSE;
}

} // namespace

std::vector<std::string> FakeInternet::CallsTo(const std::string& name) const {
    auto found = calls;
    std::erase_if(found, [&](const auto& call) { return !call.starts_with(name + ' '); });
    return found;
}

void FakeInternet::Pending::Deliver() const {
    if (count) {
        std::copy(step.bytes.begin(), step.bytes.end(), static_cast<char*>(buffer));
        *count = static_cast<DWORD>(step.bytes.size());
    }
}

BOOL FakeInternet::Begin(const Step& step, LPVOID buffer, LPDWORD count) {
    const Pending begun{step, buffer, count};
    if (step.how == How::fails) {
        return Failure(ERROR_GEN_FAILURE);
    }
    if (step.how == How::atOnce || step.how == How::toldTwice) {
        begun.Deliver();
        if (step.how == How::toldTwice) {
            pending_ = Pending{step, nullptr, nullptr};
        }
        // It means nothing after TRUE, so it says what misleads: a read that pends, a failed send.
        SetLastError(count ? ERROR_IO_PENDING : ERROR_GEN_FAILURE);
        return TRUE;
    }
    pending_ = begun;
    if (step.how == How::endsInTheCall) {
        End();
    }
    return Failure(ERROR_IO_PENDING);
}

void FakeInternet::Complete() {
    std::thread([this] { End(); }).join();
}

void FakeInternet::End() {
    const Pending ending = std::exchange(pending_, std::nullopt).value();
    ending.Deliver();
    Tell(context, INTERNET_STATUS_REQUEST_COMPLETE, ending.step.succeeded);
}

void FakeInternet::Tell(DWORD_PTR itsContext, DWORD statusCode, bool succeeded) {
    INTERNET_ASYNC_RESULT result{succeeded, succeeded ? 0u : ERROR_GEN_FAILURE};
    callback(g_request, itsContext, statusCode, &result, sizeof(result));
}

} // namespace brevint::test

using namespace brevint::test;

DWORD GetLastError() noexcept {
    return t_lastError;
}
void SetLastError(DWORD error) noexcept {
    t_lastError = error;
}

HINTERNET InternetOpenW(LPCWSTR agent, DWORD accessType, LPCWSTR proxy, LPCWSTR proxyBypass,
                        DWORD flags) noexcept {
    Called("open", agent, accessType, proxy, proxyBypass, Hex(flags));
    return g_session;
}

BOOL InternetSetOptionA(HINTERNET handle, DWORD option, LPVOID buffer, DWORD length) noexcept {
    Called("option", handle, option, *static_cast<DWORD*>(buffer), length);
    return FALSE;
}

INTERNET_STATUS_CALLBACK InternetSetStatusCallback(HINTERNET handle,
                                                   INTERNET_STATUS_CALLBACK callback) noexcept {
    Called("callback", handle).callback = callback;
    return nullptr;
}

BOOL InternetCrackUrlW(LPCWSTR url, DWORD length, DWORD flags, LPURL_COMPONENTSW parts) noexcept {
    parts->nScheme =
        Called("crack", url, length, flags, parts->dwHostNameLength, parts->dwUrlPathLength).scheme;
    parts->nPort = 80;
    const auto store = [](std::wstring_view text, LPWSTR buffer, DWORD& capacity) {
        *std::copy(text.begin(), text.end(), buffer) = L'\0';
        capacity = static_cast<DWORD>(text.size());
    };
    store(L"host", parts->lpszHostName, parts->dwHostNameLength);
    store(L"/path?q=1", parts->lpszUrlPath, parts->dwUrlPathLength);
    return TRUE;
}

HINTERNET InternetConnectW(HINTERNET session, LPCWSTR server, INTERNET_PORT port, LPCWSTR user,
                           LPCWSTR password, DWORD service, DWORD flags,
                           DWORD_PTR context) noexcept {
    Called("connect", session, server, port, user, password, service, flags, context);
    return g_connection;
}

HINTERNET HttpOpenRequestW(HINTERNET connection, LPCWSTR verb, LPCWSTR objectName, LPCWSTR version,
                           LPCWSTR referrer, LPCWSTR* acceptTypes, DWORD flags,
                           DWORD_PTR context) noexcept {
    std::string accepted = "accepts";
    for (; *acceptTypes; ++acceptTypes) {
        accepted += ' ' + Shown(*acceptTypes);
    }
    Called("request", connection, verb, objectName, version, referrer, accepted, Hex(flags),
           std::string(context ? "context" : "none"))
        .context = context;
    return g_request;
}

BOOL HttpSendRequestW(HINTERNET request, LPCWSTR headers, DWORD headersLength, LPVOID body,
                      DWORD bodyLength) noexcept {
    const std::string bytes(body ? static_cast<char*>(body) : "null", body ? bodyLength : 4);
    auto& fake =
        Called("send", request, std::wstring(headers, headersLength).c_str(), bytes, bodyLength);
    return fake.Begin(fake.send, nullptr, nullptr);
}

BOOL InternetReadFile(HINTERNET request, LPVOID buffer, DWORD size, LPDWORD read) noexcept {
    auto& fake = Called("read", request, size, *read);
    FakeInternet::Step step;
    if (!fake.reads.empty()) {
        step = fake.reads.front();
        fake.reads.pop_front();
    }
    return fake.Begin(step, buffer, read);
}

BOOL HttpQueryInfoW(HINTERNET request, DWORD infoLevel, LPVOID buffer, LPDWORD, LPDWORD) noexcept {
    auto& number = *static_cast<DWORD*>(buffer);
    const auto& fake = *FakeInternet::current;
    const bool asksStatus = infoLevel == (HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER);
    if (!request || (asksStatus ? fake.status == 0 : !fake.contentLength)) {
        return Failure(ERROR_HTTP_HEADER_NOT_FOUND);
    }
    number = asksStatus ? fake.status : *fake.contentLength;
    return TRUE;
}

BOOL HttpQueryInfoA(HINTERNET, DWORD, LPVOID, LPDWORD, LPDWORD) noexcept {
    return Failure(ERROR_HTTP_HEADER_NOT_FOUND);
}

BOOL InternetCloseHandle(HINTERNET handle) noexcept {
    auto& fake = Called("close", handle);
    if (handle == g_request && fake.context && fake.closingTellsAtOnce) {
        fake.Notify(fake.context, INTERNET_STATUS_HANDLE_CLOSING);
    }
    return TRUE;
}

BOOL InternetGetCookieW(LPCWSTR, LPCWSTR, LPWSTR buffer, LPDWORD size) noexcept {
    auto& jar = FakeInternet::current->cookies;
    if (jar.empty()) {
        return Failure(ERROR_NO_MORE_ITEMS);
    }
    const std::wstring text = jar.front();
    jar.pop_front();
    const bool fits = *size > text.size();
    *size = static_cast<DWORD>((text.size() + 1) * (buffer && fits ? 1 : sizeof(wchar_t)));
    if (buffer && !fits) {
        return Failure(ERROR_INSUFFICIENT_BUFFER);
    }
    if (buffer) {
        std::copy_n(text.c_str(), text.size() + 1, buffer);
    }
    return TRUE;
}

BOOL InternetSetCookieW(LPCWSTR, LPCWSTR, LPCWSTR) noexcept {
    return FALSE;
}
