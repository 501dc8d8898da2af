#include "support/windows/LocalFileOutput.h"

#include "support/windows/FileCalls.h"

namespace {

namespace fs = std::filesystem;

HandlePtr OpenExisting(const fs::path& path, DWORD access) {
    return OpenFile(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
}

/// The file's path once links have been followed; empty when Windows does not tell.
fs::path FinalPath(HANDLE file) {
    std::wstring path(GetFinalPathNameByHandleW(file, nullptr, 0, 0), L'\0');
    path.resize(GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0));
    return path;
}

} // namespace

std::error_code LocalFileOutput::Open(const fs::path& destination, LocalFileWriter::Part kind) {
    // A pipe serves whoever opens it, so that the first attempt is the one to write with.
    HandlePtr old = OpenExisting(destination, GENERIC_WRITE | READ_CONTROL);
    if (!old) {
        old = OpenExisting(destination, FILE_READ_ATTRIBUTES | READ_CONTROL);
    }
    if (!old && GetLastError() != ERROR_FILE_NOT_FOUND) {
        return FileError();
    }
    if (old && GetFileType(old.get()) != FILE_TYPE_DISK) {
        m_itself = std::move(old);
        return {};
    }
    std::error_code reason;
    if (old) {
        m_destination = FinalPath(old.get());
        reason = LookAt(old.get());
    }
    if (!reason && m_destination.empty()) {
        m_destination = fs::absolute(destination, reason);
    }
    if (reason) {
        return reason;
    }
    return kind == LocalFileWriter::Part::Resumable
               ? m_part.OpenResumable(m_destination)
               : m_part.OpenTemporary(m_destination.parent_path());
}

/// Remembers who may do what with the file that is to be replaced.
std::error_code LocalFileOutput::LookAt(HANDLE old) {
    BY_HANDLE_FILE_INFORMATION info = {};
    if (!GetFileInformationByHandle(old, &info)) {
        return FileError();
    }
    if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    m_oldAttributes = info.dwFileAttributes;
    return m_oldAccess.ReadFrom(old);
}

/// Gives the part the access that the old file has, or that new files have in this folder.
std::error_code LocalFileOutput::GrantAccess() {
    if (Replaces()) {
        return m_oldAccess.ApplyTo(m_part.Get());
    }
    if (!m_part.IsResumable()) {
        return {};
    }
    PartFile fresh;
    Access usual;
    std::error_code reason = fresh.OpenTemporary(m_destination.parent_path());
    if (!reason) {
        reason = usual.ReadFrom(fresh.Get());
        reason = reason ? reason : usual.ApplyTo(m_part.Get());
        fresh.Remove();
    }
    return reason;
}

/// Puts the part into place, though nothing else replaces a file that is read-only.
std::error_code LocalFileOutput::PutIntoPlace() {
    const bool readOnly = Replaces() && (m_oldAttributes & FILE_ATTRIBUTE_READONLY) != 0;
    if (readOnly) {
        SetFileAttributesW(m_destination.c_str(),
                           m_oldAttributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
    }
    const std::error_code reason = m_part.MoveTo(m_destination);
    if (reason && readOnly) {
        SetFileAttributesW(m_destination.c_str(), m_oldAttributes);
    }
    return reason;
}

std::error_code LocalFileOutput::Write(std::string_view bytes) {
    return WriteAll(IsDirect() ? m_itself.get() : m_part.Get(), bytes);
}

std::error_code LocalFileOutput::Finish(bool durable) {
    if (IsDirect()) {
        return {};
    }
    if (const std::error_code reason = GrantAccess()) {
        return reason;
    }
    return durable && !FlushFileBuffers(m_part.Get()) ? FileError() : PutIntoPlace();
}
