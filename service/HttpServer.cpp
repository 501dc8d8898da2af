#include <utility> // Boost.Beast's headers count on it

#include "service/HttpServer.h"

#include "service/Blob.h"

#include <boost/asio/awaitable.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/status.hpp>
#include <boost/beast/http/string_body.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <limits>
#include <list>
#include <mutex>
#include <thread>
#include <vector>

namespace brevint::service {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::beast::flat_buffer;
using boost::system::error_code;
using Parser = http::request_parser<http::string_body>;
using Stream = boost::beast::tcp_stream;

namespace {

constexpr std::size_t kThreadCount = 4;
constexpr std::size_t kBlockSize = 64 * 1024;
constexpr std::uint32_t kHeaderLimit = 64 * 1024;

template <class Text>
std::string ToString(const Text& text) {
    return std::string(text.data(), text.size());
}

HttpRequest ReadHead(const http::request<http::string_body>& message) {
    HttpRequest request;
    request.method = ToString(message.method_string());
    const std::string target = ToString(message.target());
    const auto mark = target.find('?');
    request.path = target.substr(0, mark);
    if (mark != std::string::npos)
        request.query = target.substr(mark + 1);
    for (const auto& field : message)
        request.headers.emplace_back(ToString(field.name_string()), ToString(field.value()));
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

asio::awaitable<void> WriteFile(Stream& stream, const Blob& file, bool chunked) {
    std::vector<char> block(kBlockSize);
    for (std::uint64_t offset = 0; offset < file.Size();) {
        const auto count =
            static_cast<std::size_t>(std::min<std::uint64_t>(kBlockSize, file.Size() - offset));
        file.Read(offset, block.data(), count);
        offset += count;
        if (!chunked) {
            co_await asio::async_write(stream, asio::buffer(block.data(), count),
                                       asio::use_awaitable);
            continue;
        }
        char length[20];
        const int digits = std::snprintf(length, sizeof length, "%zx\r\n", count);
        const std::array<asio::const_buffer, 3> chunk = {
            asio::buffer(length, static_cast<std::size_t>(digits)),
            asio::buffer(block.data(), count), asio::buffer("\r\n", 2)};
        co_await asio::async_write(stream, chunk, asio::use_awaitable);
    }
    if (chunked)
        co_await asio::async_write(stream, asio::buffer("0\r\n\r\n", 5), asio::use_awaitable);
}

asio::awaitable<void> WriteReply(Stream& stream, const HttpReply& reply, bool keepAlive) {
    const std::string header = HeaderText(reply, keepAlive);
    if (reply.file) {
        co_await asio::async_write(stream, asio::buffer(header), asio::use_awaitable);
        co_await WriteFile(stream, *reply.file, reply.chunked);
    } else {
        const std::array<asio::const_buffer, 2> message = {asio::buffer(header),
                                                           asio::buffer(reply.body)};
        co_await asio::async_write(stream, message, asio::use_awaitable);
    }
}

// Ends our side and waits for the client's end: closing with unread bytes would reset the
// connection, and the reply could be lost with it.
asio::awaitable<void> Finish(Stream& stream) {
    stream.socket().shutdown(tcp::socket::shutdown_send);
    std::vector<char> block(kBlockSize);
    error_code error;
    while (!error)
        co_await stream.async_read_some(asio::buffer(block),
                                        asio::redirect_error(asio::use_awaitable, error));
}

// Says what is wrong with a request, unless the client ended the connection.
asio::awaitable<void> Refuse(Stream& stream, error_code error) {
    const bool malformed = error.category() == make_error_code(http::error{}).category();
    if (error == http::error::body_limit)
        co_await WriteReply(stream, ErrorReply(413, "The request is too large."), false);
    else if (malformed && error != http::error::end_of_stream &&
             error != http::error::partial_message)
        co_await WriteReply(stream, ErrorReply(400, "The request is not valid HTTP."), false);
}

asio::awaitable<error_code> ReadBody(Stream& stream, flat_buffer& buffer, Parser& parser,
                                     std::uint64_t limit) {
    if (parser.content_length().value_or(0) > limit)
        co_return http::error::body_limit;
    parser.body_limit(limit);
    if (boost::beast::iequals(parser.get()[http::field::expect], "100-continue")) {
        constexpr std::string_view text = "HTTP/1.1 100 Continue\r\n\r\n";
        co_await asio::async_write(stream, asio::buffer(text), asio::use_awaitable);
    }
    error_code error;
    co_await http::async_read(stream, buffer, parser,
                              asio::redirect_error(asio::use_awaitable, error));
    co_return error;
}

// The connections of one server, and which of them may be closed to make room.
class ConnectionList {
public:
    explicit ConnectionList(std::size_t limit) : m_limit(limit) {}

    // A connection, from its beginning to its end. Whatever happens to its stream happens on the
    // stream's strand.
    class Entry {
    public:
        Entry(ConnectionList& list, std::shared_ptr<Stream> stream)
            : m_list(list), m_stream(std::move(stream)) {
            const std::lock_guard lock(m_list.m_mutex);
            m_place = m_list.m_waiting.insert(m_list.m_waiting.end(), this);
            if (++m_list.m_count > m_list.m_limit)
                m_list.CloseOne();
        }

        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

        ~Entry() {
            const std::lock_guard lock(m_list.m_mutex);
            --m_list.m_count;
            Leave();
        }

        Stream& GetStream() const { return *m_stream; }

        // From now on it waits, for so long at most, and may be closed.
        void Wait(std::chrono::milliseconds patience) {
            m_stream->expires_after(patience);
            const std::lock_guard lock(m_list.m_mutex);
            Leave();
            m_place = m_list.m_waiting.insert(m_list.m_waiting.end(), this);
        }

        // From now on it is left alone. False when it is about to be closed.
        bool Work() {
            m_stream->expires_never();
            const std::lock_guard lock(m_list.m_mutex);
            return Leave();
        }

    private:
        friend class ConnectionList;

        // True when it was waiting. To be called with the mutex held.
        bool Leave() {
            const bool waits = m_place != m_list.m_waiting.end();
            if (waits)
                m_list.m_waiting.erase(m_place);
            m_place = m_list.m_waiting.end();
            return waits;
        }

        ConnectionList& m_list;
        const std::shared_ptr<Stream> m_stream;
        std::list<Entry*>::iterator m_place; // The list's end when it does not wait.
    };

    void MakeRoom() {
        const std::lock_guard lock(m_mutex);
        CloseOne();
    }

private:
    // To be called with the mutex held, which keeps the entry alive.
    void CloseOne() {
        if (m_waiting.empty())
            return;
        Entry& entry = *m_waiting.front();
        entry.Leave();
        asio::post(entry.m_stream->get_executor(), [stream = entry.m_stream] { stream->close(); });
    }

    const std::size_t m_limit;
    std::mutex m_mutex; // Guards what follows, and the entries' places.
    std::size_t m_count = 0;
    std::list<Entry*> m_waiting; // The one that has waited longest comes first.
};

} // namespace

// What lives from Start to Stop. Connections are coroutines that the context owns: when it is
// destroyed, after its threads have ended, their sockets close wherever they stand.
class HttpServer::Engine {
public:
    explicit Engine(const HttpServer& server)
        : m_server(server), m_connections(server.m_options.maxConnections),
          m_acceptor(m_context, tcp::endpoint(asio::ip::make_address(server.m_options.address),
                                              server.m_options.port)) {
        asio::co_spawn(m_context, Accept(), asio::detached);
        for (std::size_t i = 0; i < kThreadCount; ++i)
            m_threads.emplace_back([this] { m_context.run(); });
    }

    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    ~Engine() {
        m_context.stop();
        for (std::thread& thread : m_threads)
            thread.join();
    }

