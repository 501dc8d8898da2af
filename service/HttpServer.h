#pragma once

#include "service/HttpMessage.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace brevint::service {

struct HttpServerOptions {
    std::string address = "127.0.0.1";
    std::uint16_t port = 0;                         ///< 0: chosen by the system.
    std::uint64_t maxBody = std::uint64_t{2} << 30; ///< Longer request bodies are refused (413).
};

/// An HTTP/1.1 server: keep-alive, any number of connections, a few threads of its own.
class HttpServer {
public:
    /// Answers one request; called on the server's threads, several at a time.
    using Handler = std::function<HttpReply(HttpRequest)>;

    HttpServer(HttpServerOptions options, Handler handler);
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
    HttpServerOptions options_;
    Handler handler_;
    std::unique_ptr<Engine> engine_;
};

} // namespace brevint::service
