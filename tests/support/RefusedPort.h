#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace brevint::test {

/// A port of 127.0.0.1 that refuses every connection, and that nobody else can take meanwhile.
class RefusedPort {
public:
    RefusedPort();
    ~RefusedPort();

    std::uint16_t Port() const;
    /// An address behind that port.
    std::wstring Url() const;

private:
    struct Socket;
    std::unique_ptr<Socket> m_socket;
};

} // namespace brevint::test
