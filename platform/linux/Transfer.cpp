#include "platform/linux/Transfer.h"

#include "base/Ascii.h"
#include "platform/linux/ChannelPool.h"
#include "platform/linux/CookieJar.h"
#include "platform/linux/ExitGate.h"
#include "platform/linux/Redirect.h"
#include "platform/linux/TransferError.h"
#include "platform/linux/WinInet.h"

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

constexpr int kMaximumRedirects = 10;
constexpr long kBufferSize = 256 * 1024;
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
    StallWatch(CURL* easy, const Exchange& exchange) : m_easy(easy), m_exchange(exchange) {}

    // Time left, given the bytes received so far; not positive once the limit has passed.
    milliseconds Remaining(curl_off_t received) {
        const curl_off_t sent = Info(m_easy, CURLINFO_SIZE_UPLOAD_T);
        const bool connected = Info(m_easy, CURLINFO_PRETRANSFER_TIME_T) > 0;
        const auto now = Clock::now();
        if (!connected || sent + received != m_progress) {
            m_progress = sent + received;
            m_since = now;
        }
        const bool sending = static_cast<std::size_t>(sent) < m_exchange.bodySize;
        const milliseconds limit = sending ? m_exchange.timeouts.send : m_exchange.timeouts.receive;
        constexpr milliseconds kUnlimited = std::chrono::hours(1);
        return limit == milliseconds::zero()
                   ? kUnlimited
                   : std::chrono::ceil<milliseconds>(limit - (now - m_since));
    }

private:
    CURL* m_easy;
    const Exchange& m_exchange;
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

Transfer::Transfer(Exchange exchange, Interrupt& interrupt)
    : m_exchange(std::move(exchange)), m_interrupt(interrupt) {}

Transfer::~Transfer() {
    if (m_channel == nullptr) {
        return;
    }
    if (m_headDone) {
        m_discarding = true;
        const curl_off_t limit = m_received + kDiscardLimit;
        for (curl_off_t before = -1; !m_ended && m_received > before && m_received < limit;) {
            before = m_received;
            Step();
        }
    }
    ReleaseChannel();
}

DWORD Transfer::Send() {
    for (int redirects = 0;; ++redirects) {
        AwaitHead();
        if (!m_headDone) {
            break;
        }
        // Whichever end such a reply has, it may be the wrong one.
        if (m_reply.contradictsItself && !m_reply.hasTransferEncoding) {
            End(ERROR_HTTP_INVALID_SERVER_RESPONSE);
            break;
        }
        const auto target = RedirectTarget(m_exchange, m_reply);
        if (!target) {
            if (m_ended) {
                ReleaseChannel();
            }
            return ERROR_SUCCESS;
        }
        if (redirects == kMaximumRedirects) {
            End(ERROR_HTTP_REDIRECT_FAILED);
            break;
        }
        DiscardBody();
        if (m_interrupt.Raised()) {
            End(ERROR_INTERNET_OPERATION_CANCELLED);
            break;
        }
        if (const DWORD error = FollowRedirect(m_exchange, *target, m_reply.status)) {
            End(error);
            break;
        }
    }
    ReleaseChannel();
    return m_error != ERROR_SUCCESS ? m_error : ERROR_HTTP_INVALID_SERVER_RESPONSE;
}

