#include <utility> // Boost.Beast's headers count on it

#include "service/HttpServer.h"

#include "service/Blob.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/status.hpp>
#include <boost/beast/http/string_body.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <thread>
#include <vector>

namespace brevint::service {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

constexpr std::size_t threadCount = 4;
constexpr std::size_t blockSize = 64 * 1024;
constexpr std::uint32_t headerLimit = 64 * 1024;

template <class Text>
std::string ToString(const Text& text) {
    return std::string(text.data(), text.size());
}

HttpRequest TakeRequest(http::request<http::string_body>& message) {
    HttpRequest request;
    request.method = ToString(message.method_string());
    const std::string target = ToString(message.target());
    const auto mark = target.find('?');
    request.path = target.substr(0, mark);
    if (mark != std::string::npos)
        request.query = target.substr(mark + 1);
    for (const auto& field : message)
        request.headers.emplace_back(ToString(field.name_string()), ToString(field.value()));
    request.body = std::move(message.body());
    return request;
}

std::string HeaderText(const HttpReply& reply, bool keepAlive) {
    const auto reason = http::obsolete_reason(static_cast<http::status>(reply.status));
    std::string text = "HTTP/1.1 " + std::to_string(reply.status) + ' ' + ToString(reason) + "\r\n";
    for (const auto& [name, value] : reply.headers)
        text.append(name).append(": ").append(value).append("\r\n");
    text += "Server: brevint-service\r\nCache-Control: no-store\r\n";
    if (!keepAlive)
        text += "Connection: close\r\n";
    if (reply.file && reply.chunked)
        text += "Transfer-Encoding: chunked\r\n";
    else
        text += "Content-Length: " +
                std::to_string(reply.file ? reply.file->Size() : reply.body.size()) + "\r\n";
    return text + "\r\n";
}

asio::awaitable<void> WriteFile(tcp::socket& socket, const Blob& file, bool chunked) {
    std::vector<char> block(blockSize);
    for (std::uint64_t offset = 0; offset < file.Size();) {
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(blockSize, file.Size() - offset));
        file.Read(offset, block.data(), count);
        offset += count;
        if (!chunked) {
            co_await asio::async_write(socket, asio::buffer(block.data(), count),
                                       asio::use_awaitable);
            continue;
        }
        char length[20];
        const int digits = std::snprintf(length, sizeof length, "%zx\r\n", count);
        const std::array<asio::const_buffer, 3> chunk = {
            asio::buffer(length, static_cast<std::size_t>(digits)),
            asio::buffer(block.data(), count), asio::buffer("\r\n", 2)};
        co_await asio::async_write(socket, chunk, asio::use_awaitable);
    }
    if (chunked)
        co_await asio::async_write(socket, asio::buffer("0\r\n\r\n", 5), asio::use_awaitable);
}

asio::awaitable<void> WriteReply(tcp::socket& socket, const HttpReply& reply, bool keepAlive) {
    const std::string header = HeaderText(reply, keepAlive);
    if (reply.file) {
        co_await asio::async_write(socket, asio::buffer(header), asio::use_awaitable);
        co_await WriteFile(socket, *reply.file, reply.chunked);
    } else {
        const std::array<asio::const_buffer, 2> message = {asio::buffer(header),
                                                           asio::buffer(reply.body)};
        co_await asio::async_write(socket, message, asio::use_awaitable);
    }
}

/// Ends our side and waits for the client's end: closing with unread bytes would reset the
/// connection, and the reply could be lost with it.
asio::awaitable<void> Finish(tcp::socket& socket) {
    socket.shutdown(tcp::socket::shutdown_send);
    std::vector<char> block(blockSize);
    error_code error;
    while (!error)
        co_await socket.async_read_some(asio::buffer(block),
                                        asio::redirect_error(asio::use_awaitable, error));
}

} // namespace

