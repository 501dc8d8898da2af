#pragma once

#include "transport/IStreamingExchange.h"
#include "transport/ServiceConnection.h"

#include <atomic>
#include <mutex>

/// A streaming exchange over the platform's internet client.
class StreamingExchange final : public IStreamingExchange {
public:
    explicit StreamingExchange(ExchangeTimeouts timeouts);
    StreamingExchange(const StreamingExchange&) = delete;
    StreamingExchange& operator=(const StreamingExchange&) = delete;
    ~StreamingExchange() override;

    ExchangeFailure Send(const IRequestInfo& info, const std::wstring& headers,
                         IBodySource* body) override;
    const StreamHead& Head() const override { return m_head; }
    ExchangeFailure Read(char* buffer, std::size_t size, std::size_t& read) override;
    void Cancel() noexcept override;

private:
    /// What the platform's last error says. Called right after the call that failed.
    ExchangeFailure LastFailure() const noexcept;
    /// To be called before each call of the platform that may take long.
    void BeginWait(std::chrono::milliseconds limit) noexcept {
        m_waitEnds = std::chrono::steady_clock::now() + limit;
    }
    /// How such a call has failed. WinINet does not always say that it was for the time.
    ExchangeFailure BrokenOff() const noexcept;
    bool OpenRequest(const IRequestInfo& info);
    void CloseRequest() noexcept;
    ExchangeFailure SendBody(const std::wstring& headers, IBodySource& body);
    /// Ends the exchange in the midst of its body, and its connection with it. WinINet would keep a
    /// connection that has served before, and the server would take the next request on it for the
    /// rest of the body; one whose reply has not come in time is not kept.
    void BreakOff() noexcept;
    ExchangeFailure ReadHead();
    std::wstring QueryText(DWORD header) const;

    const ExchangeTimeouts m_timeouts;
    std::chrono::steady_clock::time_point m_waitEnds;
    std::unique_ptr<ServiceConnection> m_connection;
    /// Changed by the exchange's thread, and by Cancel where that may close it.
    std::atomic<HINTERNET> m_request = nullptr;
    std::mutex m_mutex; ///< held to change it
    std::atomic<bool> m_cancelled = false;
    StreamHead m_head;
    std::uint64_t m_read = 0;
};

/// Makes StreamingExchange objects.
class StreamingExchangeFactory final : public IStreamingExchangeFactory {
public:
    std::unique_ptr<IStreamingExchange> Create(ExchangeTimeouts timeouts) override;
};
