#pragma once

#include "brevint/AcceptType.h"
#include "brevint/WebRequestType.h"
#include "platform/WinInet.h"

#include <memory>
#include <string>
#include <vector>

struct InternetHandleCloser {
    void operator()(HINTERNET handle) const noexcept { InternetCloseHandle(handle); }
};
/// A handle of the platform's internet client.
using InternetHandle = std::unique_ptr<void, InternetHandleCloser>;

/// The platform's session and connection for one URL, on which a request is opened.
class ServiceConnection {
public:
    struct Settings {
        DWORD sessionFlags = 0;
        DWORD sendTimeout = 0;    ///< Milliseconds without progress.
        DWORD receiveTimeout = 0; ///< Likewise, the wait for the reply included.
        INTERNET_STATUS_CALLBACK callback = nullptr;
    };

    /// A URL that cannot be understood gives a session without a connection, and a null request.
    ServiceConnection(const std::wstring& url, const Settings& settings);

    /// Opens a request, which has to be closed before this is destroyed. Null when that fails.
    HINTERNET OpenRequest(const wchar_t* verb, const std::vector<AcceptType>& acceptTypes,
                          DWORD flags, DWORD_PTR context) const;

private:
    /// Closed in reverse, children first: closing a parent closes its children and frees their
    /// numbers, which the platform may give to another thread before this one comes to close them.
    InternetHandle m_session;
    InternetHandle m_connection;
    std::wstring m_path;
    bool m_secure = false;
};

/// Null for a number that is no verb.
const wchar_t* GetVerb(WebRequestType type);
