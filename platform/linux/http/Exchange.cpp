#include "platform/linux/http/Exchange.h"

#include "base/Ascii.h"
#include "platform/linux/Limits.h"
#include "platform/linux/WinInet.h"
#include "platform/linux/cookies/CookieJar.h"
#include "platform/linux/http/ChannelPool.h"
#include "platform/linux/http/CurlError.h"
#include "platform/linux/http/Redirect.h"
#include "platform/linux/system/ExitGate.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace platform {

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr long kBufferSize = 256 * 1024;
// libcurl may hand out megabytes at a time. Beyond this it keeps them until somebody reads on.
constexpr std::size_t kMostWaiting = 64 * 1024;
// A body that nobody wants is read up to here for the sake of its connection.
constexpr curl_off_t kDiscardLimit = 64 * 1024;

curl_off_t Info(CURL* easy, CURLINFO info) {
    curl_off_t value = 0;
    curl_easy_getinfo(easy, info, &value);
    return value;
}

// Tells when an exchange under way has made no progress for too long. Time in which nobody drives
// the exchange does not count, nor does connecting, which has its own limit.
class StallWatch {
public:
    StallWatch(CURL* easy, const HttpRequest& request) : m_easy(easy), m_request(request) {}

    // Time left, given the bytes received so far; not positive once the limit has passed.
    milliseconds Remaining(curl_off_t received) {
        const curl_off_t sent = Info(m_easy, CURLINFO_SIZE_UPLOAD_T);
        const bool connected = Info(m_easy, CURLINFO_PRETRANSFER_TIME_T) > 0;
        const auto now = Clock::now();
        if (!connected || sent + received != m_progress) {
            m_progress = sent + received;
            m_since = now;
        }
        const bool sending = static_cast<std::uint64_t>(sent) < m_request.bodySize;
        const milliseconds limit = sending ? m_request.timeouts.send : m_request.timeouts.receive;
        constexpr milliseconds kUnlimited = std::chrono::hours(1);
        return limit == milliseconds::zero()
                   ? kUnlimited
                   : std::chrono::ceil<milliseconds>(limit - (now - m_since));
    }

private:
    CURL* m_easy;
    const HttpRequest& m_request;
    curl_off_t m_progress = 0;
    Clock::time_point m_since = Clock::now();
};

// libcurl has the system's certificates built in; these variables are OpenSSL's own way to others.
void SetTrustOptions(CURL* easy) {
    if (const char* file = std::getenv("SSL_CERT_FILE"); file != nullptr && *file != '\0') {
        curl_easy_setopt(easy, CURLOPT_CAINFO, file);
    }
    if (const char* folder = std::getenv("SSL_CERT_DIR"); folder != nullptr && *folder != '\0') {
        curl_easy_setopt(easy, CURLOPT_CAPATH, folder);
    }
}

} // namespace

Exchange::Exchange(HttpRequest request, Cancellation& cancellation)
    : m_request(std::move(request)), m_cancellation(cancellation) {}

Exchange::~Exchange() {
    if (m_channel == nullptr) {
        return;
    }
    if (m_headDone) {
        m_discarding = true;
        Resume();
        const curl_off_t limit = m_received + kDiscardLimit;
        for (curl_off_t before = -1; !m_ended && m_received > before && m_received < limit;) {
            before = m_received;
            Step();
        }
    }
    ReleaseChannel();
}

DWORD Exchange::Send() {
    ReplyHead redirect;
    for (int redirects = 0;; ++redirects) {
        AwaitHead();
        if (!m_headDone) {
            break;
        }
        if (AcceptHead() != ERROR_SUCCESS) {
            break;
        }
        const auto target = RedirectTarget(m_request, m_reply);
        if (!target) {
            if (m_ended) {
                ReleaseChannel();
            }
            return ERROR_SUCCESS;
        }
        redirect = m_reply;
        if (redirects == kMostRedirects) {
            End(ERROR_HTTP_REDIRECT_FAILED);
            break;
        }
        DiscardBody();
        if (m_cancellation.Raised()) {
            End(ERROR_INTERNET_OPERATION_CANCELLED);
            break;
        }
        if (const DWORD error = FollowRedirect(m_request, *target, m_reply.status)) {
            End(error);
            break;
        }
    }
    ReleaseChannel();
    m_reply = std::move(redirect);
    return m_error != ERROR_SUCCESS ? m_error : ERROR_HTTP_INVALID_SERVER_RESPONSE;
}

