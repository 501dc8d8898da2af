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

/// One exchange, shared by the request that started it, the response that waits for it (if it is an
/// IDetachable) and the platform's callbacks. Each may let go of it at any moment, on any thread.
///
/// Closing a handle does not stop the platform's work: it goes on writing into the read buffer and
/// the count, and calling back, until its last callback for the request handle. So the context
/// lives until everybody has let go of it, while request and response are out of reach once either
/// has called Abandon.
class RequestContext : public std::enable_shared_from_this<RequestContext> {
public:
    /// What the platform has been asked for and has not answered yet.
    enum class State {
        Sending = 0,      ///< the send
        ReadingChunk = 1, ///< a chunk, after which more may follow
        ReadingLast = 2,  ///< the whole reply
        Idle = 3,         ///< nothing: not yet, or its answer is being seen to
        Done = 4,         ///< nothing any more: the response has been given its reply
    };

    /// The platform may call back with this context from now on, until LetGoByPlatform.
    void HoldForPlatform();
    /// The platform has made its last callback, or has not taken the context.
    void LetGoByPlatform() noexcept;

    /// Takes the request's handle, to close it.
    void OwnHandle(HINTERNET handle) noexcept;
    /// The request's handle; null when it could not be opened or has been closed. Only for threads
    /// during whose work nobody calls Abandon or CloseRequest.
    HINTERNET Handle() const noexcept;
    /// A number from the reply's head; 0 when it has none.
    DWORD QueryNumber(DWORD what) const noexcept;
    /// How long a text from the reply's head is; 0 when it has none.
    DWORD QueryLength(DWORD what) const noexcept;
    /// The reply's status; 0 while there is none.
    DWORD Status() const noexcept;
    /// Closes the request's handle and has closed it on return.
    void CloseRequest() noexcept;

    /// To be called before the platform is asked for `step`, because its answer may come, on
    /// another thread, before that call returns. Gives the step's number.
    unsigned Begin(State step) noexcept;
    /// The same for a read of `length` bytes. 0 when there is no memory for them, which ends the
    /// exchange.
    unsigned BeginRead(State step, DWORD length) noexcept;
    /// The platform reports the end of the step under way; `succeeded` is its verdict. When nothing
    /// is under way, and after Abandon, this does nothing.
    void OnRequestComplete(bool succeeded) noexcept;
    /// The send has failed at once: its callback does not come.
    void OnSendFailed(unsigned step) noexcept;
    /// A read has ended within its call, and with it the exchange. A callback may have told so too,
    /// in which case this one does nothing.
    void OnReadAtOnce(unsigned step, bool succeeded) noexcept;

    /// Cuts the exchange off from request and response, and ends it if it is not over. A callback
    /// that is busy with them on another thread is waited for: a reply that is being written to a
    /// file stops after the block under way, the network is not waited for. May be called from
    /// within the callback itself.
    void Abandon() noexcept;
    /// True when this thread is in a callback of the exchange that somebody waits for in Abandon.
    bool IsWaitedFor() const noexcept;

    // Set before the exchange begins. Each step of the exchange starts the next one, so only one
    // party at a time touches what follows.
    IResponse* response = nullptr;
    WebRequest* request = nullptr;
    /// The body of the request, which holds it too. The platform reads it where it is.
    std::shared_ptr<std::vector<char>> body;
    DWORD bytesRead = 0;
    ReadBuffer readBuffer;
    std::vector<char> data;

private:
    class Visit;

    bool HasVisit(bool ofThisThread) const noexcept;
    /// Adds the bytes of the read that has ended to the reply. False when the reply is not what it
    /// should be: shorter than announced, or larger than memory.
    bool AddRead(State step) noexcept;
    /// Fills the response with the reply gathered so far.
    void Complete() noexcept;
    /// Fills the response with an empty reply: the exchange has failed.
    void Fail(unsigned long status) noexcept;
    /// Gives back what the platform keeps for the exchange, where kClosesWhatIsOver says so: its
    /// request may live on for long. A reply with an address, which may still be asked for, stays.
    void GiveBack() noexcept;
    void Deliver(const std::vector<char>& bytes, unsigned long status) noexcept;

    std::shared_ptr<RequestContext> m_heldByPlatform;

    mutable std::mutex m_mutex; ///< for the rest; not held while application or platform run
    std::condition_variable m_changed;
    HINTERNET m_handle = nullptr;
    bool m_closing = false;
    DWORD m_status = 0; ///< of an exchange whose handle has been closed because it was over
    State m_state = State::Idle;
    unsigned m_step = 0; ///< the number of the last step begun
    /// The callbacks that are at work now. More than one for the moment in which a read that one
    /// of them started is completed on another thread already.
    Visit* m_visits = nullptr;
    int m_waiting = 0; ///< threads in Abandon
    bool m_abandoned = false;
};
