#pragma once

#include <cstdint>
#include <limits>
#include <mutex>
#include <optional>
#include <span>
#include <string_view>

namespace brevint::service {

/// What a service does wrong on purpose with downloads and uploads, so that clients can be tested
/// with it. Unless something is set, nothing.
struct Misbehaviour {
    enum class Break {
        None,
        Silence, ///< The connection stays open, but nothing more comes.
        Cut,     ///< The connection ends.
        Reset    ///< The connection is reset.
    };

    /// After so many bytes of content, received or sent, the exchange breaks off; with 0 not even
    /// the head of a reply comes. An upload breaks off before its reply at the latest.
    Break breakOff = Break::None;
    std::uint64_t breakAfter = 0;

    std::uint64_t bytesPerSecond = 0;             ///< 0: as fast as can be.
    std::optional<std::uint64_t> retryAfter = {}; ///< Status 503 with so many seconds to wait.
    bool changesFile = false;                     ///< Each download finds the file changed.
    bool endsSession = false;                     ///< The session ends with the request's head.
    std::uint64_t requests = std::numeric_limits<std::uint64_t>::max(); ///< It concerns so many.
};

/// What --misbehave takes: a name, for some with a number after "=".
struct MisbehaviourRow {
    std::string_view name;
    std::string_view value; ///< What stands for the number in texts; "" where there is none.
    std::string_view meaning;
    void (*set)(Misbehaviour& misbehaviour, std::uint64_t number);
};

std::span<const MisbehaviourRow> AllMisbehaviours();

/// Sets what `text` says. Throws std::invalid_argument when no row fits it.
void ReadMisbehaviour(std::string_view text, Misbehaviour& misbehaviour);

/// How a service behaves until it is told otherwise. Thread-safe.
class Conduct {
public:
    void Set(const Misbehaviour& misbehaviour);

    /// How to behave towards one more request, which counts as one of Misbehaviour::requests.
    Misbehaviour Next();

private:
    std::mutex m_mutex;
    Misbehaviour m_misbehaviour;
};

} // namespace brevint::service
