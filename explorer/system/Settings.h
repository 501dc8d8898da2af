#pragma once

#include <optional>
#include <string>

namespace brevint::explorer {

/// What the program remembers of one user from one start to the next, in the registry. A value that
/// cannot be kept is lost, and nothing else.
class Settings {
public:
    static constexpr const wchar_t* kKey = L"Software\\Brevint\\Explorer";

    /// Below HKEY_CURRENT_USER.
    explicit Settings(std::wstring key = kKey) : m_key(std::move(key)) {}

    std::wstring GetText(const wchar_t* name) const;
    void SetText(const wchar_t* name, const std::wstring& value);

    std::optional<unsigned> GetNumber(const wchar_t* name) const;
    void SetNumber(const wchar_t* name, unsigned value);

private:
    void Set(const wchar_t* name, unsigned long type, const void* data, std::size_t size);

    std::wstring m_key;
};

} // namespace brevint::explorer
