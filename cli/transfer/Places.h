#pragma once

#include "cli/run/Context.h"

#include <brevint/client/Item.h>
#include <brevint/client/TransferGroup.h>

#include <filesystem>
#include <set>
#include <string>

namespace brevint::cli {

/// What is to be done with one file or folder.
enum class Step { Move, Skip };

/// Decides about a file that has something of its name at its destination: it is replaced only if
/// the options say so, and left out if --update finds it new enough. `there` names it in the
/// Failure that is thrown otherwise.
struct Version {
    std::optional<std::uint64_t> size;
    std::optional<std::chrono::sys_seconds> modified;
};
Step JudgeExisting(const Options& options, const std::string& there, const Version& from,
                   const Version& to);

/// The same decision, for the files of whole folders.
Existing ExistingOf(const Options& options);

/// What is known of a local file, links followed.
Version LocalVersion(const std::filesystem::path& path);
inline Version VersionOf(const Item& item) {
    return {item.size, item.modifiedTime};
}

/// Destinations that one command has given out. Two of them that a disk or a service may take for
/// one throw a Failure.
class TakenNames {
public:
    void Take(const std::string& name);

private:
    std::set<std::string> m_keys;
};

} // namespace brevint::cli
