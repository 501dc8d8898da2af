#pragma once

#include "cli/run/Outcomes.h"

#include <brevint/client/TransferGroup.h>

#include <cstdint>
#include <optional>
#include <string>

namespace brevint::cli {

// What is told of things that were moved, or would be.

/// A file that is there already and new enough. `known` are further members of its document.
ItemOutcome UpToDate(const std::string& place, std::optional<std::uint64_t> size,
                     nlohmann::json known);

/// A file that would be written there, likewise.
ItemOutcome WouldWrite(const std::string& place, std::optional<std::uint64_t> size,
                       nlohmann::json known);

/// Reports what cannot be moved of a folder that has been planned.
void TellRefused(const Context& context, const std::string& place, const TransferGroup& group);

/// Adds what came of a folder with all that it holds, or what would. Reports what has failed in it,
/// but for what TellRefused reports. `isThere`: the folder itself is at its destination already.
void TellFolder(const Context& context, const std::string& place, bool isThere,
                const TransferGroup& group, ItemOutcome& outcome);

/// The job of a file that was sent, and how to go on with it after a failure.
void TellJob(const Outcome& sent, bool ofReplacement, ItemOutcome& outcome);

} // namespace brevint::cli