    std::uint16_t Port() const { return m_acceptor.local_endpoint().port(); }

private:
    asio::awaitable<void> Accept() {
        for (;;) {
            const auto stream = std::make_shared<Stream>(asio::make_strand(m_context));
            error_code error;
            co_await m_acceptor.async_accept(stream->socket(),
                                             asio::redirect_error(asio::use_awaitable, error));
            if (!error) {
                asio::co_spawn(stream->get_executor(), Serve(stream), asio::detached);
                continue;
            }
            // Out of descriptors, most likely.
            m_connections.MakeRoom();
            asio::steady_timer pause(m_context, std::chrono::milliseconds(100));
            co_await pause.async_wait(asio::use_awaitable);
        }
    }

    asio::awaitable<void> Serve(std::shared_ptr<Stream> stream) {
        try {
            ConnectionList::Entry entry(m_connections, stream);
            stream->socket().set_option(tcp::no_delay(true));
            flat_buffer buffer;
            while (co_await Exchange(entry, buffer)) {}
            entry.Wait(m_server.m_options.patience);
            co_await Finish(*stream);
        } catch (const std::exception&) {
            // The client went away; the socket closes with this coroutine.
        }
    }

    // One request and its reply. False when the connection is to end.
    asio::awaitable<bool> Exchange(ConnectionList::Entry& entry, flat_buffer& buffer) {
        const HttpServerOptions& options = m_server.m_options;
        Stream& stream = entry.GetStream();
        entry.Wait(options.patience);
        Parser parser;
        parser.header_limit(kHeaderLimit);
        parser.body_limit(std::numeric_limits<std::uint64_t>::max());
        error_code error;
        co_await http::async_read_header(stream, buffer, parser,
                                         asio::redirect_error(asio::use_awaitable, error));
        if (error) {
            co_await Refuse(stream, error);
            co_return false;
        }
        HttpRequest request = ReadHead(parser.get());
        Admission admission = m_server.m_gate(request);
        if (admission.trusted && !entry.Work())
            co_return false;
        if (!admission.refusal && !parser.is_done()) {
            error =
                co_await ReadBody(stream, buffer, parser,
                                  admission.trusted ? options.maxBody : options.maxUntrustedBody);
            if (error) {
                co_await Refuse(stream, error);
                co_return false;
            }
            request.body = std::move(parser.get().body());
        }

        // After a body that nobody reads no next request is found.
        const bool keepAlive =
            parser.is_done() && parser.keep_alive() && parser.get().version() >= 11;
        HttpReply reply = admission.refusal ? *std::move(admission.refusal)
                                            : Answer(admission, std::move(request));
        if (parser.get().version() < 11)
            reply.chunked = false;
        co_await WriteReply(stream, reply, keepAlive);
        co_return keepAlive;
    }

    static HttpReply Answer(const Admission& admission, HttpRequest request) {
        try {
            return admission.answer(std::move(request));
        } catch (const std::exception& failure) {
            return ErrorReply(500, failure.what());
        }
    }

    const HttpServer& m_server;
    ConnectionList m_connections; // Outlives the context, whose coroutines have entries in it.
    asio::io_context m_context{static_cast<int>(kThreadCount)};
    tcp::acceptor m_acceptor;
    std::vector<std::thread> m_threads;
};

HttpServer::HttpServer(HttpServerOptions options, Gate gate)
    : m_options(std::move(options)), m_gate(std::move(gate)) {}

HttpServer::~HttpServer() = default;

void HttpServer::Start() {
    m_engine = std::make_unique<Engine>(*this);
}

void HttpServer::Stop() {
    m_engine.reset();
}

std::uint16_t HttpServer::Port() const {
    return m_engine ? m_engine->Port() : std::uint16_t{0};
}

} // namespace brevint::service
