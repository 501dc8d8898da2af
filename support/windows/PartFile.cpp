#include "support/windows/PartFile.h"

#include "support/PartFileRules.h"
#include "support/windows/FileCalls.h"
#include "support/windows/Ownership.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

#include <aclapi.h>

namespace {

namespace fs = std::filesystem;

// WRITE_DAC: it gets its access list while it is open.
constexpr DWORD kPartAccess = GENERIC_WRITE | DELETE | WRITE_DAC;
// A link is opened itself, not what it leads to.
constexpr DWORD kFlags = FILE_ATTRIBUTE_NORMAL | FILE_FLAG_OPEN_REPARSE_POINT;

/// Whether it is a plain file that only the user can have written, under this name alone.
bool IsUsersOwn(HANDLE file) {
    constexpr DWORD kNotPlain = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    constexpr DWORD kWriting =
        FILE_WRITE_DATA | FILE_APPEND_DATA | DELETE | WRITE_DAC | WRITE_OWNER | GENERIC_WRITE;
    BY_HANDLE_FILE_INFORMATION info = {};
    return GetFileInformationByHandle(file, &info) && (info.dwFileAttributes & kNotPlain) == 0 &&
           info.nNumberOfLinks == 1 && IsUsersOnly(file, kWriting);
}

std::error_code OpenError() {
    const DWORD error = GetLastError();
    return error == ERROR_SHARING_VIOLATION
               ? std::make_error_code(std::errc::device_or_resource_busy)
               : FileError(error);
}

/// The name with letters that the file system takes for the same made the same.
std::wstring FoldCase(const std::wstring& name) {
    std::wstring folded(name.size(), L'\0');
    const auto size = static_cast<int>(name.size());
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, name.data(), size, folded.data(), size,
                  nullptr, nullptr, 0);
    return folded;
}

bool IsStale(const FILETIME& written) {
    const auto ticks = [](const FILETIME& time) {
        return (std::int64_t{time.dwHighDateTime} << 32) | time.dwLowDateTime;
    };
    using Ticks = std::chrono::duration<std::int64_t, std::ratio<1, 10'000'000>>;
    FILETIME now = {};
    GetSystemTimeAsFileTime(&now);
    return Ticks(ticks(now) - ticks(written)) > PartFileRules::kLongestRest;
}

} // namespace

std::error_code PartFile::OpenTemporary(const fs::path& folder, PSECURITY_DESCRIPTOR access) {
    const std::string name = PartFileRules::UniqueStem() + PartFileRules::kPartEnding;
    m_file = OpenFile(folder / name, kPartAccess, 0, CREATE_NEW, kFlags, access);
    return m_file ? std::error_code() : FileError();
}

std::error_code PartFile::OpenResumable(const fs::path& destination) {
    const std::wstring name = FoldCase(destination.filename().native());
    const std::string stem = PartFileRules::StemFor(
        {reinterpret_cast<const char*>(name.data()), name.size() * sizeof(wchar_t)});
    const fs::path part = destination.parent_path() / (stem + PartFileRules::kPartEnding);
    m_record = destination.parent_path() / (stem + PartFileRules::kRecordEnding);
    m_usersOnly = UsersOnly();
    if (!m_usersOnly) {
        return FileError();
    }
    m_file = OpenFile(part, kPartAccess, 0, OPEN_ALWAYS, kFlags, m_usersOnly.get());
    const bool wasThere = m_file && GetLastError() == ERROR_ALREADY_EXISTS;
    if (!m_file && GetLastError() != ERROR_ACCESS_DENIED) {
        return OpenError();
    }
    if (m_file && (!wasThere || IsUsersOwn(m_file.get()))) {
        return TakeOver();
    }
    // What is not the user's own gives way to a new one.
    const std::error_code denied = FileError(ERROR_ACCESS_DENIED);
    m_file.reset();
    if (!DeleteFileW(part.c_str())) {
        return denied;
    }
    m_file = OpenFile(part, kPartAccess, 0, CREATE_NEW, kFlags, m_usersOnly.get());
    return m_file ? TakeOver() : OpenError();
}

