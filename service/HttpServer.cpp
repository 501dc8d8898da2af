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
#include <boost/beast/http/buffer_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/status.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <exception>
#include <limits>
#include <list>
#include <mutex>
#include <set>
#include <thread>
#include <vector>

namespace brevint::service {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using asio::ip::tcp;
using boost::beast::flat_buffer;
using boost::system::error_code;
using Parser = http::request_parser<http::buffer_body>;
using Stream = boost::beast::tcp_stream;

namespace {

constexpr std::size_t kThreadCount = 4;
constexpr std::size_t kBlockSize = 256 * 1024; // What is read or sent at a time.
constexpr std::uint32_t kHeaderLimit = 64 * 1024;

template <class Text>
std::string ToString(const Text& text) {
    return std::string(text.data(), text.size());
}

HttpRequest ReadHead(const http::request<http::buffer_body>& message) {
    HttpRequest request;
    request.method = ToString(message.method_string());
    const std::string target = ToString(message.target());
    const auto mark = target.find('?');
    request.path = target.substr(0, mark);
    if (mark != std::string::npos) {
        request.query = target.substr(mark + 1);
    }
    for (const auto& field : message) {
        request.headers.emplace_back(ToString(field.name_string()), ToString(field.value()));
    }
    return request;
}

ByteRange SentRange(const HttpReply& reply) {
    return reply.range.value_or(ByteRange{0, reply.file->Size()});
}

std::string HeaderText(const HttpReply& reply, bool keepAlive) {
    const auto reason = http::obsolete_reason(static_cast<http::status>(reply.status));
    std::string text = "HTTP/1.1 " + std::to_string(reply.status) + ' ' + ToString(reason) + "\r\n";
    for (const auto& [name, value] : reply.headers) {
        text.append(name).append(": ").append(value).append("\r\n");
    }
    text += "Server: brevint-service\r\nCache-Control: no-store\r\n";
    if (!keepAlive) {
        text += "Connection: close\r\n";
    }
    if (reply.file && reply.chunked) {
        text += "Transfer-Encoding: chunked\r\n";
    } else {
        text += "Content-Length: " +
                std::to_string(reply.file ? SentRange(reply).length : reply.body.size()) + "\r\n";
    }
    return text + "\r\n";
}

// Sends all of the buffers, in as few calls of the system as it allows.
template <class Buffers>
asio::awaitable<void> Write(Stream& stream, const Buffers& buffers) {
    const auto inLargeParts = [](const error_code& error, std::size_t) {
        return error ? 0 : kBlockSize;
    };
    co_await asio::async_write(stream, buffers, inLargeParts, asio::use_awaitable);
}

asio::awaitable<void> WaitForTheClientsEnd(Stream& stream) {
    std::vector<char> block(kBlockSize);
    error_code error;
    while (!error) {
        co_await stream.async_read_some(asio::buffer(block),
                                        asio::redirect_error(asio::use_awaitable, error));
    }
}

// Ends our side and waits for the client's end: closing with unread bytes would reset the
// connection, and the reply could be lost with it.
asio::awaitable<void> Finish(Stream& stream) {
    stream.socket().shutdown(tcp::socket::shutdown_send);
    co_await WaitForTheClientsEnd(stream);
}

// The flow of one exchange's content, received and sent, which the misbehaviour slows down and
// breaks off.
class Flow {
public:
    Flow(Stream& stream, const Misbehaviour& misbehaviour)
        : m_stream(stream), m_misbehaviour(misbehaviour) {}

    // How many of `wanted` bytes may pass as one block. Breaks off once enough have passed.
    asio::awaitable<std::size_t> Next(std::uint64_t wanted) {
        wanted = std::min<std::uint64_t>(wanted, kBlockSize);
        if (m_misbehaviour.bytesPerSecond > 0) {
            wanted = std::min(wanted, m_misbehaviour.bytesPerSecond / 16 + 1);
        }
        if (m_misbehaviour.breakOff != Misbehaviour::Break::None) {
            if (m_passed >= m_misbehaviour.breakAfter) {
                co_await BreakOff();
            }
            wanted = std::min(wanted, m_misbehaviour.breakAfter - m_passed);
        }
        co_return static_cast<std::size_t>(wanted);
    }

    // Counts what has passed, and waits for as long as so many bytes are to take.
    asio::awaitable<void> Note(std::size_t count) {
        m_passed += count;
        if (m_misbehaviour.bytesPerSecond == 0) {
            co_return;
        }
        const std::chrono::duration<double> time(
            static_cast<double>(count) / static_cast<double>(m_misbehaviour.bytesPerSecond));
        asio::steady_timer pause(m_stream.get_executor(),
                                 std::chrono::ceil<std::chrono::microseconds>(time));
        co_await pause.async_wait(asio::use_awaitable);
    }

