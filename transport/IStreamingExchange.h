#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class IRequestInfo;

/// Why an exchange brought no reply, or not the whole of it.
enum class ExchangeFailure {
    None,
    NameNotResolved,
    Refused,               ///< No connection to host and port.
    TimedOut,              ///< No progress for too long.
    CertificateNotTrusted, ///< Or no common ground for TLS.
    BrokenOff,             ///< It ended before the announced length, or in the midst of something.
    Cancelled,
    SourceFailed, ///< The body's source ended early.
    Other,        ///< Lack of memory, an address that is none.
};

/// What a body is read from while it is sent. It names its length first and keeps it.
class IBodySource {
public:
    virtual ~IBodySource() = default;

    /// Bytes, altogether.
    virtual std::uint64_t Size() const = 0;
    /// Fills the buffer with the next bytes and returns how many; 0 at the end and when it fails.
    virtual std::size_t Read(char* buffer, std::size_t size) = 0;
};

/// What is told of the head of a reply. Texts are as the server sent them, empty when it sent none.
struct StreamHead {
    unsigned long status = 0;            ///< 0: there is no reply.
    std::optional<std::uint64_t> length; ///< Of the body; none when the server does not name it.
    std::wstring contentType;
    std::wstring contentRange;
    std::wstring entityTag;
    std::wstring lastModified;
    std::wstring location;
    std::wstring retryAfter;
};

/// One exchange whose bodies pass through block by block. Redirects are not followed. One thread
/// at a time, Cancel excepted.
class IStreamingExchange {
public:
    virtual ~IStreamingExchange() = default;

    /// Sends what `info` describes, with further header lines (each with its line end), and waits
    /// for the reply's head. The body is read from `body`; without that it is the one of `info`,
    /// which is small. A server may answer before it has all of it, which is no failure.
    virtual ExchangeFailure Send(const IRequestInfo& info, const std::wstring& headers,
                                 IBodySource* body) = 0;
    /// After a Send that did not fail.
    virtual const StreamHead& Head() const = 0;
    /// Reads the next bytes of the reply. None and no failure: that was all. With a failure come
    /// the bytes that were there before it.
    virtual ExchangeFailure Read(char* buffer, std::size_t size, std::size_t& read) = 0;

    /// Any thread, any moment: what is under way ends as Cancelled. At once on Linux; on Windows
    /// when the platform's call under way returns, at the latest when its time is up.
    virtual void Cancel() noexcept = 0;
};

/// How long an exchange may make no progress.
struct ExchangeTimeouts {
    std::chrono::milliseconds send;
    std::chrono::milliseconds receive; ///< The wait for the reply's head included.
};

/// Makes exchanges.
class IStreamingExchangeFactory {
public:
    virtual ~IStreamingExchangeFactory() = default;

    virtual std::unique_ptr<IStreamingExchange> Create(ExchangeTimeouts timeouts) = 0;
};
