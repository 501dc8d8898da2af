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

    // False once the connection has been reset, which Wine reports as its end to those who read.
    bool TakesAnotherByte() {
        boost::system::error_code error;
        return asio::write(m_socket, asio::buffer("", 1), error) == 1;
    }

    void EndSending() { m_socket.shutdown(asio::ip::tcp::socket::shutdown_send); }

private:
    asio::io_context m_context;
    asio::ip::tcp::socket m_socket{m_context};
    boost::beast::flat_buffer m_buffer;
};

std::atomic<int> gAnswers; // How many requests were answered.

// Echoes bodies. "/huge" is a file that no test reads to its end, "/chunked" one that comes in
// chunks; "/stranger" is not trusted, "/refused" not admitted.
service::Admission Admit(const service::HttpRequest& head) {
    const auto answer = [](const service::HttpRequest& request) {
        ++gAnswers;
        service::HttpReply reply;
        if (request.path == "/huge") {
            reply.file = service::MakePatternBlob(std::uint64_t{1} << 40);
        }
        reply.chunked = request.path == "/chunked";
        if (reply.chunked) {
            reply.file = service::MakeBlob(std::string(300'000, 'x'));
        }
        reply.body = request.method + " " + request.path + " " + request.body;
        return reply;
    };
    if (head.path == "/refused") {
        return {.refusal = service::HtmlReply(403, "no")};
    }
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

    void ExpectThatItGoesOn() const {
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
    idle.Send(
        "POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n1\r\nc\r\n0\r\n\r\n");
    EXPECT_EQ(idle.Receive(), "POST / abc");
    idle.Send("POST / HTTP/1.1\r\nContent-Length: 700000\r\n\r\n" + std::string(700'000, 'y') +
              "GET /chunked HTTP/1.1\r\n\r\n");
    EXPECT_EQ(idle.Receive(), "POST / " + std::string(700'000, 'y'));
    EXPECT_EQ(idle.Receive(), std::string(300'000, 'x'));
    stuck.Send("GET /huge HTTP/1.1\r\n\r\n");
    EXPECT_EQ(stuck.ReceiveBytes(100'000).size(), 100'000u);

    server.Stop();
    for (HttpClient* client : {&untouched, &idle, server.working.get()}) {
        EXPECT_EQ(client->ReceiveBytes(1), "");
    }
}

// Where the two below would fail, they wait for ever.
TEST(HttpServer, ClosesConnectionsThatKeepItWaiting) {
    ServerAtWork server({.patience = 1s});
    HttpClient untouched(server.Port()), halfHead(server.Port()), stranger(server.Port());
    halfHead.Send("GET / HTTP/1.1\r\nHo");
    stranger.Send("POST /stranger HTTP/1.1\r\nContent-Length: 8\r\n\r\nhalf");
    for (HttpClient* client : {&untouched, &halfHead, &stranger}) {
        EXPECT_EQ(client->ReceiveBytes(1), "");
    }
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

TEST(HttpServer, MisbehavesAsItIsTold) {
    using enum service::Misbehaviour::Break;
    const std::string get = "GET /chunked HTTP/1.0\r\n\r\n";
    const std::string post = "POST / HTTP/1.1\r\nContent-Length: 8\r\n\r\n8 bytes.";
    using Row = std::tuple<service::Misbehaviour, std::string, int, int>; // content, answers
    for (const auto& [how, request, content, answers] :
         {Row{{.breakOff = Cut, .breakAfter = 270'000}, get, 270'000, 1},
          Row{{.breakOff = Silence, .breakAfter = 7}, get, 7, 1},
          Row{{.breakOff = Silence}, get, 0, 1}, Row{{.breakOff = Reset}, get, 0, 1},
          Row{{.breakOff = Reset, .breakAfter = 4}, post, 0, 0},
          Row{{.breakOff = Cut, .breakAfter = 4}, post, 0, 0},
          Row{{.breakOff = Cut, .breakAfter = 99}, post, 0, 1},
          Row{{.bytesPerSecond = 1'000'000}, get, 300'000, 1}}) {
        gAnswers = 0;
        service::HttpServer server({}, [misbehaviour = how](const service::HttpRequest& head) {
            return service::Admission{.answer = Admit(head).answer, .misbehaviour = misbehaviour};
        });
        server.Start();
        const auto start = std::chrono::steady_clock::now();
        HttpClient client(server.Port());
        client.Send(request);
        if (how.breakOff == Silence) {
            client.EndSending(); // without which it would never end
        }
        const std::string reply = client.ReceiveBytes(1'000'000);
        EXPECT_EQ(std::ranges::count(reply, 'x'), content);
        EXPECT_EQ(reply.empty(), content == 0);
        EXPECT_EQ(client.TakesAnotherByte(), how.breakOff == Cut || how.breakOff == None);
        EXPECT_EQ(gAnswers, answers);
        EXPECT_GE(std::chrono::steady_clock::now() - start, how.bytesPerSecond > 0 ? 300ms : 0ms);
    }
}

} // namespace
} // namespace brevint::test
