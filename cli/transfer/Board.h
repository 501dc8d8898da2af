#pragma once

#include <brevint/client/TransferGroup.h>

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace brevint::cli {

/// How something stands that is on its way: a file, or a folder with all that it holds.
struct Status {
    std::string name;
    TransferState state = TransferState::Waiting;
    std::uint64_t bytesDone = 0;
    std::optional<std::uint64_t> bytesTotal;
    std::uint64_t bytesPerSecond = 0;
    std::optional<std::chrono::seconds> timeLeft;
    std::size_t filesDone = 0;
    std::size_t filesTotal = 1;
    std::uint64_t bytesResumed = 0; ///< An earlier download has left them, and this one goes on.
    std::chrono::steady_clock::time_point lastProgress;
};

/// Where the library's threads note how transfers stand, and the main thread reads it.
class Board {
public:
    /// Notes changes of one transfer, which must not outlive the board.
    struct Listener {
        Board* board;
        std::size_t number;

        void operator()(const auto& now) const { board->Note(number, now); }
    };

    /// What a wait is ended by, besides a stopped token.
    enum class Wake { ByStates, ByAllChanges };

    /// A transfer that is about to begin. They are numbered from 0.
    std::size_t Add(std::string name);

    Status Get(std::size_t number) const;
    std::chrono::steady_clock::time_point LastProgress(std::size_t number) const;

    /// All of them at this moment, one after the other.
    void ForEach(const auto& visit) const {
        const std::scoped_lock lock(m_mutex);
        for (const Entry& entry : m_entries) {
            visit(entry.status);
        }
    }

    /// Waits for a change that has not been taken yet, at the longest until `end`.
    void Wait(const StopToken& stop, std::chrono::steady_clock::time_point end, Wake wake);

    /// The numbers of those that have changed since the last call, in the order of their changes.
    std::vector<std::size_t> TakeChanges();

private:
    struct Entry {
        Status status;
        bool isTold = false; ///< It stands in the list of changes.
    };

    void Note(std::size_t number, const Progress& now);
    void Note(std::size_t number, const GroupProgress& now);
    /// Called while the mutex is held.
    void OnChange(std::size_t number, TransferState before, bool hasProgress);

    mutable std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Entry> m_entries;
    std::vector<std::size_t> m_changes;
    bool m_hasNewState = false;
};

} // namespace brevint::cli