/// Goes on after what is there, or begins anew.
std::error_code PartFile::TakeOver() {
    BY_HANDLE_FILE_INFORMATION info = {};
    if (!GetFileInformationByHandle(m_file.get(), &info) ||
        (IsStale(info.ftLastWriteTime) && !SetEndOfFile(m_file.get()))) {
        return FileError();
    }
    LARGE_INTEGER end = {};
    if (!SetFilePointerEx(m_file.get(), {}, &end, FILE_END)) {
        return FileError();
    }
    m_found = static_cast<std::uint64_t>(end.QuadPart);
    m_mayHaveRecord = true;
    if (m_found == 0) {
        RemoveRecord();
    }
    return {};
}

std::error_code PartFile::Truncate(std::uint64_t size) {
    LARGE_INTEGER now = {};
    if (!GetFileSizeEx(m_file.get(), &now)) {
        return FileError();
    }
    if (size > static_cast<std::uint64_t>(now.QuadPart)) {
        return FileError(ERROR_INVALID_PARAMETER);
    }
    LARGE_INTEGER end = {};
    end.QuadPart = static_cast<LONGLONG>(size);
    if (!SetFilePointerEx(m_file.get(), end, nullptr, FILE_BEGIN) || !SetEndOfFile(m_file.get())) {
        return FileError();
    }
    m_found = std::min(m_found, size);
    if (size == 0) {
        RemoveRecord();
    }
    return {};
}

std::string PartFile::ReadRecord() const {
    const HandlePtr file =
        m_mayHaveRecord ? OpenFile(m_record, GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING, kFlags)
                        : nullptr;
    LARGE_INTEGER size = {};
    if (!file || !IsUsersOwn(file.get()) || !GetFileSizeEx(file.get(), &size) ||
        size.QuadPart > static_cast<LONGLONG>(PartFileRules::kLongestRecord)) {
        return {};
    }
    std::string record(static_cast<std::size_t>(size.QuadPart), '\0');
    DWORD count = 0;
    if (!ReadFile(file.get(), record.data(), static_cast<DWORD>(record.size()), &count, nullptr)) {
        return {};
    }
    record.resize(count);
    return record;
}

std::error_code PartFile::WriteRecord(std::string_view record) {
    PartFile next;
    m_mayHaveRecord = true;
    std::error_code reason = next.OpenTemporary(m_record.parent_path(), m_usersOnly.get());
    if (!reason) {
        reason = WriteAll(next.Get(), record);
        reason = reason ? reason : next.MoveTo(m_record);
        if (reason) {
            next.Remove();
        }
    }
    return reason;
}

std::error_code PartFile::MoveTo(const fs::path& path) {
    const std::wstring& name = path.native();
    const std::size_t size =
        offsetof(FILE_RENAME_INFO, FileName) + (name.size() + 1) * sizeof(wchar_t);
    std::vector<std::byte> memory(size);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(memory.data());
    info->ReplaceIfExists = TRUE;
    info->FileNameLength = static_cast<DWORD>(name.size() * sizeof(wchar_t));
    std::ranges::copy(name, info->FileName);
    if (!SetFileInformationByHandle(m_file.get(), FileRenameInfo, info, static_cast<DWORD>(size))) {
        return FileError();
    }
    RemoveRecord();
    return {};
}

void PartFile::Remove() noexcept {
    RemoveRecord();
    FILE_DISPOSITION_INFO gone = {TRUE};
    SetFileInformationByHandle(m_file.get(), FileDispositionInfo, &gone, sizeof gone);
}

void PartFile::RemoveRecord() noexcept {
    if (std::exchange(m_mayHaveRecord, false)) {
        DeleteFileW(m_record.c_str()); // a link itself, not what it leads to
    }
}

void PartFile::Protect() const noexcept {
    BOOL isThere = FALSE;
    BOOL isDefault = FALSE;
    PACL list = nullptr;
    if (GetSecurityDescriptorDacl(m_usersOnly.get(), &isThere, &list, &isDefault)) {
        SetSecurityInfo(m_file.get(), SE_FILE_OBJECT,
                        DACL_SECURITY_INFORMATION | PROTECTED_DACL_SECURITY_INFORMATION, nullptr,
                        nullptr, list, nullptr);
    }
}
