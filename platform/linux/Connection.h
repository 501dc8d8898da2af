#pragma once

#include "platform/linux/InternetHandle.h"

#include <string>

namespace platform {

// What InternetConnectW opens: a host and a port. Nothing is connected yet.
class Connection final : public InternetHandle {
public:
    Connection(HandleSettings settings, DWORD_PTR context, std::string host, INTERNET_PORT port);

    // The URL of a target there.
    std::string Url(bool secure, const std::string& target) const;

private:
    const std::string m_host;
    const INTERNET_PORT m_port;
};

} // namespace platform
