#pragma once

#include <utility> // Boost.Beast's headers count on it

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/http/read.hpp>
#include <boost/beast/http/string_body.hpp>

#include <cstdint>
#include <string>
#include <string_view>

namespace brevint::test {

/// Chunks are joined; the status is 0 when the connection ended before a whole reply had come.
using Reply = boost::beast::http::response<boost::beast::http::string_body>;

/// One connection to a server on 127.0.0.1 that sends exactly the bytes that it is told to.
class HttpClient {
public:
    explicit HttpClient(std::uint16_t port) {
        socket_.connect({boost::asio::ip::address_v4::loopback(), port});
    }

    void Send(std::string_view bytes) {
        // A server that refuses a request early may have ended the connection: its reply tells.
        boost::system::error_code ignored;
        boost::asio::write(socket_, boost::asio::buffer(bytes.data(), bytes.size()), ignored);
    }

    /// The next reply; blocks until it is there or the connection has ended.
    Reply Receive() {
        Reply reply;
        boost::system::error_code error;
        boost::beast::http::read(socket_, buffer_, reply, error);
        if (error)
            reply.result(0u);
        return reply;
    }

    /// Blocks until `count` bytes have come; gives fewer when the connection has ended.
    std::string ReceiveBytes(std::size_t count) {
        std::string bytes(count, '\0');
        boost::system::error_code error;
        bytes.resize(boost::asio::read(socket_, boost::asio::buffer(bytes), error));
        return bytes;
    }

private:
    boost::asio::io_context context_;
    boost::asio::ip::tcp::socket socket_{context_};
    boost::beast::flat_buffer buffer_;
};

} // namespace brevint::test
