#pragma once

#include "platform/linux/Types.h"
#include "platform/linux/cookies/Cookie.h"
#include "platform/linux/http/ByteQueue.h"
#include "platform/linux/http/Cancellation.h"
#include "platform/linux/http/Channel.h"
#include "platform/linux/http/HttpRequest.h"
#include "platform/linux/http/ReplyHead.h"
#include "platform/linux/urls/Url.h"

#include <cstddef>
#include <cstdint>
#include <curl/curl.h>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>

namespace platform {

/// One exchange, redirects included. Whoever calls Send or Read drives it: between the calls
/// nothing moves, so a reply that is read slowly waits in the socket and not in memory. One thread
/// at a time; another one can end a wait through the cancellation.
class Exchange {
public:
    Exchange(HttpRequest request, Cancellation& cancellation);
    /// Leaves the connection usable if what is left of the reply is small and already there.
    ~Exchange();
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    /// Returns once the head of the final reply is there.
    DWORD Send();

    /// The same for a request whose body is streamed: begins to send, hands over parts of the body,
    /// and ends. A part is used up when Write returns. A write fails where the reply comes before
    /// the body is complete; the end gives that reply.
    DWORD BeginSend();
    DWORD Write(const char* data, std::size_t size);
    DWORD EndSend();

    /// Fills the target, or less if the body ends before. An error goes with the bytes that came
    /// before it, and is told once.
    DWORD Read(char* target, std::size_t size, std::size_t& read);

    /// Hands over the reply's head, once. After a failed Send it is that of the last redirect that
    /// was followed.
    ReplyHead TakeReply() noexcept { return std::exchange(m_reply, {}); }

private:
    struct ListCleanup {
        void operator()(curl_slist* list) const noexcept { curl_slist_free_all(list); }
    };
    using List = std::unique_ptr<curl_slist, ListCleanup>;

    static std::size_t OnHeader(char* data, std::size_t, std::size_t size, void* self) noexcept;
    static std::size_t OnBody(char* data, std::size_t, std::size_t size, void* self) noexcept;
    static std::size_t OnSourceWanted(char* target, std::size_t, std::size_t size,
                                      void* self) noexcept;
    bool AddHeaderLine(std::string_view line);        ///< false: there are too many
    bool AddBody(const char* data, std::size_t size); ///< false: not now
    void Resume();

    /// Sends the request and waits for its reply's head, or until a part of the body is wanted.
    /// Once more, on a connection of its own, where the server ended a kept one before it had all
    /// of the request; libcurl itself does so only while it waits for the reply.
    void AwaitHead();
    enum class Connect { AsNeeded, Anew };
    void StartHop(Connect connect);
    void SetOptions(Connect connect, const Url& url);
    List HeaderLines() const;
    DWORD AcceptHead();
    void DiscardBody();
    void Step();
    DWORD Failure(CURLcode outcome) const noexcept;
    template <class Predicate>
    void DriveUntil(Predicate satisfied);
    void End(DWORD error) noexcept;
    void ReleaseChannel() noexcept;

    HttpRequest m_request;
    Cancellation& m_cancellation;
    std::unique_ptr<Channel> m_channel; ///< null before Send and once the reply has come to its end
    List m_headerLines;
    /// Of this hop: parsed once for libcurl, the cookies and the choice of a proxy.
    std::optional<Url> m_url;
    CookieScope m_scope;

    ReplyHead m_reply;
    bool m_headDone = false;
    std::size_t m_headBytes = 0; ///< of this hop, with all that libcurl hands out as headers
    bool m_ended = false;
    DWORD m_error = ERROR_SUCCESS; ///< why it ended
    bool m_overtaken = false;  ///< by the end of a kept connection, with part of the request unsent
    curl_off_t m_received = 0; ///< bytes of this hop, head included

    bool m_discarding = false;
    const char* m_source = nullptr; ///< the rest of the part of the body that is being written
    std::size_t m_sourceSize = 0;
    std::uint64_t m_written = 0; ///< of the body, altogether
    bool m_sourceWanted = false; ///< libcurl waits for more of the body

    ByteQueue m_waiting;
    bool m_isPaused = false;  ///< because enough is waiting
    char* m_target = nullptr; ///< where the rest of the read under way goes
    std::size_t m_wanted = 0;
};

} // namespace platform