DWORD Transfer::Read(char* target, std::size_t size, std::size_t& read) {
    const std::size_t taken = m_waiting.Take(target, size);
    m_target = target + taken;
    m_wanted = size - taken;
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

void Transfer::AwaitHead() {
    for (const auto connection : {Connection::any, Connection::fresh}) {
        StartHop(connection);
        DriveUntil([this] { return m_headDone; });
        if (!m_overtaken) {
            return;
        }
    }
}

void Transfer::StartHop(Connection connection) {
    m_reply = {};
    m_headDone = false;
    m_ended = false;
    m_error = ERROR_SUCCESS;
    m_overtaken = false;
    m_received = 0;
    m_discarding = false;
    ReleaseChannel();
    m_channel = ChannelPool::Instance().Take(Origin(m_exchange.url));
    SetOptions(connection);
    m_interrupt.Watch(m_channel->Multi());
    m_channel->Start();
}

void Transfer::SetOptions(Connection connection) {
    m_headerLines = HeaderLines();
    CURL* easy = m_channel->Easy();
    const auto set = [easy](CURLoption option, auto value) {
        if (curl_easy_setopt(easy, option, value) != CURLE_OK) {
            throw std::bad_alloc();
        }
    };
    set(CURLOPT_URL, m_exchange.url.c_str());
    set(CURLOPT_FRESH_CONNECT, connection == Connection::fresh ? 1L : 0L);
    set(CURLOPT_HTTPHEADER, m_headerLines.get());
    if (m_exchange.verb == "HEAD") {
        set(CURLOPT_NOBODY, 1L);
    } else {
        set(CURLOPT_CUSTOMREQUEST, m_exchange.verb.c_str());
    }
    if (m_exchange.verb != "HEAD" && (m_exchange.verb != "GET" || m_exchange.bodySize > 0)) {
        set(CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(m_exchange.bodySize));
        set(CURLOPT_POSTFIELDS, m_exchange.bodySize > 0 ? m_exchange.body : "");
    }
    // libcurl looks cookies up by the Host header that it is given: one from the caller goes
    // without the jar.
    const bool useJar = m_exchange.useCookies && m_exchange.headers.Find("Host") == nullptr;
    set(CURLOPT_SHARE, useJar ? CookieJar::Instance().Share() : nullptr);
    if (useJar) {
        set(CURLOPT_COOKIEFILE, "");
    }
    if (!m_exchange.useProxy) {
        set(CURLOPT_NOPROXY, "*");
    }
    SetTrustOptions(easy);
    const milliseconds connect = m_exchange.timeouts.connect;
    constexpr long kUnlimited = std::numeric_limits<int>::max();
    set(CURLOPT_CONNECTTIMEOUT_MS,
        connect == milliseconds::zero() ? kUnlimited : static_cast<long>(connect.count()));
    set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_BUFFERSIZE, kBufferSize);
    set(CURLOPT_UPLOAD_BUFFERSIZE, kBufferSize);
    set(CURLOPT_SUPPRESS_CONNECT_HEADERS, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    set(CURLOPT_QUICK_EXIT, 1L); // breaking off does not wait for a name server
    set(CURLOPT_HEADERFUNCTION, &Transfer::OnHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_WRITEFUNCTION, &Transfer::OnBody);
    set(CURLOPT_WRITEDATA, this);
}

Transfer::List Transfer::HeaderLines() const {
    List list;
    const auto append = [&list](const std::string& line) {
        curl_slist* longer = curl_slist_append(list.get(), line.c_str());
        if (longer == nullptr) {
            throw std::bad_alloc();
        }
        static_cast<void>(list.release());
        list.reset(longer);
    };
    for (const Header& header : m_exchange.headers) {
        // Cookies of the jar replace the caller's own.
        const bool replaced = m_exchange.useCookies &&
                              base::EqualsIgnoreCase(header.name, "Cookie") &&
                              CookieJar::Instance().HasCookies(m_exchange.url);
        if (!replaced) {
            append(header.value.empty() ? header.name + ";" : header.name + ": " + header.value);
        }
    }
    // Without a value: nothing where libcurl would add a header of its own.
    for (const char* name : {"Accept", "Content-Type", "Expect"}) {
        if (m_exchange.headers.Find(name) == nullptr) {
            append(std::string(name) + ":");
        }
    }
    if (m_exchange.verb == "HEAD") {
        append("Content-Length: 0");
    }
    return list;
}

std::size_t Transfer::OnHeader(char* data, std::size_t, std::size_t size, void* self) noexcept try {
    static_cast<Transfer*>(self)->AddHeaderLine({data, size});
    return size;
} catch (const std::bad_alloc&) {
    return 0;
}

std::size_t Transfer::OnBody(char* data, std::size_t, std::size_t size, void* self) noexcept try {
    static_cast<Transfer*>(self)->AddBody(data, size);
    return size;
} catch (const std::bad_alloc&) {
    return 0;
}

void Transfer::AddHeaderLine(std::string_view line) {
    m_received += static_cast<curl_off_t>(line.size());
    if (m_headDone) {
        return; // a trailer
    }
    line = line.substr(0, line.find_first_of("\r\n"));
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
}

void Transfer::AddBody(const char* data, std::size_t size) {
    m_received += static_cast<curl_off_t>(size);
    if (m_discarding) {
        return;
    }
    const std::size_t direct = std::min(size, m_wanted);
    if (direct > 0) {
        std::memcpy(m_target, data, direct);
        m_target += direct;
        m_wanted -= direct;
    }
    m_waiting.Append(data + direct, size - direct);
}

// Reads a redirect's body, so that the next hop can use the connection; without a known end it is
// broken off instead.
void Transfer::DiscardBody() {
    m_waiting = {};
    m_discarding = true;
    if (!m_ended && (m_reply.contentLength || m_reply.hasTransferEncoding)) {
        DriveUntil([this, limit = m_received + kDiscardLimit] { return m_received > limit; });
    }
}

void Transfer::Step() {
    const ExitGate::Passage passage;
    if (const auto outcome = m_channel->Step()) {
        long connects = 0;
        curl_easy_getinfo(m_channel->Easy(), CURLINFO_NUM_CONNECTS, &connects);
        m_overtaken = *outcome == CURLE_SEND_ERROR && connects == 0 && m_received == 0;
        End(TransferError(m_channel->Easy(), *outcome));
    }
}

template <class Predicate>
void Transfer::DriveUntil(Predicate satisfied) {
    StallWatch watch(m_channel->Easy(), m_exchange);
    for (;;) {
        if (m_interrupt.Raised()) {
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

void Transfer::End(DWORD error) noexcept {
    m_ended = true;
    m_error = error;
}

void Transfer::ReleaseChannel() noexcept {
    if (m_channel == nullptr) {
        return;
    }
    m_interrupt.Watch(nullptr);
    const ExitGate::Passage passage;
    ChannelPool::Instance().Give(std::move(m_channel));
}

} // namespace platform
