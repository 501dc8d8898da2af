#include "transport/ServiceConnection.h"

#include "brevint/WebRequest.h"
#include "transport/EscapeControls.h"

#include <algorithm>

namespace {

constexpr DWORD kHostNameCapacity = 256;
constexpr DWORD kUrlPathCapacity = 2084;

struct VerbRow {
    WebRequestType type;
    const wchar_t* verb;
};

constexpr VerbRow kVerbs[] = {
    {WebRequestTypeGet, L"GET"},
    {WebRequestTypePut, L"PUT"},
    {WebRequestTypePost, L"POST"},
    {WebRequestTypeDelete, L"DELETE"},
};

} // namespace

const wchar_t* GetVerb(WebRequestType type) {
    const auto* const row = std::ranges::find(kVerbs, type, &VerbRow::type);
    return row == std::end(kVerbs) ? nullptr : row->verb;
}

ServiceConnection::ServiceConnection(const std::wstring& url, const Settings& settings)
    : m_session(InternetOpenW(L"Velmora", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr,
                              settings.sessionFlags)) {
    if (!m_session) {
        return;
    }
    DWORD receive = settings.receiveTimeout;
    DWORD send = settings.sendTimeout;
    InternetSetOptionA(m_session.get(), INTERNET_OPTION_RECEIVE_TIMEOUT, &receive, sizeof(receive));
    InternetSetOptionA(m_session.get(), INTERNET_OPTION_SEND_TIMEOUT, &send, sizeof(send));
    InternetSetStatusCallback(m_session.get(), settings.callback);

    // Not cleared but for the beginning: that would take longer than the platform's work.
    wchar_t host[kHostNameCapacity];
    wchar_t path[kUrlPathCapacity];
    host[0] = path[0] = L'\0';
    URL_COMPONENTSW parts{};
    parts.dwStructSize = sizeof(parts);
    parts.lpszHostName = host;
    parts.dwHostNameLength = kHostNameCapacity;
    parts.lpszUrlPath = path;
    parts.dwUrlPathLength = kUrlPathCapacity;
    if (!InternetCrackUrlW(EscapeControls(url).c_str(), 0, 0, &parts)) {
        return;
    }
    // The platform takes "ftp://host" and "nonsense://host" apart too.
    if (parts.nScheme != INTERNET_SCHEME_HTTP && parts.nScheme != INTERNET_SCHEME_HTTPS) {
        return;
    }
    m_secure = parts.nScheme == INTERNET_SCHEME_HTTPS;
    m_connection.reset(InternetConnectW(m_session.get(), host, parts.nPort, nullptr, nullptr,
                                        INTERNET_SERVICE_HTTP, 0, 0));
    m_path = path;
}

HINTERNET ServiceConnection::OpenRequest(const wchar_t* verb,
                                         const std::vector<AcceptType>& acceptTypes, DWORD flags,
                                         DWORD_PTR context) const {
    std::vector<const wchar_t*> types(acceptTypes.size() + 1); // ends in a null
    std::ranges::transform(acceptTypes, types.begin(), &WebRequest::GetAcceptString);
    return HttpOpenRequestW(m_connection.get(), verb, m_path.c_str(), nullptr, nullptr,
                            types.data(), flags | (m_secure ? INTERNET_FLAG_SECURE : DWORD{0}),
                            context);
}
