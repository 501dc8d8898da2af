#include "platform/linux/http/ChannelPool.h"

#include <algorithm>
#include <ranges>

namespace platform {

ChannelPool& ChannelPool::Instance() {
    static ChannelPool& pool = *new ChannelPool;
    return pool;
}

ChannelPool::ChannelPool() {
    m_idle.reserve(kCapacity);
}

std::unique_ptr<Channel> ChannelPool::Acquire(const std::string& origin) {
    std::unique_ptr<Channel> channel;
    {
        const std::lock_guard lock(m_mutex);
        const auto latest =
            std::ranges::find_if(std::ranges::reverse_view(m_idle),
                                 [&](const auto& idle) { return idle->Knows(origin); });
        if (latest != m_idle.rend()) {
            channel = std::move(*latest);
            m_idle.erase(std::next(latest).base());
        } else if (m_idle.size() == kCapacity) {
            channel = std::move(m_idle.front());
            m_idle.erase(m_idle.begin());
        }
    }
    if (channel == nullptr) {
        channel = std::make_unique<Channel>();
    }
    channel->Open(origin);
    return channel;
}

void ChannelPool::Release(std::unique_ptr<Channel> channel) noexcept {
    channel->Close();
    const std::lock_guard lock(m_mutex);
    if (m_idle.size() == kCapacity) {
        m_idle.front().swap(channel);
        std::ranges::rotate(m_idle, m_idle.begin() + 1);
    } else {
        m_idle.push_back(std::move(channel));
    }
}

} // namespace platform
