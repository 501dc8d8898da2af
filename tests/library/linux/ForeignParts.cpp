#include "tests/library/ForeignParts.h"

#include <sys/stat.h>
#include <unistd.h>

namespace brevint::test {

namespace fs = std::filesystem;

std::vector<ForeignPart> ForeignParts() {
    std::vector<ForeignPart> parts = {
        {"link",
         [](const fs::path& part) {
             fs::rename(part, part.parent_path() / "theirs");
             fs::create_symlink("theirs", part);
         }},
        {"pipe",
         [](const fs::path& part) {
             fs::remove(part);
             mkfifo(part.c_str(), 0600);
         }},
        {"writable by the group",
         [](const fs::path& part) {
             chmod(part.c_str(), 0620);
         }},
    };
    if (geteuid() == 0) { // who alone can give files away
        parts.push_back({"another user's", [](const fs::path& part) {
                             static_cast<void>(chown(part.c_str(), 1, 1));
                         }});
    }
    return parts;
}

} // namespace brevint::test
