#include "cli/transfer/Places.h"

#include "cli/output/Failure.h"
#include "support/LocalItem.h"
#include "support/LocalName.h"

#include <utility>

namespace brevint::cli {

Version LocalVersion(const std::filesystem::path& path) {
    std::error_code unknown;
    const LocalItem found = LookAtLocalItem(std::filesystem::canonical(path, unknown));
    if (unknown || found.kind != LocalItem::Kind::File) {
        return {};
    }
    return {found.bytes, std::chrono::sys_seconds(std::chrono::seconds(found.modified))};
}

Step JudgeExisting(const Options& options, const std::string& there, const Version& from,
                   const Version& to) {
    if (options.update) {
        const bool isNewEnough = from.size && from.size == to.size && from.modified &&
                                 to.modified && *to.modified >= *from.modified;
        return isNewEnough ? Step::Skip : Step::Move;
    }
    if (!options.overwrite) {
        throw Failure(ExitCode::Refused, there + " is there already.",
                      "Replace it with --overwrite, or with --update if it is older.");
    }
    return Step::Move;
}

Existing ExistingOf(const Options& options) {
    if (options.update) {
        return Existing::Update;
    }
    return options.overwrite ? Existing::Replace : Existing::Refuse;
}

void TakenNames::Take(const std::string& name) {
    if (!m_keys.insert(NameKey(name)).second) {
        throw Failure(ExitCode::Refused, name + " is the destination of another one already.",
                      "Move them one by one.");
    }
}

} // namespace brevint::cli