/// What lives from Start to Stop. Connections are coroutines that the context owns: when it is
/// destroyed, after its threads have ended, their sockets close wherever they stand.
class HttpServer::Engine {
public:
    Engine(const HttpServerOptions& options, const Handler& handler)
        : options_(options), handler_(handler),
          acceptor_(context_,
                    tcp::endpoint(asio::ip::make_address(options.address), options.port)) {
        asio::co_spawn(context_, Accept(), asio::detached);
        for (std::size_t i = 0; i < threadCount; ++i)
            threads_.emplace_back([this] { context_.run(); });
    }

    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    ~Engine() {
        context_.stop();
        for (std::thread& thread : threads_)
            thread.join();
    }

    std::uint16_t Port() const { return acceptor_.local_endpoint().port(); }

private:
    asio::awaitable<void> Accept() {
        for (;;) {
            error_code error;
            tcp::socket socket =
                co_await acceptor_.async_accept(asio::redirect_error(asio::use_awaitable, error));
            if (!error) {
                asio::co_spawn(context_, Serve(std::move(socket)), asio::detached);
                continue;
            }
            // Out of descriptors, most likely: give connections that end time to hand theirs back.
            asio::steady_timer pause(context_, std::chrono::milliseconds(100));
            co_await pause.async_wait(asio::use_awaitable);
        }
    }

    asio::awaitable<void> Serve(tcp::socket socket) {
        try {
            socket.set_option(tcp::no_delay(true));
            boost::beast::flat_buffer buffer;
            while (co_await Exchange(socket, buffer)) {}
            co_await Finish(socket);
        } catch (const std::exception&) {
            // The client went away; the socket closes with this coroutine.
        }
    }

    /// One request and its reply. False when the connection is to end.
    asio::awaitable<bool> Exchange(tcp::socket& socket, boost::beast::flat_buffer& buffer) {
        http::request_parser<http::string_body> parser;
        parser.header_limit(headerLimit);
        parser.body_limit(options_.maxBody);
        error_code error;
        co_await http::async_read_header(socket, buffer, parser,
                                         asio::redirect_error(asio::use_awaitable, error));
        if (!error && boost::beast::iequals(parser.get()[http::field::expect], "100-continue")) {
            constexpr std::string_view text = "HTTP/1.1 100 Continue\r\n\r\n";
            co_await asio::async_write(socket, asio::buffer(text), asio::use_awaitable);
        }
        if (!error)
            co_await http::async_read(socket, buffer, parser,
                                      asio::redirect_error(asio::use_awaitable, error));
        if (error) {
            const bool malformed = error.category() == make_error_code(http::error{}).category();
            if (error == http::error::body_limit)
                co_await WriteReply(socket, ErrorReply(413, "The request is too large."), false);
            else if (malformed && error != http::error::end_of_stream &&
                     error != http::error::partial_message)
                co_await WriteReply(socket, ErrorReply(400, "The request is not valid HTTP."),
                                    false);
            co_return false;
        }

        const bool keepAlive = parser.keep_alive() && parser.get().version() >= 11;
        HttpReply reply = Answer(TakeRequest(parser.get()));
        if (parser.get().version() < 11)
            reply.chunked = false;
        co_await WriteReply(socket, reply, keepAlive);
        co_return keepAlive;
    }

    HttpReply Answer(HttpRequest request) const {
        try {
            return handler_(std::move(request));
        } catch (const std::exception& failure) {
            return ErrorReply(500, failure.what());
        }
    }

    const HttpServerOptions& options_;
    const Handler& handler_;
    asio::io_context context_{static_cast<int>(threadCount)};
    tcp::acceptor acceptor_;
    std::vector<std::thread> threads_;
};

HttpServer::HttpServer(HttpServerOptions options, Handler handler)
    : options_(std::move(options)), handler_(std::move(handler)) {}

HttpServer::~HttpServer() = default;

void HttpServer::Start() {
    engine_ = std::make_unique<Engine>(options_, handler_);
}

void HttpServer::Stop() {
    engine_.reset();
}

std::uint16_t HttpServer::Port() const {
    return engine_ ? engine_->Port() : std::uint16_t{0};
}

} // namespace brevint::service