DWORD Exchange::BeginSend() {
    AwaitHead();
    if (m_ended && !m_headDone) {
        ReleaseChannel();
        return m_error;
    }
    return ERROR_SUCCESS;
}

DWORD Exchange::Write(const char* data, std::size_t size) {
    if (m_ended || m_headDone || size > m_request.bodySize - m_written) {
        return m_error != ERROR_SUCCESS ? m_error : ERROR_INTERNET_CONNECTION_RESET;
    }
    m_source = data;
    m_sourceSize = size;
    m_written += size;
    if (size > 0) {
        curl_easy_pause(m_channel->Easy(), CURLPAUSE_CONT);
        DriveUntil([this] { return m_sourceSize == 0 || m_headDone; });
    }
    const bool isUsedUp = m_sourceSize == 0;
    m_source = nullptr;
    m_sourceSize = 0;
    if (isUsedUp && (!m_ended || m_error == ERROR_SUCCESS)) {
        return ERROR_SUCCESS;
    }
    return m_error != ERROR_SUCCESS ? m_error : ERROR_INTERNET_CONNECTION_RESET;
}

DWORD Exchange::EndSend() {
    if (!m_ended && !m_headDone) {
        if (m_written < m_request.bodySize) {
            End(ERROR_INTERNET_CONNECTION_ABORTED); // less than announced: no reply will come
        } else {
            DriveUntil([this] { return m_headDone; });
        }
    }
    const DWORD error = m_headDone ? AcceptHead() : m_error;
    if (m_ended) {
        ReleaseChannel();
    }
    return m_headDone || error != ERROR_SUCCESS ? error : ERROR_HTTP_INVALID_SERVER_RESPONSE;
}

DWORD Exchange::AcceptHead() {
    // It announces two lengths, or one that is no number, so nobody can tell where it ends.
    if (m_reply.contradictsItself && !m_reply.hasTransferEncoding) {
        End(ERROR_HTTP_INVALID_SERVER_RESPONSE);
        return m_error;
    }
    if (m_request.useCookies) {
        for (const std::string& cookie : m_reply.cookies) {
            CookieJar::Instance().Receive(m_scope, cookie);
        }
    }
    return ERROR_SUCCESS;
}

DWORD Exchange::Read(char* target, std::size_t size, std::size_t& read) {
    const std::size_t taken = m_waiting.Pop(target, size);
    m_target = target + taken;
    m_wanted = size - taken;
    if (m_wanted > 0 && !m_ended) {
        Resume();
    }
    if (m_wanted > 0 && !m_ended) {
        DriveUntil([this] { return m_wanted == 0; });
    }
    read = size - m_wanted;
    const bool complete = m_wanted == 0;
    m_target = nullptr;
    m_wanted = 0;
    if (!m_ended && m_waiting.Empty()) {
        // The reply's end may be here already. Noticing it frees the connection now, and not when
        // the handle is closed.
        Step();
    }
    if (m_ended) {
        ReleaseChannel();
    }
    return complete ? ERROR_SUCCESS : std::exchange(m_error, ERROR_SUCCESS);
}

void Exchange::AwaitHead() {
    for (const Connect connect : {Connect::AsNeeded, Connect::Anew}) {
        StartHop(connect);
        DriveUntil([this] { return m_headDone || m_sourceWanted; });
        if (!m_overtaken) {
            return;
        }
    }
}

void Exchange::StartHop(Connect connect) {
    m_reply = {};
    m_headDone = false;
    m_headBytes = 0;
    m_ended = false;
    m_error = ERROR_SUCCESS;
    m_overtaken = false;
    m_received = 0;
    m_discarding = false;
    m_isPaused = false;
    m_sourceWanted = false;
    ReleaseChannel();
    const Url& url = m_url.emplace(m_request.url);
    m_scope = CookieScope::Of(url);
    m_channel = ChannelPool::Instance().Acquire(Origin(m_request.url));
    SetOptions(connect, url);
    m_cancellation.Watch(m_channel->Multi());
    m_channel->Start();
}

