#include "platform/linux/http/Channel.h"

#include "platform/linux/http/CurlLibrary.h"

#include <algorithm>
#include <new>

namespace platform {

namespace {

constexpr std::size_t kConnections = 4; // kept open by one channel

} // namespace

Channel::Channel() {
    InitializeCurl();
    m_multi.reset(curl_multi_init());
    if (m_multi == nullptr) {
        throw std::bad_alloc();
    }
    curl_multi_setopt(m_multi.get(), CURLMOPT_MAXCONNECTS, static_cast<long>(kConnections));
}

Channel::~Channel() {
    Close();
}

void Channel::Open(const std::string& origin) {
    m_easy.reset(curl_easy_init());
    if (m_easy == nullptr) {
        throw std::bad_alloc();
    }
    std::erase(m_origins, origin);
    m_origins.push_back(origin);
    if (m_origins.size() > kConnections) {
        m_origins.erase(m_origins.begin());
    }
}

void Channel::Close() noexcept {
    if (m_started) {
        curl_multi_remove_handle(m_multi.get(), m_easy.get());
        m_started = false;
    }
    m_easy.reset();
}

void Channel::Start() {
    if (curl_multi_add_handle(m_multi.get(), m_easy.get()) != CURLM_OK) {
        throw std::bad_alloc();
    }
    m_started = true;
}

std::optional<CURLcode> Channel::Step() noexcept {
    int running = 0;
    if (curl_multi_perform(m_multi.get(), &running) != CURLM_OK) {
        return CURLE_OUT_OF_MEMORY;
    }
    int queued = 0;
    if (const CURLMsg* message = curl_multi_info_read(m_multi.get(), &queued)) {
        return message->data.result;
    }
    return std::nullopt;
}

void Channel::Wait(int milliseconds) noexcept {
    curl_multi_poll(m_multi.get(), nullptr, 0, milliseconds, nullptr);
}

bool Channel::Knows(const std::string& origin) const noexcept {
    return std::ranges::find(m_origins, origin) != m_origins.end();
}

} // namespace platform
