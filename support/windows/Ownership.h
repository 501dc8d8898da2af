#pragma once

#include "support/windows/Handles.h"

#include <system_error>

#include <accctrl.h>

/// Who may do what with a file.
class Access {
public:
    std::error_code ReadFrom(HANDLE file);
    std::error_code ApplyTo(HANDLE file) const;

private:
    LocalPtr m_descriptor; ///< Owns the list.
    PACL m_list = nullptr;
    SECURITY_INFORMATION m_kind = DACL_SECURITY_INFORMATION; ///< What the folder adds to it.
};

/// A security descriptor that lets the user in and nobody else, inherited by what lies in a folder.
/// Null, and the last error set, when it cannot be made.
LocalPtr UsersOnly();

/// Whether the file or folder is the user's or the system's, and gives those rights to nobody else.
bool IsUsersOnly(HANDLE file, DWORD rights);
