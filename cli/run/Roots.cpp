#include "cli/run/Roots.h"

#include "cli/output/Failure.h"

#include <brevint/client/Item.h>

namespace brevint::cli {

std::map<std::string, std::string> KnownRoots(const Session& session,
                                              const std::vector<std::string>& given) {
    std::map<std::string, std::string> roots = {{"Projects", kProjects}, {"Templates", kTemplates}};
    for (const auto& [name, id] : session.roots) {
        roots[name] = id;
    }
    for (const std::string& text : given) {
        const std::size_t equals = text.find('=');
        const std::string name = text.substr(0, equals);
        if (equals == std::string::npos || name.empty() || name.find('/') != std::string::npos ||
            equals + 1 == text.size()) {
            throw Failure(ExitCode::Usage, "\"" + text + "\" is no root.",
                          "Give its name and identifier: --root Projects=ID.");
        }
        roots[name] = text.substr(equals + 1);
    }
    return roots;
}

} // namespace brevint::cli