void Exchange::SetOptions(Connect connect, const Url& url) {
    m_headerLines = HeaderLines();
    CURL* easy = m_channel->Easy();
    const auto set = [easy](CURLoption option, auto value) {
        if (curl_easy_setopt(easy, option, value) != CURLE_OK) {
            throw std::bad_alloc();
        }
    };
    set(CURLOPT_CURLU, url.Handle()); // one without a host ends the exchange
    set(CURLOPT_FRESH_CONNECT, connect == Connect::Anew ? 1L : 0L);
    set(CURLOPT_HTTPHEADER, m_headerLines.get());
    if (m_request.verb == "HEAD") {
        set(CURLOPT_NOBODY, 1L);
    } else {
        set(CURLOPT_CUSTOMREQUEST, m_request.verb.c_str());
    }
    if (m_request.MayHaveBody()) {
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_request.bodySize));
        if (m_request.streamed) {
            set(CURLOPT_POST, 1L);
            set(CURLOPT_READFUNCTION, &Exchange::OnSourceWanted);
            set(CURLOPT_READDATA, this);
        } else {
            set(CURLOPT_POSTFIELDS, m_request.bodySize > 0 ? m_request.body : "");
        }
    }
    if (!m_request.useProxy || IsLoopback(m_scope.host)) {
        set(CURLOPT_NOPROXY, "*");
    }
    SetTrustOptions(easy);
    const milliseconds limit = m_request.timeouts.connect;
    constexpr long kUnlimited = std::numeric_limits<int>::max();
    set(CURLOPT_CONNECTTIMEOUT_MS,
        limit == milliseconds::zero() ? kUnlimited : static_cast<long>(limit.count()));
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_BUFFERSIZE, kBufferSize);
    set(CURLOPT_UPLOAD_BUFFERSIZE, kBufferSize);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // breaking off does not wait for a name server
    set(CURLOPT_HEADERFUNCTION, &Exchange::OnHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Exchange::OnBody);
    set(CURLOPT_WRITEDATA, this);
}

Exchange::List Exchange::HeaderLines() const {
    List list;
    const auto append = [&list](const std::string& line) {
        curl_slist* longer = curl_slist_append(list.get(), line.c_str());
        if (longer == nullptr) {
            throw std::bad_alloc();
        }
        static_cast<void>(list.release());
        list.reset(longer);
    };
    const std::string cookies = m_request.useCookies ? CookieJar::Instance().Header(m_scope) : "";
    for (const auto& [name, value] : m_request.headers) {
        // Cookies of the jar replace the caller's own.
        if (cookies.empty() || !base::EqualsIgnoreCase(name, "Cookie")) {
            std::string line = name;
            line += value.empty() ? ";" : ": ";
            append(line += value);
        }
    }
    if (!cookies.empty()) {
        append("Cookie: " + cookies);
    }
    // Without a value: nothing where libcurl would add a header of its own.
    const auto suppress = [&](const char* name) {
        if (m_request.headers.Find(name) == nullptr) {
            append(std::string(name) + ":");
        }
    };
    suppress("Accept");
    if (m_request.MayHaveBody()) {
        suppress("Content-Type");
        suppress("Expect");
    }
    if (m_request.verb == "HEAD") {
        append("Content-Length: 0");
    }
    return list;
}

std::size_t Exchange::OnHeader(char* data, std::size_t, std::size_t size, void* self) noexcept try {
    return static_cast<Exchange*>(self)->AddHeaderLine({data, size}) ? size : 0;
} catch (const std::bad_alloc&) {
    return 0;
}

std::size_t Exchange::OnBody(char* data, std::size_t, std::size_t size, void* self) noexcept try {
    return static_cast<Exchange*>(self)->AddBody(data, size) ? size : CURL_WRITEFUNC_PAUSE;
} catch (const std::bad_alloc&) {
    return 0;
}

std::size_t Exchange::OnSourceWanted(char* target, std::size_t, std::size_t size,
                                     void* self) noexcept {
    auto& exchange = *static_cast<Exchange*>(self);
    const std::size_t count = std::min(size, exchange.m_sourceSize);
    if (count == 0) {
        exchange.m_sourceWanted = true;
        return exchange.m_written < exchange.m_request.bodySize ? CURL_READFUNC_PAUSE : 0;
    }
    std::memcpy(target, exchange.m_source, count);
    exchange.m_source += count;
    exchange.m_sourceSize -= count;
    return count;
}

