#pragma once

#include "platform/WinInet.h"
#include "transport/ReadBuffer.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class IResponse;
class WebRequest;

/// State of one asynchronous exchange, shared by the request that started it and the platform's
/// callbacks.
///
/// Closing a handle does not stop the platform's work: it goes on writing into the read buffer and
/// the count, and calling back, until its last callback for the request handle. So the context
/// lives until both the request and the platform have let go of it, while request and response are
/// out of reach once the request has called Abandon.
///
/// The fields below have no lock: each step of the exchange starts the next one, so only one party
/// at a time touches them.
class RequestContext : public std::enable_shared_from_this<RequestContext> {
public:
    enum class State {
        Sending = 0,      ///< the send is under way
        ReadingChunk = 1, ///< a chunk read is under way, and more may follow
        ReadingLast = 2,  ///< the only read, or the last one, is under way
    };

    /// The platform may call back with this context from now on, until LetGoByPlatform.
    void HoldForPlatform();
    /// The platform has made its last callback, or has not taken the context.
    void LetGoByPlatform();
    /// The platform has completed a send or a read; `succeeded` is its verdict.
    void OnRequestComplete(bool succeeded);

    /// Cuts the exchange off from request and response. A callback that is busy with them on
    /// another thread is waited for; what it does is local work, bounded by the reply's size. May
    /// be called from within the callback itself.
    void Abandon();

    /// Makes the read buffer `length` bytes long for the next read; false when there is no memory.
    bool PrepareRead(DWORD length, State next) noexcept;
    /// Adds the `bytesRead` bytes of the read that has ended to the reply. False when the reply is
    /// not what it should be: shorter than announced, or larger than memory.
    bool TakeRead() noexcept;
    /// Fills the response with the reply gathered so far.
    void Complete() noexcept;
    /// Fills the response with an empty reply: the exchange has failed.
    void Fail(unsigned long status) noexcept;

    IResponse* response = nullptr;
    WebRequest* request = nullptr;
    State state = State::Sending;
    DWORD bytesRead = 0;
    ReadBuffer readBuffer;
    std::vector<char> data;
    /// The body of the request. The platform reads it where it is.
    std::vector<char> body;

private:
    bool Enter();
    void Leave();
    void Deliver(const std::vector<char>& bytes, unsigned long status) noexcept;

    std::shared_ptr<RequestContext> m_heldByPlatform;
    std::mutex m_mutex;
    std::condition_variable m_left;
    /// Threads that are in a callback now. More than one for the moment in which a read that one
    /// callback started is completed on another thread already.
    std::vector<std::thread::id> m_inside;
    bool m_abandoned = false;
};
