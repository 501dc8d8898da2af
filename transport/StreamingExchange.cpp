#include "transport/StreamingExchange.h"

#include "brevint/IRequestInfo.h"
#include "support/Utf8.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <utility>
#include <vector>

namespace {

/// WinINet hangs now and then in larger writes to a server that has closed the connection.
constexpr std::size_t kLargestWrite = 256 * 1024;

/// What a socket reports when its time is up; the platform hands it on.
constexpr DWORD kSocketTimedOut = 10060;

constexpr DWORD kFlags =
    INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_NO_AUTO_REDIRECT;

std::optional<std::uint64_t> ParseLength(const std::wstring& text) {
    const std::string digits = Utf8::ToNarrow(text);
    const char* const end = digits.data() + digits.size();
    std::uint64_t length = 0;
    const auto [stop, error] = std::from_chars(digits.data(), end, length);
    return error == std::errc() && stop == end ? std::optional(length) : std::nullopt;
}

void SetTimeLimit(HINTERNET request, DWORD option, std::chrono::milliseconds limit) noexcept {
    DWORD count = static_cast<DWORD>(limit.count());
    InternetSetOptionA(request, option, &count, sizeof(count));
}

} // namespace

StreamingExchange::StreamingExchange(ExchangeTimeouts timeouts) : m_timeouts(timeouts) {}

StreamingExchange::~StreamingExchange() {
    CloseRequest();
}

ExchangeFailure StreamingExchange::Send(const IRequestInfo& info, const std::wstring& headers,
                                        IBodySource* body) {
    m_head = {};
    m_read = 0;
    BeginWait(std::min(m_timeouts.send, m_timeouts.receive));
    if (!OpenRequest(info)) {
        return LastFailure();
    }
    const std::wstring block = info.GetHeaders() + headers;
    if (body) {
        return SendBody(block, *body);
    }
    const std::vector<char>& data = info.GetUploadData();
    std::string small = data.empty() ? Utf8::ToNarrow(info.GetUploadString())
                                     : std::string(data.begin(), data.end());
    if (!HttpSendRequestW(m_request, block.c_str(), static_cast<DWORD>(block.size()),
                          small.empty() ? nullptr : small.data(),
                          static_cast<DWORD>(small.size()))) {
        return LastFailure();
    }
    return ReadHead();
}

bool StreamingExchange::OpenRequest(const IRequestInfo& info) {
    CloseRequest();
    m_connection = std::make_unique<ServiceConnection>(
        info.GetRequestUrl(),
        ServiceConnection::Settings{.sendTimeout = static_cast<DWORD>(m_timeouts.send.count()),
                                    .receiveTimeout =
                                        static_cast<DWORD>(m_timeouts.receive.count())});
    std::vector<AcceptType> acceptTypes;
    info.GetAcceptTypes(acceptTypes);
    const HINTERNET request =
        m_connection->OpenRequest(GetVerb(info.GetRequestType()), acceptTypes,
                                  static_cast<DWORD>(info.GetRequestFlags()) | kFlags, 0);
    if (!request) {
        return false;
    }
    // Wine's requests do not take over the limits of their session.
    SetTimeLimit(request, INTERNET_OPTION_SEND_TIMEOUT, m_timeouts.send);
    SetTimeLimit(request, INTERNET_OPTION_RECEIVE_TIMEOUT, m_timeouts.receive);
    const std::scoped_lock lock(m_mutex);
    if (m_cancelled) {
        InternetCloseHandle(request);
        return false;
    }
    m_request = request;
    return true;
}

void StreamingExchange::CloseRequest() noexcept {
    HINTERNET request = nullptr;
    {
        const std::scoped_lock lock(m_mutex);
        request = m_request.exchange(nullptr);
    }
    if (request) {
        InternetCloseHandle(request);
    }
}

ExchangeFailure StreamingExchange::SendBody(const std::wstring& headers, IBodySource& body) {
    const std::uint64_t size = body.Size();
    INTERNET_BUFFERSW buffers{};
    buffers.dwStructSize = sizeof(buffers);
    std::wstring block = headers;
    if (size > std::numeric_limits<DWORD>::max() || size == 0) {
        // The platform's own count has 32 bits; it honours the header where that says nothing.
        block += L"Content-Length: " + std::to_wstring(size) + L"\r\n";
    } else {
        buffers.dwBufferTotal = static_cast<DWORD>(size);
    }
    buffers.lpcszHeader = block.c_str();
    buffers.dwHeadersLength = static_cast<DWORD>(block.size());
    if (!HttpSendRequestExW(m_request, &buffers, nullptr, 0, 0)) {
        return LastFailure();
    }
    std::vector<char> part(kLargestWrite);
    bool writing = true;
    for (std::uint64_t rest = size; rest > 0 && writing;) {
        const std::size_t wanted =
            static_cast<std::size_t>(std::min<std::uint64_t>(rest, part.size()));
        const std::size_t count = body.Read(part.data(), wanted);
        if (m_cancelled || count == 0) {
            BreakOff();
            return m_cancelled ? ExchangeFailure::Cancelled : ExchangeFailure::SourceFailed;
        }
        BeginWait(m_timeouts.send);
        DWORD written = 0;
        writing =
            InternetWriteFile(m_request, part.data(), static_cast<DWORD>(count), &written) != FALSE;
        rest -= count;
    }
    if (m_cancelled) {
        BreakOff();
        return ExchangeFailure::Cancelled;
    }
    const ExchangeFailure writeFailure = writing ? ExchangeFailure::None : LastFailure();
    BeginWait(m_timeouts.receive);
    // After a failed write too: a server that answers early ends the connection for it.
    const ExchangeFailure failure =
        HttpEndRequestW(m_request, nullptr, 0, 0) ? ReadHead() : LastFailure();
    return failure != ExchangeFailure::None && writeFailure != ExchangeFailure::None ? writeFailure
                                                                                     : failure;
}

