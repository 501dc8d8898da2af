#include "cli/transfer/SafeName.h"

#include "base/Ascii.h"
#include "cli/terminal/SafeText.h"

#include <algorithm>
#include <array>

namespace brevint::cli {

namespace {

/// Names that Windows takes for devices, whatever extension they bear.
constexpr std::array<std::string_view, 6> kDevices = {"con", "prn",    "aux",
                                                      "nul", "conin$", "conout$"};
/// The same, when a digit follows, be it a raised one.
constexpr std::array<std::string_view, 2> kNumberedDevices = {"com", "lpt"};
constexpr std::array<std::string_view, 3> kRaisedDigits = {"\u00B9", "\u00B2", "\u00B3"};

bool IsOneOf(std::string_view text, const auto& list) {
    return std::ranges::find(list, text) != list.end();
}

bool IsDevice(std::string_view name) {
    std::string stem = base::ToLower(name.substr(0, name.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    if (!IsOneOf(std::string_view(stem).substr(0, 3), kNumberedDevices)) {
        return IsOneOf(stem, kDevices);
    }
    const std::string_view number = std::string_view(stem).substr(3);
    return (number.size() == 1 && base::IsDigit(number.front())) || IsOneOf(number, kRaisedDigits);
}

bool HasForbiddenCharacter(std::string_view name) {
    // What would steer a terminal that lists the folder, or show the name as another one, too.
    return name.find_first_of("\\/:*?\"<>|") != std::string_view::npos || Neutralise(name) != name;
}

} // namespace

std::optional<std::string> SafeFileName(std::string_view itemPath) {
    const std::string_view name = itemPath.substr(itemPath.rfind('/') + 1);
    // Windows drops blanks and dots at the end. A dot in front hides the file, and is how the files
    // are called that programs obey.
    if (name.empty() || name.front() == '.' || name.back() == '.' || name.back() == ' ' ||
        HasForbiddenCharacter(name) || IsDevice(name)) {
        return std::nullopt;
    }
    return std::string(name);
}

} // namespace brevint::cli
