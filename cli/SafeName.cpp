#include "cli/SafeName.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace brevint::cli {

namespace {

/// Names that Windows takes for devices, whatever extension they bear.
constexpr std::array<std::string_view, 4> kDevices = {"con", "prn", "aux", "nul"};
/// The same, when a digit follows.
constexpr std::array<std::string_view, 2> kNumberedDevices = {"com", "lpt"};

bool IsOneOf(std::string_view text, const auto& list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

bool IsDevice(std::string_view name) {
    std::string stem(name.substr(0, name.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    std::transform(stem.begin(), stem.end(), stem.begin(), [](unsigned char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : static_cast<char>(c);
    });
    return IsOneOf(stem, kDevices) ||
           (stem.size() == 4 && std::isdigit(static_cast<unsigned char>(stem[3])) != 0 &&
            IsOneOf(std::string_view(stem).substr(0, 3), kNumberedDevices));
}

bool HasForbiddenCharacter(std::string_view name) {
    return std::any_of(name.begin(), name.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return byte < 0x20 || byte == 0x7F ||
               std::string_view("\\/:*?\"<>|").find(c) != std::string_view::npos;
    });
}

} // namespace

std::optional<std::string> SafeFileName(std::string_view itemPath) {
    const std::string_view name = itemPath.substr(itemPath.rfind('/') + 1);
    // Windows drops blanks and dots at the end, "." and ".." among them.
    if (name.empty() || name.back() == '.' || name.back() == ' ' || HasForbiddenCharacter(name) ||
        IsDevice(name)) {
        return std::nullopt;
    }
    return std::string(name);
}

} // namespace brevint::cli
