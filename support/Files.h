#pragma once

#include "platform/Files.h"

#include <cstdint>
#include <memory>
#include <string>

/// Closes a file of the C runtime.
struct FileCloser {
    void operator()(std::FILE* file) const noexcept;
};

/// Owner of an open file.
using FilePtr = std::unique_ptr<std::FILE, FileCloser>;

namespace BaseHlpr {

/// The text after the last path separator: "/", and on Windows "\" too.
std::wstring ExtractFileName(const std::wstring& path);

/// Opens a file for reading and learns its size in bytes. Null when there is no readable regular
/// file of that name: folders, devices and pipes (which could block) do not count.
FilePtr OpenRegularFile(const std::wstring& path, std::uint64_t& size);

/// True when the file exists and is read-only.
bool IsFileReadOnly(const std::wstring& path);

/// Clears the read-only attribute.
void RemoveReadOnly(const std::wstring& path);

} // namespace BaseHlpr
