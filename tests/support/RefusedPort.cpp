#include "tests/support/RefusedPort.h"

#include <utility>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>

namespace brevint::test {

using tcp = boost::asio::ip::tcp;

/// Bound, but not listening.
struct RefusedPort::Socket {
    boost::asio::io_context io;
    tcp::socket bound{io, tcp::endpoint(boost::asio::ip::address_v4::loopback(), 0)};
};

RefusedPort::RefusedPort() : m_socket(std::make_unique<Socket>()) {}

RefusedPort::~RefusedPort() = default;

std::uint16_t RefusedPort::Port() const {
    return m_socket->bound.local_endpoint().port();
}

std::wstring RefusedPort::Url() const {
    return L"http://127.0.0.1:" + std::to_wstring(Port()) + L"/";
}

} // namespace brevint::test
