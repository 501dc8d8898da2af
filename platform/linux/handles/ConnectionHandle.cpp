#include "platform/linux/handles/ConnectionHandle.h"

#include <utility>

namespace platform {

ConnectionHandle::ConnectionHandle(HandleSettings settings, DWORD_PTR context, std::string host,
                                   INTERNET_PORT port)
    : InternetHandle(std::move(settings), context), m_host(std::move(host)), m_port(port) {}

std::string ConnectionHandle::Url(bool secure, const std::string& target) const {
    const INTERNET_PORT usual = secure ? INTERNET_DEFAULT_HTTPS_PORT : INTERNET_DEFAULT_HTTP_PORT;
    const INTERNET_PORT port = m_port == INTERNET_INVALID_PORT_NUMBER ? usual : m_port;
    return (secure ? "https://" : "http://") + m_host + ":" + std::to_string(port) + target;
}

} // namespace platform
