#include <utility> // Boost.Beast's headers count on it

#include "service/Blob.h"
#include "service/HttpServer.h"

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>
#include <gtest/gtest.h>

namespace brevint::test {
namespace {

using namespace std::chrono_literals;
using namespace std::string_literals;
namespace asio = boost::asio;
namespace http = boost::beast::http;

// One connection to a server on 127.0.0.1 that sends exactly the bytes that it is told to.
class HttpClient {
public:
    explicit HttpClient(std::uint16_t port) {
        m_socket.connect({asio::ip::address_v4::loopback(), port});
    }

    void Send(std::string_view bytes) { asio::write(m_socket, asio::buffer(bytes)); }

    // The body of the next reply; blocks until it is there.
    std::string Receive(unsigned status = 200) {
        http::response<http::string_body> reply;
        http::read(m_socket, m_buffer, reply);
        EXPECT_EQ(reply.result_int(), status);
        return reply.body();
    }

    // Blocks until `count` bytes have come; gives fewer when the connection has ended.
    std::string ReceiveBytes(std::size_t count) {
        std::string bytes(count, '\0');
        boost::system::error_code error;
        bytes.resize(asio::read(m_socket, asio::buffer(bytes), error));
        return bytes;
    }

private:
    asio::io_context m_context;
    asio::ip::tcp::socket m_socket{m_context};
    boost::beast::flat_buffer m_buffer;
};

// Echoes bodies. "/huge" is a file that no test reads to its end, "/chunked" one that comes in
// chunks; "/stranger" is not trusted, "/refused" not admitted.
service::Admission Admit(const service::HttpRequest& head) {
    const auto answer = [](const service::HttpRequest& request) {
        service::HttpReply reply;
        if (request.path == "/huge")
            reply.file = service::MakePatternBlob(std::uint64_t{1} << 40);
        reply.chunked = request.path == "/chunked";
        if (reply.chunked)
            reply.file = service::MakeBlob(std::string(200'000, 'x'));
        reply.body = request.method + " " + request.path + " " + request.body;
        return reply;
    };
    if (head.path == "/refused")
        return {.refusal = service::HtmlReply(403, "no")};
    return {.answer = answer, .trusted = head.path != "/stranger"};
}

// A server and a client of it that is in the middle of a body.
struct ServerAtWork : service::HttpServer {
    explicit ServerAtWork(service::HttpServerOptions options) : HttpServer(options, Admit) {
        Start();
        working = std::make_unique<HttpClient>(Port());
        working->Send("POST / HTTP/1.1\r\nContent-Length: 8\r\nExpect: 100-continue\r\n\r\nhalf");
        EXPECT_EQ(working->ReceiveBytes(25), "HTTP/1.1 100 Continue\r\n\r\n");
    }

    void ExpectThatItGoesOn() {
        working->Send("half");
        EXPECT_EQ(working->Receive(), "POST / halfhalf");
    }

    std::unique_ptr<HttpClient> working;
};

TEST(HttpServer, AnswersBeforeABodyThatItDoesNotWant) {
    ServerAtWork server({});
    for (const auto& [target, status] : {std::pair("/refused", 403u), {"/stranger", 413}}) {
        HttpClient client(server.Port());
        client.Send("POST "s + target +
                    " HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 65537\r\n\r\n");
        client.Receive(status);
        EXPECT_EQ(client.ReceiveBytes(1), "");
    }
    server.ExpectThatItGoesOn();
}

TEST(HttpServer, StopsWhateverItsConnectionsAreDoing) {
    ServerAtWork server({});
    HttpClient untouched(server.Port()), idle(server.Port()), stuck(server.Port());
    idle.Send("GET /1 HTTP/1.1\r\n\r\nPOST / HTTP/1.1\r\nContent-Length: 2\r\n\r\nab");
    EXPECT_EQ(idle.Receive(), "GET /1 ");
    EXPECT_EQ(idle.Receive(), "POST / ab");
    idle.Send("GET /chunked HTTP/1.1\r\n\r\n");
    EXPECT_EQ(idle.Receive(), std::string(200'000, 'x'));
    stuck.Send("GET /huge HTTP/1.1\r\n\r\n");
    EXPECT_EQ(stuck.ReceiveBytes(100'000).size(), 100'000u);

    server.Stop();
    for (HttpClient* client : {&untouched, &idle, server.working.get()})
        EXPECT_EQ(client->ReceiveBytes(1), "");
}

// Where the two below would fail, they wait for ever.
TEST(HttpServer, ClosesConnectionsThatKeepItWaiting) {
    ServerAtWork server({.patience = 1s});
    HttpClient untouched(server.Port()), halfHead(server.Port()), stranger(server.Port());
    halfHead.Send("GET / HTTP/1.1\r\nHo");
    stranger.Send("POST /stranger HTTP/1.1\r\nContent-Length: 8\r\n\r\nhalf");
    for (HttpClient* client : {&untouched, &halfHead, &stranger})
        EXPECT_EQ(client->ReceiveBytes(1), "");
    server.ExpectThatItGoesOn();
}

TEST(HttpServer, ClosesWhoeverHasWaitedLongestWhenItIsFull) {
    ServerAtWork server({.patience = 24h, .maxConnections = 2});
    HttpClient idle(server.Port());
    idle.Send("GET /stranger HTTP/1.1\r\n\r\n");
    EXPECT_EQ(idle.Receive(), "GET /stranger ");
    HttpClient next(server.Port());
    EXPECT_EQ(idle.ReceiveBytes(1), "");
    next.Send("GET / HTTP/1.1\r\n\r\n");
    EXPECT_EQ(next.Receive(), "GET / ");
    server.ExpectThatItGoesOn();
}

} // namespace
} // namespace brevint::test
