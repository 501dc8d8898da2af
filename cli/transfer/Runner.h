#pragma once

#include "cli/run/Outcomes.h"
#include "cli/transfer/Board.h"
#include "cli/transfer/Display.h"

#include <brevint/client.h>

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <variant>
#include <vector>

namespace brevint::cli {

using Moving = std::variant<Transfer, TransferGroup>;

/// What a command wants moved.
struct Move {
    std::size_t number = 0; ///< Of its outcome.
    std::string name;       ///< As displays show it.
    std::string summary;    ///< Of a failure: "a.txt cannot be sent."
    std::function<Moving(Client&, Board::Listener)> begin;
    /// Called once it is known what all a folder's move comes to, before anything moves.
    std::function<void(const TransferGroup&)> onPlanned = {};
    /// Adds what there is to tell after the end; a failure is noted in it already.
    std::function<void(const Moving&, const Outcome&, ItemOutcome&)> conclude;
    bool endsWhenSent = false; ///< The service's job is not waited for.
};

/// Moves files and folders, and has whoever waits know how far it is. Each is settled in the
/// outcomes as soon as it has ended.
class Runner {
public:
    Runner(Context& context, Outcomes& outcomes);
    Runner(const Runner&) = delete;
    Runner& operator=(const Runner&) = delete;
    ~Runner();

    /// Begins to move something, now or when others have made room.
    void Begin(Move move);

    /// Waits until all has ended. Ctrl-C, a sign-in that nobody can make, and want of progress for
    /// as long as --timeout says end it too.
    void Finish();

private:
    struct Task {
        Move move;
        Moving moving;
        std::optional<Failure> stopped; ///< Why it was cancelled.
        bool hasBegun = false;          ///< It has not only waited for its turn.
        bool isPlanned = false;         ///< Of a folder.
        bool isResumptionTold = false;
        std::size_t firstOpenEntry = 0; ///< Of a folder: those before it have ended.
    };

    void TakeChanges();
    void Settle(std::size_t number);
    /// Signs in again, or else cancels everything.
    void HelpWithSignIn();
    void CancelAll(const Failure& reason);
    void CancelStalled();
    std::chrono::steady_clock::time_point NextDeadline() const;
    void Show();
    Overview TakeOverview();
    void AddRunningEntries(Task& task, std::vector<Status>& running) const;

    Context& m_context;
    Outcomes& m_outcomes;
    const std::chrono::steady_clock::duration m_patience;
    const std::unique_ptr<Display> m_display;
    Board m_board;            ///< Outlives the transfers, which write to it.
    std::deque<Task> m_tasks; ///< By their numbers on the board.
    std::set<std::size_t> m_open;
    std::set<std::size_t> m_active;  ///< Those that move or are processed.
    std::set<std::size_t> m_waiting; ///< Those that need a sign-in.
    std::chrono::steady_clock::time_point m_nextShow;
    std::size_t m_neverBegun = 0; ///< Of those that were cancelled.
    bool m_isStopped = false;
};

} // namespace brevint::cli
