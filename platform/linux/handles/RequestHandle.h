#pragma once

#include "platform/linux/handles/InternetHandle.h"
#include "platform/linux/http/Cancellation.h"
#include "platform/linux/http/Exchange.h"
#include "platform/linux/http/HttpRequest.h"
#include "platform/linux/http/ReplyHead.h"

#include <functional>
#include <list>
#include <memory>
#include <mutex>

namespace platform {

/// What HttpOpenRequestW opens. On a synchronous session the calling thread carries an operation
/// out; on an asynchronous one a thread does that lives only while the request has operations to
/// carry out and callbacks to make, so that a callback that takes its time delays no other request.
class RequestHandle final : public InternetHandle,
                            public std::enable_shared_from_this<RequestHandle> {
public:
    /// The exchange lacks the headers and the body that the send brings.
    RequestHandle(const HandleSettings& settings, DWORD_PTR context, HttpRequest request);

    /// The error of the operation; ERROR_IO_PENDING on an asynchronous session, where the outcome
    /// comes through the callback. The pointers stay the caller's, see HttpSendRequestW.
    DWORD Send(const HeaderList& headers, const char* body, std::size_t size);
    DWORD Read(char* buffer, DWORD size, DWORD* read);

    /// A body in parts, see HttpSendRequestExW; synchronous sessions only.
    DWORD BeginSend(const HeaderList& headers, std::uint64_t bodySize, std::string_view firstPart);
    DWORD Write(const char* data, DWORD size);
    DWORD EndSend();

    /// The head of the last reply; empty until a send has succeeded. Of one that failed on the way
    /// that a redirect led it, the redirect's.
    std::shared_ptr<const ReplyHead> GetReply() const; ///< never null

    /// Does not wait: what is under way is cancelled, and whoever carries it out finishes the
    /// closing.
    void Close() noexcept override;

private:
    using Operation = std::function<DWORD()>;

    DWORD Start(Operation operation);
    DWORD Post(Operation operation);
    DWORD CarryOut(const Operation& operation) noexcept;
    void Work() noexcept;

    bool Enter() noexcept;
    void Leave() noexcept;
    void FinishClosing() noexcept;

    /// The request with what the send brings, and no exchange or reply of an earlier one.
    HttpRequest Prepare(const HeaderList& headers);
    void KeepReply(ReplyHead reply);
    DWORD DoSend(const HeaderList& headers, const char* body, std::size_t size);
    DWORD DoRead(char* buffer, DWORD size, DWORD* read);

    const bool m_asynchronous;
    const HttpRequest m_request;
    Cancellation m_cancellation; ///< raised when the handle is closed

    std::mutex m_driving;                 ///< held by the thread that carries an operation out
    std::unique_ptr<Exchange> m_exchange; ///< under m_driving

    mutable std::mutex m_mutex; ///< for the rest; never held while anything else happens
    std::shared_ptr<const ReplyHead> m_reply = std::make_shared<ReplyHead>();
    std::list<Operation> m_operations; ///< of an asynchronous request, in order
    bool m_working = false;            ///< whether a thread sees to them
    int m_users = 0;                   ///< that thread and the synchronous calls
    bool m_closed = false;
};

} // namespace platform
