#pragma once

#include "platform/WinInet.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace brevint::test {

struct HandleCloser {
    void operator()(HINTERNET handle) const noexcept { InternetCloseHandle(handle); }
};
using Handle = std::unique_ptr<void, HandleCloser>;

/// What an address consists of.
struct Cracked {
    INTERNET_SCHEME scheme = INTERNET_SCHEME_DEFAULT;
    std::wstring host;
    INTERNET_PORT port = 0;
    std::wstring path;

    bool operator==(const Cracked&) const = default;
};

/// InternetCrackUrlW with the buffers of a client; nothing when it fails.
std::optional<Cracked> Crack(const std::wstring& url);

/// What a request is opened and sent with.
struct RequestSetup {
    std::wstring verb = L"GET";
    std::vector<std::wstring> accept = {};
    DWORD flags = 0;
    std::wstring headers = {};
    std::string body = {};
};

/// The three handles of one exchange. The request goes first when they are destroyed.
struct RequestHandles {
    Handle session;
    Handle connection;
    Handle request;
};

/// Opens all three for a URL; a handle is null when its call failed or one before it.
RequestHandles OpenRequest(const std::wstring& url, const RequestSetup& setup,
                           DWORD sessionFlags = 0, INTERNET_STATUS_CALLBACK callback = nullptr,
                           DWORD_PTR context = 0);

/// HttpSendRequestW with the setup's headers and body, which must live until the send completes.
bool SendRequest(HINTERNET request, RequestSetup& setup);

/// A header of the reply that is a number; nothing when the query fails.
std::optional<DWORD> QueryNumber(HINTERNET request, DWORD header);

/// The body cut into chunks of that size.
std::vector<std::string> Chunks(const std::string& body, std::size_t size);

/// One synchronous exchange, from the opening of its session to the closing of its handles.
class Exchange {
public:
    /// What one InternetReadFile call did.
    struct ReadResult {
        bool succeeded = false;
        std::string bytes;
    };

    explicit Exchange(const std::wstring& url, RequestSetup setup = {});

    HINTERNET Request() const { return m_handles.request.get(); }

    bool Send();
    /// The last error of a failed Send.
    DWORD SendError() const { return m_sendError; }

    /// The reply's status, 0 when there is none.
    DWORD Status() const { return QueryNumber(Request(), HTTP_QUERY_STATUS_CODE).value_or(0); }

    ReadResult Read(DWORD size) const;
    /// Reads in calls of 100000 bytes until one fails or brings nothing.
    std::string ReadAll() const;

private:
    RequestSetup m_setup;
    RequestHandles m_handles;
    DWORD m_sendError = 0;
};

} // namespace brevint::test
