#include "service/HttpServer.h"
#include "service/Blob.h"
#include "tests/service/HttpClient.h"

#include <gtest/gtest.h>

namespace brevint::test {
namespace {

/// Echoes bodies; "/huge" is a file that no test reads to its end, "/throw" fails.
service::HttpReply Answer(service::HttpRequest request) {
    if (request.path == "/throw")
        throw std::runtime_error("failed on purpose");
    service::HttpReply reply;
    if (request.path == "/huge")
        reply.file = service::MakePatternBlob(std::uint64_t{1} << 40);
    reply.body = request.method + " " + request.path + " " + request.body;
    return reply;
}

TEST(HttpServer, StopsWhateverItsConnectionsAreDoing) {
    service::HttpServer server({.maxBody = 1000}, Answer);
    server.Start();
    HttpClient untouched(server.Port());
    HttpClient idle(server.Port());
    idle.Send("GET /1 HTTP/1.1\r\n\r\nPOST / HTTP/1.1\r\nContent-Length: 2\r\n\r\nab");
    EXPECT_EQ(idle.Receive().body(), "GET /1 ");
    EXPECT_EQ(idle.Receive().body(), "POST / ab");
    HttpClient halfHeader(server.Port());
    halfHeader.Send("GET / HTTP/1.1\r\nHo");
    HttpClient halfBody(server.Port());
    halfBody.Send("POST / HTTP/1.1\r\nContent-Length: 100\r\nExpect: 100-continue\r\n\r\nhalf");
    EXPECT_EQ(halfBody.ReceiveBytes(25), "HTTP/1.1 100 Continue\r\n\r\n");
    HttpClient stuck(server.Port());
    stuck.Send("GET /huge HTTP/1.1\r\n\r\n");
    EXPECT_EQ(stuck.ReceiveBytes(100'000).size(), 100'000u);

    server.Stop();
    for (HttpClient* client : {&untouched, &idle, &halfHeader, &halfBody})
        EXPECT_EQ(client->ReceiveBytes(1), "");
}

} // namespace
} // namespace brevint::test
