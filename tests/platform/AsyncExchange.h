#pragma once

#include "tests/platform/Exchange.h"

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brevint::test {

/// One asynchronous exchange: after the send the status callback reads the reply, step after step,
/// as a client would. The object is the request's context, so its destructor waits for the last
/// callback.
class AsyncExchange {
public:
    /// What the exchange brought.
    struct Result {
        DWORD status = 0;
        std::string body;
        std::size_t reads = 0;
        std::size_t readsAtOnce = 0; ///< how many of them finished within their call
    };

    /// With `readSize` 0 the announced length is read in one call, otherwise calls of that size are
    /// made until one brings nothing.
    explicit AsyncExchange(const std::wstring& url, RequestSetup setup = {}, DWORD readSize = 0);
    ~AsyncExchange();
    AsyncExchange(const AsyncExchange&) = delete;
    AsyncExchange& operator=(const AsyncExchange&) = delete;

    /// Called first thing in every completion, with the number of completions so far. It may close.
    /// To be set before Send.
    std::function<void(std::size_t completions)> onCompletion;

    /// HttpSendRequestW, whose result is given back; the last error is left as the call set it.
    bool Send() { return SendRequest(m_request, m_setup); }

    /// Closes the handles, after which the exchange goes no further. Further calls do nothing.
    void Close();

    /// Blocks until the reply was read to its end, or the exchange failed or was closed.
    const Result& AwaitEnd() const;
    /// Blocks until the request's handle is gone and no callback runs, and gives back the statuses
    /// of all callbacks.
    std::vector<DWORD> AwaitClosed() const;
    /// The error of each completion so far, 0 for success.
    std::vector<DWORD> Completions() const;

private:
    struct Log;

    static void CALLBACK OnStatus(HINTERNET handle, DWORD_PTR context, DWORD status,
                                  LPVOID information, DWORD length);
    void Completed(const INTERNET_ASYNC_RESULT& result);
    bool Read();
    bool TakeBytes(bool succeeded);

    RequestSetup m_setup;
    const DWORD m_readSize;
    const std::shared_ptr<Log> m_log;
    RequestHandles m_handles;
    HINTERNET const m_request;
    std::atomic<bool> m_closing{false};

    // Owned by whichever step of the exchange is under way.
    std::vector<char> m_buffer;
    DWORD m_count = 0;
    Result m_result;
};

} // namespace brevint::test
