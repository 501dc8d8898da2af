#pragma once

/// What IPollStatusResponse::GetStatus returns.
namespace JobStatus {

inline constexpr int Unfinished = 0; ///< Queued or running: poll again.
inline constexpr int Finished = 1;   ///< The item has its content.
inline constexpr int Failed = 2;     ///< Or it could not be asked.

} // namespace JobStatus
