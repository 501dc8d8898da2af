#include "tests/platform/Exchange.h"

#include <utility>

namespace brevint::test {

std::optional<Cracked> Crack(const std::wstring& url) {
    wchar_t host[256];
    wchar_t path[2084];
    URL_COMPONENTSW parts{};
    parts.dwStructSize = sizeof parts;
    parts.lpszHostName = host;
    parts.dwHostNameLength = 256;
    parts.lpszUrlPath = path;
    parts.dwUrlPathLength = 2084;
    if (!InternetCrackUrlW(url.c_str(), 0, 0, &parts)) {
        return std::nullopt;
    }
    return Cracked{parts.nScheme, host, parts.nPort, path};
}

RequestHandles OpenRequest(const std::wstring& url, const RequestSetup& setup, DWORD sessionFlags,
                           INTERNET_STATUS_CALLBACK callback, DWORD_PTR context) {
    RequestHandles handles;
    handles.session.reset(
        InternetOpenW(L"Tester", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, sessionFlags));
    InternetSetStatusCallback(handles.session.get(), callback);

    const auto cracked = Crack(url);
    if (!cracked) {
        return handles;
    }
    handles.connection.reset(InternetConnectW(handles.session.get(), cracked->host.c_str(),
                                              cracked->port, nullptr, nullptr,
                                              INTERNET_SERVICE_HTTP, 0, 0));
    std::vector<const wchar_t*> accept;
    for (const auto& type : setup.accept) {
        accept.push_back(type.c_str());
    }
    accept.push_back(nullptr);
    const auto secure = cracked->scheme == INTERNET_SCHEME_HTTPS ? INTERNET_FLAG_SECURE : DWORD{0};
    handles.request.reset(HttpOpenRequestW(handles.connection.get(), setup.verb.c_str(),
                                           cracked->path.c_str(), nullptr, nullptr, accept.data(),
                                           setup.flags | secure, context));
    return handles;
}

bool SendRequest(HINTERNET request, RequestSetup& setup) {
    return HttpSendRequestW(request, setup.headers.c_str(),
                            static_cast<DWORD>(setup.headers.size()),
                            setup.body.empty() ? nullptr : setup.body.data(),
                            static_cast<DWORD>(setup.body.size())) != FALSE;
}

std::optional<DWORD> QueryNumber(HINTERNET request, DWORD header) {
    DWORD number = 0;
    DWORD size = sizeof number;
    const bool found =
        HttpQueryInfoW(request, header | HTTP_QUERY_FLAG_NUMBER, &number, &size, nullptr) != FALSE;
    return found ? std::optional(number) : std::nullopt;
}

std::vector<std::string> Chunks(const std::string& body, std::size_t size) {
    std::vector<std::string> chunks;
    for (std::size_t at = 0; at < body.size(); at += size) {
        chunks.push_back(body.substr(at, size));
    }
    return chunks;
}

Exchange::Exchange(const std::wstring& url, RequestSetup setup)
    : m_setup(std::move(setup)), m_handles(OpenRequest(url, m_setup)) {}

bool Exchange::Send() {
    const auto sent = SendRequest(Request(), m_setup);
    m_sendError = sent ? 0 : GetLastError();
    return sent;
}

Exchange::ReadResult Exchange::Read(DWORD size) const {
    ReadResult result;
    result.bytes.resize(size);
    DWORD count = 0;
    result.succeeded = InternetReadFile(Request(), result.bytes.data(), size, &count) != FALSE;
    result.bytes.resize(count);
    return result;
}

std::string Exchange::ReadAll() const {
    std::string all;
    ReadResult part;
    do {
        part = Read(100000);
        all += part.bytes;
    } while (part.succeeded && !part.bytes.empty());
    return all;
}

} // namespace brevint::test
