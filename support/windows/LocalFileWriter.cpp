#include "support/LocalFileWriter.h"

#include "support/windows/Handles.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <windows.h>

#include <aclapi.h>

namespace {

namespace fs = std::filesystem;

std::error_code Error(DWORD number = GetLastError()) {
    return {static_cast<int>(number), std::system_category()};
}

HandlePtr OpenExisting(const fs::path& path, DWORD access) {
    const HANDLE handle =
        CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    return HandlePtr(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

/// The file's path once links have been followed; empty when Windows does not tell.
fs::path FinalPath(HANDLE file) {
    std::wstring path(GetFinalPathNameByHandleW(file, nullptr, 0, 0), L'\0');
    path.resize(GetFinalPathNameByHandleW(file, path.data(), static_cast<DWORD>(path.size()), 0));
    return path;
}

} // namespace

struct LocalFileWriter::Output {
    HandlePtr file;
    fs::path destination; ///< With links followed; empty when it is written to itself.
    DWORD oldAttributes = INVALID_FILE_ATTRIBUTES; ///< Of the file that it replaces, if any.
    LocalPtr oldDescriptor;                        ///< Owns the access list.
    PACL oldAccess = nullptr;
    SECURITY_INFORMATION accessKind = DACL_SECURITY_INFORMATION; ///< What the folder adds to it.

    std::error_code CopyPermissions(HANDLE old);
    std::error_code OpenPart();
    std::error_code MovePart();
};

/// Remembers who may do what with the file that is to be replaced.
std::error_code LocalFileWriter::Output::CopyPermissions(HANDLE old) {
    BY_HANDLE_FILE_INFORMATION info = {};
    if (!GetFileInformationByHandle(old, &info)) {
        return Error();
    }
    if ((info.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return std::make_error_code(std::errc::is_a_directory);
    }
    oldAttributes = info.dwFileAttributes;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = GetSecurityInfo(old, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                        nullptr, &oldAccess, nullptr, &descriptor);
    if (error != ERROR_SUCCESS) {
        return Error(error);
    }
    oldDescriptor.reset(descriptor);
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    if (!GetSecurityDescriptorControl(descriptor, &control, &revision)) {
        return Error();
    }
    if ((control & SE_DACL_PROTECTED) != 0) {
        accessKind |= PROTECTED_DACL_SECURITY_INFORMATION;
    }
    return {};
}

std::error_code LocalFileWriter::Output::OpenPart() {
    const fs::path part = destination.parent_path() / PartName();
    // Nobody else can open it meanwhile, whatever the folder allows them.
    const HANDLE handle = CreateFileW(part.c_str(), GENERIC_WRITE | DELETE | WRITE_DAC, 0, nullptr,
                                      CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        return Error();
    }
    file.reset(handle);
    return {};
}

/// Renames the open file, whatever name it bears by now.
std::error_code LocalFileWriter::Output::MovePart() {
    const std::wstring& name = destination.native();
    const std::size_t size =
        offsetof(FILE_RENAME_INFO, FileName) + (name.size() + 1) * sizeof(wchar_t);
    std::vector<std::byte> memory(size);
    auto* const info = reinterpret_cast<FILE_RENAME_INFO*>(memory.data());
    info->ReplaceIfExists = TRUE;
    info->FileNameLength = static_cast<DWORD>(name.size() * sizeof(wchar_t));
    std::copy(name.begin(), name.end(), info->FileName);
    return SetFileInformationByHandle(file.get(), FileRenameInfo, info, static_cast<DWORD>(size))
               ? std::error_code()
               : Error();
}

LocalFileWriter::LocalFileWriter() = default;

LocalFileWriter::~LocalFileWriter() {
    Abandon();
}

std::error_code LocalFileWriter::Open(const fs::path& destination) {
    Abandon();
    auto output = std::make_unique<Output>();
    // A pipe serves whoever opens it, so that the first attempt is the one to write with.
    HandlePtr old = OpenExisting(destination, GENERIC_WRITE | READ_CONTROL);
    if (!old) {
        old = OpenExisting(destination, FILE_READ_ATTRIBUTES | READ_CONTROL);
    }
    if (!old && GetLastError() != ERROR_FILE_NOT_FOUND) {
        return Error();
    }
    if (old && GetFileType(old.get()) != FILE_TYPE_DISK) {
        output->file = std::move(old);
        m_output = std::move(output);
        return {};
    }
    std::error_code reason;
    if (old) {
        output->destination = FinalPath(old.get());
        reason = output->CopyPermissions(old.get());
    }
    if (output->destination.empty()) {
        output->destination = fs::absolute(destination, reason);
    }
    if (!reason) {
        reason = output->OpenPart();
    }
    if (!reason) {
        m_output = std::move(output);
    }
    return reason;
}

std::error_code LocalFileWriter::Write(std::string_view bytes) {
    if (!m_output) {
        return Error(ERROR_INVALID_HANDLE);
    }
    while (!bytes.empty()) {
        const auto size = static_cast<DWORD>(std::min<std::size_t>(bytes.size(), 1U << 20));
        DWORD written = 0;
        if (!WriteFile(m_output->file.get(), bytes.data(), size, &written, nullptr)) {
            return Error();
        }
        bytes.remove_prefix(written);
    }
    return {};
}

std::error_code LocalFileWriter::Finish() {
    if (!m_output) {
        return Error(ERROR_INVALID_HANDLE);
    }
    Output& output = *m_output;
    if (!output.destination.empty()) {
        if (output.oldAttributes != INVALID_FILE_ATTRIBUTES) {
            // An old file goes only once the new one is on the disk: a machine that fails in
            // between would leave neither.
            const DWORD error =
                SetSecurityInfo(output.file.get(), SE_FILE_OBJECT, output.accessKind, nullptr,
                                nullptr, output.oldAccess, nullptr);
            if (error != ERROR_SUCCESS) {
                return Error(error);
            }
            if (!FlushFileBuffers(output.file.get())) {
                return Error();
            }
        }
        // Nothing replaces a file that is read-only.
        const bool readOnly = output.oldAttributes != INVALID_FILE_ATTRIBUTES &&
                              (output.oldAttributes & FILE_ATTRIBUTE_READONLY) != 0;
        if (readOnly) {
            SetFileAttributesW(output.destination.c_str(),
                               output.oldAttributes & ~DWORD{FILE_ATTRIBUTE_READONLY});
        }
        if (const std::error_code reason = output.MovePart()) {
            if (readOnly) {
                SetFileAttributesW(output.destination.c_str(), output.oldAttributes);
            }
            return reason;
        }
    }
    m_output.reset();
    return {};
}

void LocalFileWriter::Abandon() noexcept {
    if (m_output && !m_output->destination.empty()) {
        FILE_DISPOSITION_INFO gone = {TRUE};
        SetFileInformationByHandle(m_output->file.get(), FileDispositionInfo, &gone, sizeof gone);
    }
    m_output.reset();
}
