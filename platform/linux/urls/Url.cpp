#include "platform/linux/urls/Url.h"

#include "base/Ascii.h"

#include <algorithm>
#include <arpa/inet.h>
#include <netinet/in.h>
#include <new>

namespace platform {

Url::Url(const std::string& address) : m_url(curl_url()) {
    if (m_url == nullptr) {
        throw std::bad_alloc();
    }
    Resolve(address);
}

bool Url::Resolve(const std::string& reference) noexcept {
    constexpr unsigned kFlags = CURLU_NON_SUPPORT_SCHEME | CURLU_ALLOW_SPACE | CURLU_URLENCODE;
    return curl_url_set(m_url.get(), CURLUPART_URL, reference.c_str(), kFlags) == CURLUE_OK;
}

void Url::Remove(CURLUPart part) noexcept {
    curl_url_set(m_url.get(), part, nullptr, 0);
}

std::string Url::Part(CURLUPart part) const {
    char* text = nullptr;
    const CURLUcode outcome = curl_url_get(m_url.get(), part, &text, CURLU_DEFAULT_PORT);
    if (outcome == CURLUE_OUT_OF_MEMORY) {
        throw std::bad_alloc();
    }
    const std::unique_ptr<char, decltype(&curl_free)> owner(text, &curl_free);
    return outcome == CURLUE_OK ? text : "";
}

std::string Url::Host() const {
    std::string host = Part(CURLUPART_HOST);
    if (host.starts_with('[')) {
        host = host.substr(1, host.size() - 2);
    }
    std::ranges::transform(host, host.begin(), base::Lower<char>);
    return host;
}

bool IsLoopback(const std::string& host) {
    in_addr v4{};
    in6_addr v6{};
    if (inet_pton(AF_INET, host.c_str(), &v4) == 1) {
        return ntohl(v4.s_addr) >> 24 == IN_LOOPBACKNET;
    }
    return host == "localhost" ||
           (inet_pton(AF_INET6, host.c_str(), &v6) == 1 && IN6_IS_ADDR_LOOPBACK(&v6));
}

} // namespace platform
