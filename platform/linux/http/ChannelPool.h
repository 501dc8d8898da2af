#pragma once

#include "platform/linux/http/Channel.h"

#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace platform {

/// The process's idle channels. Connections outlive the handles that used them, so that a new
/// session talks to the same host over the connection of the last one.
class ChannelPool {
public:
    static ChannelPool& Instance(); ///< never destroyed

    /// An open channel; preferably one that has talked to the origin before.
    std::unique_ptr<Channel> Acquire(const std::string& origin);
    void Release(std::unique_ptr<Channel> channel) noexcept;

private:
    ChannelPool();

    static constexpr std::size_t kCapacity = 16;

    std::mutex m_mutex;
    std::vector<std::unique_ptr<Channel>> m_idle; ///< latest last
};

} // namespace platform
