#include "brevint/WebRequest.h"

#include "brevint/IDetachable.h"
#include "brevint/IRequestInfo.h"
#include "brevint/IResponse.h"
#include "platform/WinInet.h"
#include "support/PlatformCookies.h"
#include "support/UnicodeConvert.h"
#include "support/Utf8.h"
#include "transport/ReadBuffer.h"
#include "transport/RequestContext.h"
#include "transport/ServiceConnection.h"

#include <algorithm>
#include <limits>
#include <new>
#include <string_view>
#include <utility>

namespace {

constexpr DWORD kTimeoutMilliseconds = 3'600'000;
constexpr DWORD kChunkSize = 100'000;

/// Runs on any thread, for every session. Contexts exist for asynchronous requests only.
void CALLBACK StatusCallback(HINTERNET, DWORD_PTR context, DWORD status, LPVOID information,
                             DWORD) {
    auto* const exchange = reinterpret_cast<RequestContext*>(context);
    if (!exchange) {
        return;
    }
    if (status == INTERNET_STATUS_REQUEST_COMPLETE) {
        const auto* result = static_cast<const INTERNET_ASYNC_RESULT*>(information);
        exchange->OnRequestComplete(result->dwResult != 0);
    } else if (status == INTERNET_STATUS_HANDLE_CLOSING) {
        exchange->LetGoByPlatform();
    }
}

/// A body to send; null when the platform cannot carry it, which counts bytes in 32 bits.
std::shared_ptr<std::vector<char>> MakeBody(std::string_view bytes) {
    if (bytes.size() > std::numeric_limits<DWORD>::max()) {
        return nullptr;
    }
    return std::make_shared<std::vector<char>>(bytes.begin(), bytes.end());
}

} // namespace

WebRequest::WebRequest()
    : m_uploadData(MakeBody({})), m_context(std::make_shared<RequestContext>()) {}

WebRequest::WebRequest(const wchar_t* url, WebRequestType type) : WebRequest() {
    WebRequest::SetRequestType(type);
    WebRequest::SetRequestUrl(url);
}

WebRequest::~WebRequest() {
    EndExchange();
}

void WebRequest::EndExchange() {
    m_context->Abandon();
    // Children first, see ServiceConnection.
    m_context->CloseRequest();
    m_connection.reset();
}

void WebRequest::SetRequestUrl(const wchar_t* url) {
    m_requestUrl = url ? url : L"";
}

void WebRequest::SetRequestType(WebRequestType type) {
    if (const wchar_t* verb = GetVerb(type)) {
        m_verb = verb;
    }
}

void WebRequest::AddAcceptType(AcceptType type) {
    m_acceptTypes.push_back(type);
}

void WebRequest::AddHeader(const wchar_t* header) {
    m_headers.emplace_back(header ? header : L"");
}

void WebRequest::SetCookie(const wchar_t* url, const wchar_t* data) {
    InternetSetCookieW(url, L"", data);
}

unsigned long WebRequest::GetRequestStatus() {
    return m_context->Status();
}

void WebRequest::GetRequestedData(std::wstring& out) {
    std::vector<char> bytes;
    ReadReply(bytes, true);
    const std::string_view text(bytes.data(), bytes.size());
    try {
        out = Utf8::ToWide(text.substr(0, text.find('\0')));
    } catch (const std::bad_alloc&) {
        out.clear();
    }
}

void WebRequest::GetRequestedData(std::vector<char>& out) {
    ReadReply(out, false);
}

void WebRequest::GetCookie(std::wstring& out) {
    out = BaseHlpr::GetPlatformCookies(m_requestUrl.c_str());
}

void WebRequest::SendRequest() {
    Connect(0);
    if (m_uploadData) {
        OpenRequest(nullptr);
        Send(*m_uploadData);
    }
}

void WebRequest::SendRequest(IRequestInfo* info) {
    ExtractRequestInfo(info);
    SendRequest();
}

void WebRequest::SendRequestAsync(IResponse* response) {
    Connect(INTERNET_FLAG_ASYNC);
    const std::shared_ptr<RequestContext> context = m_context;
    context->response = response;
    context->request = this;
    context->body = m_uploadData;
    if (auto* const detachable = dynamic_cast<IDetachable*>(response)) {
        detachable->Attach(context);
    }
    const unsigned step = context->Begin(RequestContext::State::Sending);
    if (!context->body) {
        context->OnSendFailed(step);
        return;
    }
    OpenRequest(context.get());
    // From a send that is under way on, the exchange belongs to the callback, which may have ended
    // it and this object's life by now.
    if (!Send(*context->body) && GetLastError() != ERROR_IO_PENDING) {
        context->OnSendFailed(step);
    }
}

void WebRequest::SendRequestAsync(IRequestInfo* info, IResponse* response) {
    ExtractRequestInfo(info);
    SendRequestAsync(response);
}

void WebRequest::SetRequestFlags(int flags) {
    m_requestFlags = flags;
}

void WebRequest::SetUploadData(const wchar_t* data) {
    const _UNICODECONVERT narrow(data);
    m_uploadData = MakeBody(static_cast<const char*>(narrow));
}

void WebRequest::SetUploadData(const std::vector<char>& data) {
    m_uploadData = MakeBody({data.data(), data.size()});
}

