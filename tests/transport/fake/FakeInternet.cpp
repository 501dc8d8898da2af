#include "tests/transport/fake/FakeInternet.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace brevint::test {
namespace {

thread_local DWORD lastError = 0;

// Handles are the addresses of their names.
char session[] = "session ", connection[] = "connection ", request[] = "request ";

BOOL Failure(DWORD error) {
    SetLastError(error);
    return FALSE;
}

void Deliver(const FakeInternet::Pending& ended) {
    if (ended.count) {
        std::ranges::copy(ended.step.bytes, static_cast<char*>(ended.buffer));
        *ended.count = static_cast<DWORD>(ended.step.bytes.size());
    }
}

} // namespace

BOOL FakeInternet::Begin(const Step& step, LPVOID buffer, LPDWORD count) {
    const Pending begun{step, buffer, count};
    if (step.how == How::Fails) {
        return Failure(ERROR_GEN_FAILURE);
    }
    if (step.how == How::AtOnce || step.how == How::ToldTwice) {
        Deliver(begun);
        if (step.how == How::ToldTwice) {
            pending = Pending{step, nullptr, nullptr};
        }
        // It means nothing after TRUE, so it says what misleads: a read that pends, a failed send.
        SetLastError(count ? ERROR_IO_PENDING : ERROR_GEN_FAILURE);
        return TRUE;
    }
    pending = begun;
    if (step.how == How::EndsInTheCall) {
        End();
    }
    return Failure(ERROR_IO_PENDING);
}

void FakeInternet::Complete() {
    std::thread([this] { End(); }).join();
}

void FakeInternet::End() {
    const Pending ended = std::exchange(pending, std::nullopt).value();
    Deliver(ended);
    Notify(context, INTERNET_STATUS_REQUEST_COMPLETE, ended.step.succeeded);
}

void FakeInternet::Notify(DWORD_PTR itsContext, DWORD statusCode, bool succeeded) const {
    INTERNET_ASYNC_RESULT result{succeeded, succeeded ? 0u : ERROR_GEN_FAILURE};
    callback(request, itsContext, statusCode, &result, sizeof(result));
}

} // namespace brevint::test

using namespace brevint::test;

DWORD GetLastError() noexcept {
    return lastError;
}
void SetLastError(DWORD error) noexcept {
    lastError = error;
}

HINTERNET InternetOpenW(LPCWSTR, DWORD, LPCWSTR, LPCWSTR, DWORD) noexcept {
    return session;
}

BOOL InternetSetOptionA(HINTERNET, DWORD option, LPVOID buffer, DWORD) noexcept {
    FakeInternet::current->options[option] = *static_cast<DWORD*>(buffer);
    return TRUE;
}

INTERNET_STATUS_CALLBACK InternetSetStatusCallback(HINTERNET,
                                                   INTERNET_STATUS_CALLBACK callback) noexcept {
    return std::exchange(FakeInternet::current->callback, callback);
}

BOOL InternetCrackUrlW(LPCWSTR, DWORD, DWORD, LPURL_COMPONENTSW components) noexcept {
    components->nScheme = INTERNET_SCHEME_HTTP;
    return TRUE;
}

HINTERNET InternetConnectW(HINTERNET, LPCWSTR, INTERNET_PORT, LPCWSTR, LPCWSTR, DWORD, DWORD,
                           DWORD_PTR) noexcept {
    return connection;
}

HINTERNET HttpOpenRequestW(HINTERNET, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR*, DWORD,
                           DWORD_PTR context) noexcept {
    FakeInternet::current->context = context;
    return request;
}

BOOL HttpSendRequestW(HINTERNET, LPCWSTR, DWORD, LPVOID body, DWORD bodyLength) noexcept {
    auto& fake = *FakeInternet::current;
    fake.bodies.emplace_back(static_cast<char*>(body), bodyLength);
    return fake.Begin(fake.send, nullptr, nullptr);
}

BOOL InternetReadFile(HINTERNET, LPVOID buffer, DWORD size, LPDWORD read) noexcept {
    auto& fake = *FakeInternet::current;
    fake.readSizes.push_back(size);
    FakeInternet::Step step;
    if (!fake.reads.empty()) {
        step = fake.reads.front();
        fake.reads.pop_front();
    }
    return fake.Begin(step, buffer, read);
}

BOOL HttpQueryInfoW(HINTERNET, DWORD infoLevel, LPVOID buffer, LPDWORD, LPDWORD) noexcept {
    const bool asksStatus = infoLevel == (HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER);
    const auto& fake = *FakeInternet::current;
    const DWORD number = asksStatus ? fake.status : fake.contentLength;
    *static_cast<DWORD*>(buffer) = number;
    return number != 0 ? TRUE : Failure(ERROR_HTTP_HEADER_NOT_FOUND);
}

BOOL HttpQueryInfoA(HINTERNET, DWORD, LPVOID, LPDWORD length, LPDWORD) noexcept {
    if (!FakeInternet::current->hasLocation) {
        return Failure(ERROR_HTTP_HEADER_NOT_FOUND);
    }
    *length = 1;
    return Failure(ERROR_INSUFFICIENT_BUFFER);
}

BOOL InternetCloseHandle(HINTERNET handle) noexcept {
    auto& fake = *FakeInternet::current;
    fake.closed += static_cast<char*>(handle);
    if (handle == request && fake.context && fake.closingTellsAtOnce) {
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
