#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace brevint::explorer {

// As the user's settings of Windows say. What nobody knows is an empty text.

std::wstring SizeText(std::optional<std::uint64_t> bytes);
std::wstring TimeText(std::optional<std::chrono::sys_seconds> time);
std::wstring DurationText(std::optional<std::chrono::seconds> duration);
std::wstring NumberText(std::uint64_t number);

} // namespace brevint::explorer
