#pragma once

#include <string>

/// Short-lived converter between narrow (UTF-8) and wide text: owns the converted copy, which is
/// valid until the converter is destroyed. A null pointer converts to an empty text.
class _UNICODECONVERT {
public:
    explicit _UNICODECONVERT(const char* narrow);
    explicit _UNICODECONVERT(const wchar_t* wide);

    operator const wchar_t*() const;
    operator const char*() const;

private:
    std::string m_narrow;
    std::wstring m_wide;
};