    // To be called before the reply to an upload: where it is to break off, here at the latest.
    asio::awaitable<void> EndUpload() {
        if (m_misbehaviour.breakOff != Misbehaviour::Break::None) {
            co_await BreakOff();
        }
    }

private:
    // Always throws: at once after a reset, otherwise when the client has gone.
    asio::awaitable<void> BreakOff() {
        if (m_misbehaviour.breakOff == Misbehaviour::Break::Reset) {
            m_stream.socket().set_option(asio::socket_base::linger(true, 0));
            m_stream.close();
        } else if (m_misbehaviour.breakOff == Misbehaviour::Break::Cut) {
            co_await Finish(m_stream);
        } else {
            co_await WaitForTheClientsEnd(m_stream);
        }
        throw boost::system::system_error(asio::error::connection_aborted);
    }

    Stream& m_stream;
    const Misbehaviour& m_misbehaviour;
    std::uint64_t m_passed = 0;
};

asio::awaitable<void> WriteFile(Stream& stream, const HttpReply& reply, Flow& flow) {
    std::vector<char> block(kBlockSize);
    const std::string_view lineEnd = reply.chunked ? "\r\n" : "";
    auto [offset, remaining] = SentRange(reply);
    while (remaining > 0) {
        const std::size_t count = co_await flow.Next(remaining);
        reply.file->Read(offset, block.data(), count);
        char length[20] = "";
        if (reply.chunked) {
            std::snprintf(length, sizeof length, "%zx\r\n", count);
        }
        const std::array<asio::const_buffer, 3> message = {
            asio::buffer(length, std::strlen(length)), asio::buffer(block.data(), count),
            asio::buffer(lineEnd)};
        co_await Write(stream, message);
        co_await flow.Note(count);
        offset += count;
        remaining -= count;
    }
    if (reply.chunked) {
        co_await Write(stream, asio::buffer("0\r\n\r\n", 5));
    }
}

asio::awaitable<void> WriteReply(Stream& stream, const HttpReply& reply, bool keepAlive,
                                 Flow& flow) {
    const std::string header = HeaderText(reply, keepAlive);
    const std::array<asio::const_buffer, 2> message = {asio::buffer(header),
                                                       asio::buffer(reply.body)};
    if (reply.file) {
        co_await flow.Next(0);
        co_await Write(stream, asio::buffer(header));
        co_await WriteFile(stream, reply, flow);
    } else {
        co_await Write(stream, message);
    }
}

// The reply to a request that could not be read, judged, taken or answered. Throws it again when it
// is the connection that has failed.
HttpReply Refusal(const std::exception& failure) {
    const auto* const report = dynamic_cast<const boost::system::system_error*>(&failure);
    if (!report) {
        return ErrorReply(failure);
    }
    const error_code error = report->code();
    if (error == http::error::body_limit) {
        return ErrorReply(413, "The request is too large.");
    }
    if (error.category() != make_error_code(http::error{}).category() ||
        error == http::error::end_of_stream || error == http::error::partial_message) {
        throw *report;
    }
    return ErrorReply(400, "The request is not valid HTTP.");
}

using Receive = std::function<void(std::string_view)>;

// A body whose length its head has told: as much at a time as the system has.
asio::awaitable<void> ReadBody(Stream& stream, flat_buffer& buffer, std::uint64_t length,
                               const Receive& receive, Flow& flow) {
    std::vector<char> block(kBlockSize);
    while (length > 0) {
        std::size_t count = co_await flow.Next(length);
        if (buffer.size() > 0) {
            count = asio::buffer_copy(asio::buffer(block.data(), count), buffer.data());
            buffer.consume(count);
        } else {
            count = co_await stream.async_read_some(asio::buffer(block.data(), count),
                                                    asio::use_awaitable);
        }
        receive({block.data(), count});
        co_await flow.Note(count);
        length -= count;
    }
}

asio::awaitable<void> ReadChunkedBody(Stream& stream, flat_buffer& buffer, Parser& parser,
                                      const Receive& receive, Flow& flow) {
    std::vector<char> block(kBlockSize);
    buffer.reserve(kBlockSize); // what is read at a time goes by it
    while (!parser.is_done()) {
        const std::size_t size = co_await flow.Next(block.size());
        auto& body = parser.get().body();
        body.data = block.data();
        body.size = size;
        error_code error;
        co_await http::async_read(stream, buffer, parser,
                                  asio::redirect_error(asio::use_awaitable, error));
        if (error && error != http::error::need_buffer) {
            throw boost::system::system_error(error);
        }
        const std::size_t count = size - body.size;
        receive({block.data(), count});
        co_await flow.Note(count);
    }
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
            m_list.m_entries.insert(this);
            if (m_list.m_isClosed) {
                Close();
            } else if (m_list.m_entries.size() > m_list.m_limit) {
                m_list.CloseOne();
            }
        }

        Entry(const Entry&) = delete;
        Entry& operator=(const Entry&) = delete;