void StreamingExchange::BreakOff() noexcept {
    SetTimeLimit(m_request, INTERNET_OPTION_RECEIVE_TIMEOUT, std::chrono::milliseconds(1));
    HttpEndRequestW(m_request, nullptr, 0, 0);
    CloseRequest();
}

ExchangeFailure StreamingExchange::ReadHead() {
    DWORD status = 0;
    DWORD size = sizeof(status);
    if (!HttpQueryInfoW(m_request, HTTP_QUERY_STATUS_CODE | HTTP_QUERY_FLAG_NUMBER, &status, &size,
                        nullptr) ||
        status == 0) {
        return m_cancelled ? ExchangeFailure::Cancelled : BrokenOff();
    }
    m_head.status = status;
    // As text: as a number the platform knows lengths of 32 bits only.
    m_head.length = ParseLength(QueryText(HTTP_QUERY_CONTENT_LENGTH));
    m_head.contentType = QueryText(HTTP_QUERY_CONTENT_TYPE);
    m_head.contentRange = QueryText(HTTP_QUERY_CONTENT_RANGE);
    m_head.entityTag = QueryText(HTTP_QUERY_ETAG);
    m_head.lastModified = QueryText(HTTP_QUERY_LAST_MODIFIED);
    m_head.location = QueryText(HTTP_QUERY_LOCATION);
    m_head.retryAfter = QueryText(HTTP_QUERY_RETRY_AFTER);
    return ExchangeFailure::None;
}

std::wstring StreamingExchange::QueryText(DWORD header) const {
    DWORD bytes = 0;
    HttpQueryInfoW(m_request, header, nullptr, &bytes, nullptr);
    std::wstring text(bytes / sizeof(wchar_t), L'\0');
    if (text.empty() || !HttpQueryInfoW(m_request, header, text.data(), &bytes, nullptr)) {
        return {};
    }
    text.resize(bytes / sizeof(wchar_t));
    return text;
}

ExchangeFailure StreamingExchange::Read(char* buffer, std::size_t size, std::size_t& read) {
    read = 0;
    if (m_cancelled) {
        return ExchangeFailure::Cancelled;
    }
    // No further than announced: Wine waits there for more when something else has come.
    const std::uint64_t rest = m_head.length ? *m_head.length - m_read : size;
    const DWORD wanted = static_cast<DWORD>(std::min<std::uint64_t>(size, rest));
    if (wanted == 0) {
        return ExchangeFailure::None;
    }
    BeginWait(m_timeouts.receive);
    DWORD count = 0;
    const BOOL succeeded = InternetReadFile(m_request, buffer, wanted, &count);
    const ExchangeFailure failure = succeeded ? ExchangeFailure::None : LastFailure();
    read = count;
    m_read += count;
    if (!succeeded) {
        return failure;
    }
    // The platform does not tell a connection that ends early from the end of a body.
    const bool isShort = count == 0 && m_head.length && m_read < *m_head.length;
    return isShort ? BrokenOff() : ExchangeFailure::None;
}

void StreamingExchange::Cancel() noexcept {
    m_cancelled = true;
    if (kClosingEndsCalls) {
        CloseRequest();
    }
}

ExchangeFailure StreamingExchange::LastFailure() const noexcept {
    const DWORD error = GetLastError();
    if (m_cancelled) {
        return ExchangeFailure::Cancelled;
    }
    switch (error) {
    case ERROR_INTERNET_NAME_NOT_RESOLVED: return ExchangeFailure::NameNotResolved;
    case ERROR_INTERNET_CANNOT_CONNECT: return ExchangeFailure::Refused;
    case kSocketTimedOut:
    case ERROR_INTERNET_TIMEOUT: return ExchangeFailure::TimedOut;
    case ERROR_INTERNET_SEC_CERT_DATE_INVALID:
    case ERROR_INTERNET_SEC_CERT_CN_INVALID:
    case ERROR_INTERNET_SEC_CERT_REV_FAILED:
    case ERROR_INTERNET_INVALID_CA:
    case ERROR_INTERNET_SECURITY_CHANNEL_ERROR: return ExchangeFailure::CertificateNotTrusted;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_INVALID_HANDLE:
    case ERROR_INTERNET_INTERNAL_ERROR: return ExchangeFailure::Other;
    default: return BrokenOff();
    }
}

ExchangeFailure StreamingExchange::BrokenOff() const noexcept {
    return std::chrono::steady_clock::now() >= m_waitEnds ? ExchangeFailure::TimedOut
                                                          : ExchangeFailure::BrokenOff;
}

std::unique_ptr<IStreamingExchange> StreamingExchangeFactory::Create(ExchangeTimeouts timeouts) {
    return std::make_unique<StreamingExchange>(timeouts);
}
