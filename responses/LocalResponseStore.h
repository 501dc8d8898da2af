#pragma once

#include <optional>
#include <string>
#include <vector>

/// Stored replies, for work without the service: the files of the folder that the environment
/// variable BREVINT_LOCAL_RESPONSES names. Unset or empty, there are none.
namespace LocalResponseStore {

/// True when a readable reply is stored under that name.
bool Holds(const std::wstring& name);

/// The bytes stored under a response's name ("DownloadFileResponse"); nothing when none are.
std::optional<std::vector<char>> Find(const std::wstring& name);

} // namespace LocalResponseStore
