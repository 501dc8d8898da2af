#include "support/LocalItem.h"

#include "support/windows/FileCalls.h"

#include <memory>

namespace {

/// Windows counts in tenths of a microsecond since 1601.
constexpr std::int64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;

std::uint64_t Join(DWORD high, DWORD low) {
    return (std::uint64_t{high} << 32) | low;
}

/// What stands for something else, as links and junctions do. Files that the system fetches when
/// they are read are marked too, and are none of these.
bool IsLink(const WIN32_FIND_DATAW& found) {
    return (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 &&
           IsReparseTagNameSurrogate(found.dwReserved0);
}

struct SearchCloser {
    using pointer = HANDLE;
    void operator()(HANDLE search) const noexcept { FindClose(search); }
};

} // namespace

LocalItem LookAtLocalItem(const std::filesystem::path& path) {
    WIN32_FIND_DATAW found = {};
    const HANDLE search = FindFirstFileW(path.c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD reason = GetLastError();
        const bool isMissing = reason == ERROR_FILE_NOT_FOUND || reason == ERROR_PATH_NOT_FOUND;
        return {.kind = isMissing ? LocalItem::Kind::Missing : LocalItem::Kind::Other};
    }
    const std::unique_ptr<HANDLE, SearchCloser> closer(search);
    if (IsLink(found) || (found.dwFileAttributes & FILE_ATTRIBUTE_DEVICE) != 0) {
        return {.kind = LocalItem::Kind::Other};
    }
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return {.kind = LocalItem::Kind::Folder};
    }
    const std::uint64_t ticks =
        Join(found.ftLastWriteTime.dwHighDateTime, found.ftLastWriteTime.dwLowDateTime);
    return {.kind = LocalItem::Kind::File,
            .bytes = Join(found.nFileSizeHigh, found.nFileSizeLow),
            .modified = static_cast<std::int64_t>(ticks) / kTicksPerSecond - kSecondsTo1970};
}

std::error_code SetLocalFileTime(const std::filesystem::path& path, std::int64_t modified) {
    const auto ticks = static_cast<std::uint64_t>((modified + kSecondsTo1970) * kTicksPerSecond);
    const FILETIME time = {.dwLowDateTime = static_cast<DWORD>(ticks),
                           .dwHighDateTime = static_cast<DWORD>(ticks >> 32)};
    const HandlePtr file = OpenFile(path, FILE_WRITE_ATTRIBUTES,
                                    FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                    OPEN_EXISTING, FILE_FLAG_OPEN_REPARSE_POINT);
    return file && SetFileTime(file.get(), nullptr, nullptr, &time) ? std::error_code()
                                                                    : FileError();
}
