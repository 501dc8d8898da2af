#pragma once

#include <string>
#include <vector>

/// Stored replies, for work without the service: the files of the folder that the environment
/// variable BREVINT_LOCAL_RESPONSES names. Unset or empty, there are none.
namespace LocalResponseStore {

/// True when a readable reply is stored under that name.
bool Holds(const std::wstring& name);

/// The bytes stored under a response's name ("DownloadFileResponse"): all of them, or none when
/// they cannot be read to the end or exceed memory.
std::vector<char> Read(const std::wstring& name) noexcept;

} // namespace LocalResponseStore
