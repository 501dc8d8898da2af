#pragma once

#include "service/HttpMessage.h"
#include "service/Misbehaviour.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

namespace brevint::service {

struct HttpServerOptions {
    std::uint16_t port = 0; ///< 0: chosen by the system.

    // Longer request bodies are refused (413).
    std::uint64_t maxStreamedBody = std::uint64_t{64} << 30; ///< Of those taken piece by piece.
    std::uint64_t maxBody = 16 * 1024 * 1024;                ///< Of those collected in memory.
    std::uint64_t maxUntrustedBody = 64 * 1024;              ///< Of requests that are not trusted.

    /// The longest wait for a request's head, and the longest time of an exchange that is not
    /// trusted.
    std::chrono::milliseconds patience = std::chrono::minutes(1);

    /// Beyond so many the connection that has waited longest for its next request is closed, even
    /// in the middle of an exchange that is not trusted. It is half of the files that Linux lets a
    /// process have open.
    std::size_t maxConnections = 512;
};

/// What comes of a request, decided when its head is there. Its functions may throw: that becomes
/// the reply, as ErrorReply makes it.
struct Admission {
    std::optional<HttpReply> refusal = {}; ///< Sent at once; the body is not read.

    /// Takes the body piece by piece; without it the request's body is collected.
    std::function<void(std::string_view piece)> receive = {};

    /// Answers the request once its body is there too; called when there is no refusal.
    std::function<HttpReply(HttpRequest)> answer = {};

    bool trusted = false; ///< The exchange may take as long as it likes.
    Misbehaviour misbehaviour = {};
};

/// An HTTP/1.1 server on 127.0.0.1: keep-alive, many connections, a few threads of its own.
class HttpServer {
public:
    /// Judges a request by its head; what it throws becomes the reply. Called on the server's
    /// threads, several at a time, as the functions of what it returns are.
    using Gate = std::function<Admission(const HttpRequest& head)>;

    HttpServer(HttpServerOptions options, Gate gate);
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;
    ~HttpServer();

    /// Binds, listens and serves. Throws std::exception when the port is not free.
    void Start();

    /// Closes every connection, whatever it is doing, and joins the threads. May be called twice.
    void Stop();

    /// The port that is listened on; 0 when not started.
    std::uint16_t Port() const;

private:
    class Engine;
    HttpServerOptions m_options;
    Gate m_gate;
    std::unique_ptr<Engine> m_engine;
};

} // namespace brevint::service
