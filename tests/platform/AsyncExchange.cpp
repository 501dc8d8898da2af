#include "tests/platform/AsyncExchange.h"

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace brevint::test {

/// What the callbacks told. Each of them holds it until it returns, because the exchange itself may
/// be destroyed as soon as the last one is seen to be over.
struct AsyncExchange::Log {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<DWORD> statuses;
    std::vector<DWORD> completions;
    int running = 0;
    bool ended = false;
    bool closed = false;

    /// Going on without what is awaited would hand freed memory to the platform.
    template <class Condition>
    void Await(Condition condition) {
        std::unique_lock lock(mutex);
        if (!changed.wait_for(lock, std::chrono::minutes(1), condition)) {
            std::abort();
        }
    }
};

AsyncExchange::AsyncExchange(const std::wstring& url, RequestSetup setup, DWORD readSize)
    : m_setup(std::move(setup)), m_readSize(readSize), m_log(std::make_shared<Log>()),
      m_handles(OpenRequest(url, m_setup, INTERNET_FLAG_ASYNC, &AsyncExchange::OnStatus,
                            reinterpret_cast<DWORD_PTR>(this))),
      m_request(m_handles.request.get()) {}

AsyncExchange::~AsyncExchange() {
    Close();
    AwaitClosed();
}

void AsyncExchange::Close() {
    if (!m_closing.exchange(true)) {
        // From here on the last callback may come, and with it the end of this object.
        const auto closed = std::move(m_handles);
    }
}

const AsyncExchange::Result& AsyncExchange::AwaitEnd() const {
    m_log->Await([this] { return m_log->ended; });
    return m_result;
}

std::vector<DWORD> AsyncExchange::AwaitClosed() const {
    m_log->Await([this] { return m_log->closed && m_log->running == 0; });
    return m_log->statuses;
}

std::vector<DWORD> AsyncExchange::Completions() const {
    const std::lock_guard lock(m_log->mutex);
    return m_log->completions;
}

void CALLBACK AsyncExchange::OnStatus(HINTERNET /*handle*/, DWORD_PTR context, DWORD status,
                                      LPVOID information, DWORD /*length*/) {
    auto& exchange = *reinterpret_cast<AsyncExchange*>(context);
    const auto log = exchange.m_log;
    {
        const std::lock_guard lock(log->mutex);
        ++log->running;
        log->statuses.push_back(status);
    }
    if (status == INTERNET_STATUS_REQUEST_COMPLETE) {
        exchange.Completed(*static_cast<const INTERNET_ASYNC_RESULT*>(information));
    }
    const std::lock_guard lock(log->mutex);
    --log->running;
    log->closed = log->closed || status == INTERNET_STATUS_HANDLE_CLOSING;
    log->changed.notify_all();
}

void AsyncExchange::Completed(const INTERNET_ASYNC_RESULT& result) {
    const auto log = m_log;
    const auto succeeded = result.dwResult != 0;
    std::size_t completions = 0;
    {
        const std::lock_guard lock(log->mutex);
        log->completions.push_back(succeeded ? 0 : result.dwError);
        completions = log->completions.size();
    }
    if (onCompletion) {
        onCompletion(completions);
    }
    bool goesOn = false;
    if (!m_closing) {
        if (completions == 1) {
            m_result.status = QueryNumber(m_request, HTTP_QUERY_STATUS_CODE).value_or(0);
        }
        goesOn = (completions == 1 ? succeeded : TakeBytes(succeeded)) && Read();
    }
    if (!goesOn) {
        const std::lock_guard lock(log->mutex);
        log->ended = true;
        log->changed.notify_all();
    }
}

/// Starts the next read, and takes what it brings for as long as reads finish at once. True when
/// one is pending, whose completion may already be at work elsewhere.
bool AsyncExchange::Read() {
    do {
        const DWORD size = m_readSize != 0
                               ? m_readSize
                               : QueryNumber(m_request, HTTP_QUERY_CONTENT_LENGTH).value_or(0);
        m_buffer.resize(size);
        m_count = 0;
        if (!InternetReadFile(m_request, m_buffer.data(), size, &m_count)) {
            return GetLastError() == ERROR_IO_PENDING;
        }
        ++m_result.readsAtOnce;
    } while (TakeBytes(true));
    return false;
}

/// True when another read is due.
bool AsyncExchange::TakeBytes(bool succeeded) {
    m_result.body.append(m_buffer.data(), m_count);
    ++m_result.reads;
    return succeeded && m_count > 0 && m_readSize != 0;
}

} // namespace brevint::test
