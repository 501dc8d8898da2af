#include "cli/transfer/SafeName.h"

#include "cli/terminal/SafeText.h"
#include "support/LocalName.h"

namespace brevint::cli {

std::optional<std::string> SafeFileName(std::string_view itemPath) {
    const std::string_view name = itemPath.substr(itemPath.rfind('/') + 1);
    // A dot in front hides the file, and is how the files are called that programs obey. What would
    // steer a terminal that lists the folder, or show the name as another one, is refused too.
    if (name.starts_with('.') || !IsNameOnWindows(name) || Neutralise(name) != name) {
        return std::nullopt;
    }
    return std::string(name);
}

} // namespace brevint::cli
