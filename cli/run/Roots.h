#pragma once

#include "cli/session/Session.h"

#include <map>
#include <string>
#include <vector>

namespace brevint::cli {

/// The folders that hold all others, by name: those of the reference service, those kept with the
/// session, and those given as NAME=ID, of which the later replace the earlier. Throws a Failure
/// for a text that is not of that form.
std::map<std::string, std::string> KnownRoots(const Session& session,
                                              const std::vector<std::string>& given);

} // namespace brevint::cli
