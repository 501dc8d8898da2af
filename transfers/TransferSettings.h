#pragma once

#include <chrono>

namespace transfers {

/// How transfers behave. These are the defaults.
struct TransferSettings {
    unsigned concurrent = 4; ///< How many of a queue's transfers run at a time.

    /// Attempts without progress in between, the first one included.
    unsigned attempts = 5;
    /// Before the second attempt; doubled before each further one, up to the longest, and shortened
    /// by chance by up to a half, so that clients do not come back all at once.
    std::chrono::milliseconds firstPause{std::chrono::seconds(1)};
    std::chrono::milliseconds longestPause{std::chrono::seconds(30)};
    /// The longest time that a server may ask for with Retry-After.
    std::chrono::milliseconds longestRetryAfter{std::chrono::minutes(10)};

    /// Time without progress after which a connection counts as broken.
    std::chrono::milliseconds stallLimit{std::chrono::seconds(60)};
    /// Time for the reply to a body that was sent.
    std::chrono::milliseconds replyLimit{std::chrono::minutes(10)};

    /// Between polls of a job: the first, growing by half to the longest.
    std::chrono::milliseconds firstPoll{50};
    std::chrono::milliseconds longestPoll{std::chrono::seconds(5)};

    /// Between two reports of progress to a listener.
    std::chrono::milliseconds reportInterval{100};
};

} // namespace transfers
