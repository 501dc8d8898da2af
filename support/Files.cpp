#include "support/Files.h"

#include "support/Utf8.h"

#include <filesystem>
#include <string_view>
#include <system_error>

void FileCloser::operator()(std::FILE* file) const noexcept {
    std::fclose(file);
}

namespace BaseHlpr {
namespace {

bool IsRegularFile(const std::wstring& path) {
    // Outside Windows std::filesystem converts wide names by the process's locale, which knows
    // ASCII only unless the application has set another one. UTF-8 it takes as it is.
    const std::string name = Utf8::ToNarrow(path);
    std::error_code ignored;
    return std::filesystem::is_regular_file(std::u8string(name.begin(), name.end()), ignored);
}

} // namespace

std::wstring ExtractFileName(const std::wstring& path) {
    constexpr bool kBackslashSeparates = std::filesystem::path::preferred_separator == '\\';
    constexpr std::wstring_view kSeparators = kBackslashSeparates ? L"\\/" : L"/";
    const std::size_t separator = path.find_last_of(kSeparators);
    return separator == std::wstring::npos ? path : path.substr(separator + 1);
}

FilePtr OpenRegularFile(const std::wstring& path, std::uint64_t& size) {
    FilePtr file(IsRegularFile(path) ? _wfopen(path.c_str(), L"rb") : nullptr);
    if (!file || _fseeki64(file.get(), 0, SEEK_END) != 0) {
        return nullptr;
    }
    const std::int64_t end = _ftelli64(file.get());
    if (end < 0 || _fseeki64(file.get(), 0, SEEK_SET) != 0) {
        return nullptr;
    }
    size = static_cast<std::uint64_t>(end);
    return file;
}

bool IsFileReadOnly(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

void RemoveReadOnly(const std::wstring& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES) {
        SetFileAttributesW(path.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    }
}

} // namespace BaseHlpr
