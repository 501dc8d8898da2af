#include "support/windows/Ownership.h"

#include "support/windows/FileCalls.h"

#include <cstddef>
#include <string>
#include <vector>

#include <aclapi.h>
#include <sddl.h>

namespace {

/// The TOKEN_USER of this process; empty when Windows does not tell.
std::vector<std::byte> CurrentUser() {
    HANDLE opened = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &opened)) {
        return {};
    }
    const HandlePtr token(opened);
    DWORD size = 0;
    GetTokenInformation(token.get(), TokenUser, nullptr, 0, &size);
    std::vector<std::byte> user(size);
    if (size == 0 || !GetTokenInformation(token.get(), TokenUser, user.data(), size, &size)) {
        return {};
    }
    return user;
}

PSID Sid(std::vector<std::byte>& user) {
    return reinterpret_cast<TOKEN_USER*>(user.data())->User.Sid;
}

/// Those who can reach every file of the machine anyway.
bool IsSystemAccount(PSID sid) {
    return IsWellKnownSid(sid, WinLocalSystemSid) != FALSE ||
           IsWellKnownSid(sid, WinBuiltinAdministratorsSid) != FALSE;
}

/// Whether the access list gives those rights to nobody but the user.
bool AllowsOnly(PACL list, PSID user, DWORD rights) {
    if (!list) {
        return false; // no list at all: everybody may do everything
    }
    for (DWORD i = 0; i < list->AceCount; ++i) {
        void* entry = nullptr;
        if (!GetAce(list, i, &entry)) {
            return false;
        }
        const auto* header = static_cast<const ACE_HEADER*>(entry);
        if (header->AceType == ACCESS_DENIED_ACE_TYPE ||
            (header->AceFlags & INHERIT_ONLY_ACE) != 0) {
            continue;
        }
        if (header->AceType != ACCESS_ALLOWED_ACE_TYPE) {
            return false;
        }
        auto* allowed = static_cast<ACCESS_ALLOWED_ACE*>(entry);
        PSID sid = &allowed->SidStart;
        if ((allowed->Mask & (rights | GENERIC_ALL)) != 0 && !EqualSid(sid, user) &&
            !IsSystemAccount(sid)) {
            return false;
        }
    }
    return true;
}

} // namespace

std::error_code Access::ReadFrom(HANDLE file) {
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    const DWORD error = GetSecurityInfo(file, SE_FILE_OBJECT, DACL_SECURITY_INFORMATION, nullptr,
                                        nullptr, &m_list, nullptr, &descriptor);
    if (error != ERROR_SUCCESS) {
        return FileError(error);
    }
    m_descriptor.reset(descriptor);
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    DWORD revision = 0;
    if (!GetSecurityDescriptorControl(descriptor, &control, &revision)) {
        return FileError();
    }
    m_kind |= (control & SE_DACL_PROTECTED) != 0 ? PROTECTED_DACL_SECURITY_INFORMATION
                                                 : UNPROTECTED_DACL_SECURITY_INFORMATION;
    return {};
}

std::error_code Access::ApplyTo(HANDLE file) const {
    const DWORD error =
        SetSecurityInfo(file, SE_FILE_OBJECT, m_kind, nullptr, nullptr, m_list, nullptr);
    return error == ERROR_SUCCESS ? std::error_code() : FileError(error);
}

LocalPtr UsersOnly() {
    std::vector<std::byte> user = CurrentUser();
    LPWSTR text = nullptr;
    if (user.empty() || !ConvertSidToStringSidW(Sid(user), &text)) {
        return nullptr;
    }
    const LocalPtr textOwner(text);
    const std::wstring sid = text;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(
        (L"O:" + sid + L"D:P(A;OICI;FA;;;" + sid + L")").c_str(), SDDL_REVISION_1, &descriptor,
        nullptr);
    return LocalPtr(descriptor);
}

bool IsUsersOnly(HANDLE file, DWORD rights) {
    PSID owner = nullptr;
    PACL list = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(file, SE_FILE_OBJECT,
                        OWNER_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner, nullptr,
                        &list, nullptr, &descriptor) != ERROR_SUCCESS) {
        return false;
    }
    const LocalPtr descriptorOwner(descriptor);
    std::vector<std::byte> user = CurrentUser();
    return !user.empty() && (EqualSid(owner, Sid(user)) || IsSystemAccount(owner)) &&
           AllowsOnly(list, Sid(user), rights);
}