bool Exchange::AddHeaderLine(std::string_view line) {
    m_received += static_cast<curl_off_t>(line.size());
    m_headBytes += line.size();
    if (m_headDone || m_headBytes > kMostHeadBytes) {
        return m_headBytes <= kMostHeadBytes; // what comes after the head is a trailer
    }
    line = line.substr(0, std::min(line.find('\r'), line.find('\n')));
    if (line.empty()) {
        long status = 0;
        curl_easy_getinfo(m_channel->Easy(), CURLINFO_RESPONSE_CODE, &status);
        m_reply.status = status;
        // Not an interim reply. Nobody asks to switch protocols, so that one is the last too.
        m_headDone = status >= 200 || status == 101;
    } else if (line.starts_with("HTTP/")) {
        m_reply = {};
    } else if (const std::size_t colon = line.find(':'); colon != std::string_view::npos) {
        m_reply.AddHeader(base::Trim(line.substr(0, colon)), base::Trim(line.substr(colon + 1)));
    }
    return true;
}

bool Exchange::AddBody(const char* data, std::size_t size) {
    m_isPaused = !m_discarding && m_waiting.Size() >= kMostWaiting;
    if (m_isPaused) {
        return false;
    }
    m_received += static_cast<curl_off_t>(size);
    if (m_discarding) {
        return true;
    }
    const std::size_t direct = std::min(size, m_wanted);
    if (direct > 0) {
        std::memcpy(m_target, data, direct);
        m_target += direct;
        m_wanted -= direct;
    }
    m_waiting.Append(data + direct, size - direct);
    return true;
}

void Exchange::Resume() {
    if (m_isPaused) {
        m_isPaused = false;
        const CURLcode outcome = curl_easy_pause(m_channel->Easy(), CURLPAUSE_CONT);
        if (outcome != CURLE_OK) {
            End(Failure(outcome)); // what it held is lost
        }
    }
}

// Reads a redirect's body, so that the next hop can use the connection; without a known end it is
// broken off instead.
void Exchange::DiscardBody() {
    m_waiting = {};
    m_discarding = true;
    Resume();
    if (!m_ended && (m_reply.contentLength || m_reply.hasTransferEncoding)) {
        DriveUntil([this, limit = m_received + kDiscardLimit] { return m_received > limit; });
    }
}

void Exchange::Step() {
    const ExitGate::Passage passage;
    if (const auto outcome = m_channel->Step()) {
        long connects = 0;
        curl_easy_getinfo(m_channel->Easy(), CURLINFO_NUM_CONNECTS, &connects);
        m_overtaken = *outcome == CURLE_SEND_ERROR && connects == 0 && m_received == 0;
        End(Failure(*outcome));
    }
}

DWORD Exchange::Failure(CURLcode outcome) const noexcept {
    // libcurl 7.88 calls a header line of more than 100 KiB lack of memory.
    const bool longLine = outcome == CURLE_OUT_OF_MEMORY && !m_headDone &&
                          Info(m_channel->Easy(), CURLINFO_PRETRANSFER_TIME_T) > 0;
    return longLine || m_headBytes > kMostHeadBytes ? ERROR_HTTP_INVALID_SERVER_RESPONSE
                                                    : CurlError(m_channel->Easy(), outcome);
}

template <class Predicate>
void Exchange::DriveUntil(Predicate satisfied) {
    StallWatch watch(m_channel->Easy(), m_request);
    for (;;) {
        if (m_cancellation.Raised()) {
            return End(ERROR_INTERNET_OPERATION_CANCELLED);
        }
        Step();
        if (m_ended || satisfied()) {
            return;
        }
        const milliseconds remaining = watch.Remaining(m_received);
        if (remaining <= milliseconds::zero()) {
            return End(ERROR_INTERNET_TIMEOUT);
        }
        // In slices, because the limit can be longer than an int holds.
        constexpr milliseconds kSlice = std::chrono::minutes(1);
        m_channel->Wait(static_cast<int>(std::min(remaining, kSlice).count()));
    }
}

void Exchange::End(DWORD error) noexcept {
    m_ended = true;
    m_error = error;
}

void Exchange::ReleaseChannel() noexcept {
    if (m_channel == nullptr) {
        return;
    }
    m_cancellation.Watch(nullptr);
    const ExitGate::Passage passage;
    ChannelPool::Instance().Release(std::move(m_channel));
}

} // namespace platform
