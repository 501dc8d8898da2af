#include "service/TemporaryFile.h"

#include "service/Guid.h"

#include <filesystem>
#include <system_error>

#include <windows.h>

namespace brevint::service {

namespace {

[[noreturn]] void Fail(DWORD error) {
    throw std::system_error(static_cast<int>(error), std::system_category(), "temporary file");
}

HANDLE Handle(std::intptr_t file) {
    return reinterpret_cast<HANDLE>(file);
}

} // namespace

TemporaryFile::TemporaryFile() {
    const auto path = std::filesystem::temp_directory_path() / ("brevint-service-" + NewGuid());
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, FILE_SHARE_DELETE, nullptr,
                    CREATE_NEW, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        Fail(GetLastError());
    }
    m_file = reinterpret_cast<std::intptr_t>(file);
}

TemporaryFile::~TemporaryFile() {
    CloseHandle(Handle(m_file));
}

void TemporaryFile::Append(std::string_view bytes) const {
    // A piece has far fewer bytes than a DWORD can tell, and a file takes all of it or fails.
    DWORD count = 0;
    if (!WriteFile(Handle(m_file), bytes.data(), static_cast<DWORD>(bytes.size()), &count,
                   nullptr)) {
        Fail(GetLastError());
    }
    if (count != bytes.size()) {
        Fail(ERROR_DISK_FULL);
    }
}

void TemporaryFile::Read(std::uint64_t offset, char* target, std::size_t count) const {
    OVERLAPPED place{};
    place.Offset = static_cast<DWORD>(offset);
    place.OffsetHigh = static_cast<DWORD>(offset >> 32);
    DWORD got = 0;
    if (!ReadFile(Handle(m_file), target, static_cast<DWORD>(count), &got, &place)) {
        Fail(GetLastError());
    }
    if (got != count) {
        Fail(ERROR_HANDLE_EOF);
    }
}

} // namespace brevint::service
