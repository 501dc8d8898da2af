#include "support/UnicodeConvert.h"

#include "support/Utf8.h"

_UNICODECONVERT::_UNICODECONVERT(const char* narrow)
    : m_narrow(narrow ? narrow : ""), m_wide(Utf8::ToWide(m_narrow)) {}

_UNICODECONVERT::_UNICODECONVERT(const wchar_t* wide) : m_wide(wide ? wide : L"") {
    m_narrow = Utf8::ToNarrow(m_wide);
}

_UNICODECONVERT::operator const wchar_t*() const {
    return m_wide.c_str();
}

_UNICODECONVERT::operator const char*() const {
    return m_narrow.c_str();
}
