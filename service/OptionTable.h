#pragma once

#include "service/ServiceOptions.h"

#include <span>
#include <string>

namespace brevint::service {

/// An option of the program. What it is called and does stands here alone: the command line, its
/// help text and the table in docs/service.md are made from it.
struct OptionRow {
    const char* name;
    const char* value; ///< What stands for its value in texts; "" for an option without one.
    const char* meaning;
    bool repeated; ///< Whether it may be given several times.

    /// Throws std::invalid_argument, which says what is wrong with the value.
    void (*set)(ServiceOptions& options, const std::string& value);
};

std::span<const OptionRow> AllOptions();

/// The table of that name in docs/service.md, "options", "misbehaviour" or "resources". Throws
/// std::invalid_argument for other names.
std::string DocumentedTable(const std::string& name);

} // namespace brevint::service
