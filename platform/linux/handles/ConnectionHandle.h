#pragma once

#include "platform/linux/handles/InternetHandle.h"

#include <string>

namespace platform {

/// What InternetConnectW opens: a host and a port. Nothing is connected yet.
class ConnectionHandle final : public InternetHandle {
public:
    ConnectionHandle(HandleSettings settings, DWORD_PTR context, std::string host,
                     INTERNET_PORT port);

    /// The URL of a target there.
    std::string Url(bool secure, const std::string& target) const;

private:
    const std::string m_host;
    const INTERNET_PORT m_port;
};

} // namespace platform
