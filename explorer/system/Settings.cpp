#include "explorer/system/Settings.h"

#include <windows.h>

namespace brevint::explorer {

std::wstring Settings::GetText(const wchar_t* name) const {
    DWORD size = 0;
    if (RegGetValueW(HKEY_CURRENT_USER, m_key.c_str(), name, RRF_RT_REG_SZ, nullptr, nullptr,
                     &size) != ERROR_SUCCESS) {
        return {};
    }
    std::wstring value(size / sizeof(wchar_t), L'\0');
    if (RegGetValueW(HKEY_CURRENT_USER, m_key.c_str(), name, RRF_RT_REG_SZ, nullptr, value.data(),
                     &size) != ERROR_SUCCESS) {
        return {};
    }
    return value.substr(0, value.find(L'\0'));
}

void Settings::SetText(const wchar_t* name, const std::wstring& value) {
    Set(name, REG_SZ, value.c_str(), (value.size() + 1) * sizeof(wchar_t));
}

std::optional<unsigned> Settings::GetNumber(const wchar_t* name) const {
    DWORD value = 0;
    DWORD size = sizeof value;
    if (RegGetValueW(HKEY_CURRENT_USER, m_key.c_str(), name, RRF_RT_REG_DWORD, nullptr, &value,
                     &size) != ERROR_SUCCESS) {
        return std::nullopt;
    }
    return value;
}

void Settings::SetNumber(const wchar_t* name, unsigned value) {
    Set(name, REG_DWORD, &value, sizeof value);
}

void Settings::Set(const wchar_t* name, unsigned long type, const void* data, std::size_t size) {
    RegSetKeyValueW(HKEY_CURRENT_USER, m_key.c_str(), name, type, data, static_cast<DWORD>(size));
}

} // namespace brevint::explorer