void WebRequest::ClearAcceptTypes() {
    m_acceptTypes.clear();
}

void WebRequest::ClearHeaders() {
    m_headers.clear();
}

void WebRequest::GetRedirectUrl(std::wstring& out) {
    out.clear();
    DWORD size = 0;
    const HINTERNET request = m_context->Handle();
    HttpQueryInfoA(request, HTTP_QUERY_LOCATION, nullptr, &size, nullptr);
    std::vector<char> location(size + 1);
    if (size != 0 &&
        HttpQueryInfoA(request, HTTP_QUERY_LOCATION, location.data(), &size, nullptr)) {
        out = _UNICODECONVERT(location.data());
    }
}

void WebRequest::GetRequestedDataAsync(RequestContext* context) {
    using State = RequestContext::State;
    const DWORD length = ContentLength();
    const unsigned step = length != 0 ? context->BeginRead(State::ReadingLast, length)
                                      : context->BeginRead(State::ReadingChunk, kChunkSize);
    if (step == 0) {
        return;
    }
    const BOOL finished =
        InternetReadFile(context->Handle(), context->readBuffer.Data(),
                         static_cast<DWORD>(context->readBuffer.Size()), &context->bytesRead);
    // A read that finishes at once is the reply's last one, whatever its length. This object may be
    // gone by now, if a callback has come all the same.
    if (finished || GetLastError() != ERROR_IO_PENDING) {
        context->OnReadAtOnce(step, finished != FALSE);
    }
}

void WebRequest::Connect(int flags) {
    EndExchange();
    // A context serves one exchange; the last one may still be in the platform's hands.
    m_context = std::make_shared<RequestContext>();
    const ServiceConnection::Settings settings = {static_cast<DWORD>(flags), kTimeoutMilliseconds,
                                                  kTimeoutMilliseconds, StatusCallback};
    m_connection = std::make_unique<ServiceConnection>(m_requestUrl, settings);
}

const wchar_t* WebRequest::GetAcceptString(AcceptType type) {
    switch (type) {
    case AcceptTypeXml: return L"text/xml";
    case AcceptTypeOctetStream: return L"application/octet-stream";
    default: return L"text/html";
    }
}

void WebRequest::ExtractRequestInfo(IRequestInfo* info) {
    SetRequestUrl(info->GetRequestUrl().c_str());
    SetRequestType(info->GetRequestType());
    std::vector<AcceptType> acceptTypes;
    info->GetAcceptTypes(acceptTypes);
    for (const AcceptType type : acceptTypes) {
        AddAcceptType(type);
    }
    AddHeader(info->GetHeaders().c_str());
    SetRequestFlags(info->GetRequestFlags());
    if (const std::vector<char>& bytes = info->GetUploadData(); !bytes.empty()) {
        SetUploadData(bytes);
    } else {
        SetUploadData(info->GetUploadString().c_str());
    }
}

void WebRequest::OpenRequest(RequestContext* context) {
    if (context) {
        context->HoldForPlatform();
    }
    const HINTERNET request =
        m_connection->OpenRequest(m_verb.c_str(), m_acceptTypes, static_cast<DWORD>(m_requestFlags),
                                  reinterpret_cast<DWORD_PTR>(context));
    m_context->OwnHandle(request);
    if (context && !request) {
        context->LetGoByPlatform();
    }
}

bool WebRequest::Send(std::vector<char>& body) {
    std::wstring headers;
    for (const std::wstring& header : m_headers) {
        headers += header + L"\r\n";
    }
    return HttpSendRequestW(
               m_context->Handle(), headers.c_str(), static_cast<DWORD>(headers.size()),
               body.empty() ? nullptr : body.data(), static_cast<DWORD>(body.size())) != FALSE;
}

std::uint32_t WebRequest::ContentLength() const {
    return m_context->QueryNumber(HTTP_QUERY_CONTENT_LENGTH);
}

void WebRequest::ReadReply(std::vector<char>& out, bool asText) {
    const std::size_t before = out.size();
    try {
        if (const DWORD length = ContentLength()) {
            ReadBuffer buffer;
            DWORD bytesRead = 0;
            if (buffer.Allocate(length) &&
                InternetReadFile(m_context->Handle(), buffer.Data(), length, &bytesRead) &&
                bytesRead == length) {
                buffer.MoveTo(length, out);
            }
        } else {
            ReadChunks(out, asText);
        }
    } catch (const std::bad_alloc&) {
        out.resize(before);
    }
}

void WebRequest::ReadChunks(std::vector<char>& out, bool asText) {
    for (;;) {
        const std::size_t before = out.size();
        out.resize(before + kChunkSize);
        DWORD bytesRead = 0;
        const BOOL succeeded =
            InternetReadFile(m_context->Handle(), out.data() + before, kChunkSize, &bytesRead);
        if (!succeeded && GetLastError() == ERROR_NOT_ENOUGH_MEMORY) {
            throw std::bad_alloc(); // out of memory in the platform counts as out of memory here
        }
        if (!succeeded || bytesRead == 0) {
            out.resize(before);
            return;
        }
        const auto chunk = out.begin() + static_cast<std::ptrdiff_t>(before);
        const auto end = chunk + static_cast<std::ptrdiff_t>(bytesRead);
        out.erase(asText ? std::find(chunk, end, '\0') : end, out.end());
    }
}
