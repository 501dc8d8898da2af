#pragma once

#include "cli/run/Context.h"

#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <vector>

namespace brevint::cli {

/// What came of one of several items.
struct Outcome {
    std::string line;        ///< For people; may be empty.
    nlohmann::json document; ///< An object with further members for programs.
};

/// Does `work` for every item, tells each outcome, a failure too, and goes on with the next; only
/// an interruption ends the round. The result is that of the first failure.
ExitCode ForEachItem(Context& context, const std::vector<std::string>& items,
                     const std::function<Outcome(const std::string&)>& work);

} // namespace brevint::cli
