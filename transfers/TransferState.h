#pragma once

#include "calls/Failure.h"
#include "transport/IStreamingExchange.h"

#include <cstdint>
#include <filesystem>
#include <limits>
#include <string>

namespace transfers {

/// How a transfer stands. The last three are final.
enum class TransferState {
    Waiting,     ///< For its turn.
    Running,     ///< Bytes are moving, or the next attempt is waited for.
    Processing,  ///< The service has the file, and its job is not done.
    NeedsSignIn, ///< The session has ended: TransferQueue::OnSignedIn lets it go on.
    Finished,
    Failed,
    Cancelled,
};

constexpr bool IsFinal(TransferState state) {
    return state >= TransferState::Finished;
}

constexpr std::uint64_t kUnknownSize = std::numeric_limits<std::uint64_t>::max();

/// A snapshot of a transfer under way.
struct TransferProgress {
    TransferState state = TransferState::Waiting;
    std::uint64_t done = 0;             ///< Bytes of the file. Never goes back.
    std::uint64_t total = kUnknownSize; ///< Bytes of the file.
    std::uint64_t resumed = 0;          ///< Of `done`: an earlier transfer has left them.
    std::uint64_t bytesPerSecond = 0;   ///< Lately.
    std::uint64_t secondsLeft = kUnknownSize;
};

/// What came of a transfer.
struct TransferOutcome {
    double code = 0; ///< Of brevint/ErrorCodes.h.
    /// None: what code, status and failure make up.
    calls::FailureKind kind = calls::FailureKind::None;
    unsigned long status = 0;                        ///< HTTP status of the last reply; 0: none.
    ExchangeFailure failure = ExchangeFailure::None; ///< Of the last exchange.
    std::wstring text;          ///< What happened, for a user; empty after a success.
    std::wstring serverMessage; ///< The service's own words.
    std::filesystem::path localPath;
    std::wstring itemId; ///< Of the item downloaded, or made by the service.
    std::wstring jobId;  ///< Of an upload that the service accepted.
    /// A download's size was compared with what the server or the caller had said.
    bool verified = false;
    /// The service goes on processing what was sent.
    bool jobGoesOn = false;
    /// All of the file was sent, and whether the service has it is unknown.
    bool mayHaveHappened = false;
    /// A later attempt may well succeed.
    bool isTemporary = false;
    /// The content is complete, and lies beside a destination that could not be replaced.
    bool keptBeside = false;
};

} // namespace transfers