        ~Entry() {
            const std::lock_guard lock(m_list.m_mutex);
            m_list.m_entries.erase(this);
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

        // What is under way on it ends, and nothing more begins. The socket closes after that: Wine
        // sometimes loses the end of an operation whose socket is closed, and Stop waits for it.
        void Close() {
            asio::post(m_stream->get_executor(), [stream = m_stream] {
                error_code ignored;
                static_cast<void>(stream->socket().shutdown(tcp::socket::shutdown_both, ignored));
                stream->cancel();
            });
        }

        // True when it was waiting. To be called with the mutex held.
        bool Leave() {
            const bool waits = m_place != m_list.m_waiting.end();
            if (waits) {
                m_list.m_waiting.erase(m_place);
            }
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

    // Those that come after it too.
    void CloseAll() {
        const std::lock_guard lock(m_mutex);
        m_isClosed = true;
        for (Entry* entry : m_entries) {
            entry->Close();
        }
    }

private:
    // To be called with the mutex held, which keeps the entry alive.
    void CloseOne() {
        if (m_waiting.empty()) {
            return;
        }
        Entry& entry = *m_waiting.front();
        entry.Leave();
        entry.Close();
    }

    const std::size_t m_limit;
    std::mutex m_mutex; // Guards what follows, and the entries' places.
    bool m_isClosed = false;
    std::set<Entry*> m_entries;
    std::list<Entry*> m_waiting; // The one that has waited longest comes first.
};

} // namespace

// What lives from Start to Stop. Connections are coroutines: when their sockets close, they end
// wherever they stand, and the threads with the last of them.
class HttpServer::Engine {
public:
    explicit Engine(const HttpServer& server)
        : m_server(server), m_connections(server.m_options.maxConnections),
          m_acceptor(asio::make_strand(m_context),
                     tcp::endpoint(asio::ip::address_v4::loopback(), server.m_options.port)) {
        asio::co_spawn(m_acceptor.get_executor(), Accept(), asio::detached);
        for (std::size_t i = 0; i < kThreadCount; ++i) {
            m_threads.emplace_back([this] { m_context.run(); });
        }
    }

    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    ~Engine() {
        asio::post(m_acceptor.get_executor(), [this] { m_acceptor.close(); });
        m_connections.CloseAll();
        for (std::thread& thread : m_threads) {
            thread.join();
        }
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
            if (!m_acceptor.is_open()) {
                co_return;
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
            // Nothing to do: the client went away, and the socket closes with this coroutine.
        }
    }

    // One request and its reply. False when the connection is to end.
    asio::awaitable<bool> Exchange(ConnectionList::Entry& entry, flat_buffer& buffer) {
        Stream& stream = entry.GetStream();
        entry.Wait(m_server.m_options.patience);
        Parser parser;
        parser.header_limit(kHeaderLimit);
        parser.body_limit(std::numeric_limits<std::uint64_t>::max());
        Admission admission;
        Flow flow(stream, admission.misbehaviour);
        HttpReply reply;
        bool keepAlive = false;
        try {
            co_await http::async_read_header(stream, buffer, parser, asio::use_awaitable);
            HttpRequest request = ReadHead(parser.get());
            admission = m_server.m_gate(request);
            if (admission.trusted && !entry.Work()) {
                co_return false;
            }
            const bool hasBody = !parser.is_done();
            keepAlive = parser.keep_alive() && parser.get().version() >= 11;
            if (admission.refusal) {
                reply = *std::move(admission.refusal);
                // After a body that nobody has read no next request is found.
                keepAlive = keepAlive && !hasBody;
            } else {
                if (hasBody) {
                    co_await Read(stream, buffer, parser, admission, request, flow);
                }
                reply = admission.answer(std::move(request));
                if (hasBody) {
                    co_await flow.EndUpload();
                }
            }
        } catch (const std::exception& failure) {
            reply = Refusal(failure);
            keepAlive = false;
        }
        if (parser.get().version() < 11) {
            reply.chunked = false;
        }
        co_await WriteReply(stream, reply, keepAlive, flow);
        co_return keepAlive;
    }

    // Reads the body into `request`, or to wherever the admission has it go.
    asio::awaitable<void> Read(Stream& stream, flat_buffer& buffer, Parser& parser,
                               const Admission& admission, HttpRequest& request, Flow& flow) {
        const HttpServerOptions& options = m_server.m_options;
        const std::uint64_t limit = !admission.trusted  ? options.maxUntrustedBody
                                    : admission.receive ? options.maxStreamedBody
                                                        : options.maxBody;
        const Receive receive =
            admission.receive ? admission.receive : [&](std::string_view piece) {
                request.body += piece;
            };
        const auto length = parser.content_length();
        if (length.value_or(0) > limit) {
            throw boost::system::system_error(http::error::body_limit);
        }
        if (boost::beast::iequals(parser.get()[http::field::expect], "100-continue")) {
            co_await Write(stream, asio::buffer("HTTP/1.1 100 Continue\r\n\r\n", 25));
        }
        parser.body_limit(limit);
        if (length) {
            co_await ReadBody(stream, buffer, *length, receive, flow);
        } else {
            co_await ReadChunkedBody(stream, buffer, parser, receive, flow);
        }
    }

    const HttpServer& m_server;
    ConnectionList m_connections; // Outlives the context, whose coroutines have entries in it.
    asio::io_context m_context{static_cast<int>(kThreadCount)};
    tcp::acceptor m_acceptor;
    std::vector<std::thread> m_threads;
};

HttpServer::HttpServer(HttpServerOptions options, Gate gate)
    : m_options(options), m_gate(std::move(gate)) {}

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
