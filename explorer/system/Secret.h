#pragma once

#include <string>
#include <utility>

#include <windows.h>

namespace brevint::explorer {

/// A text that is wiped from memory when it is not needed any more.
class Secret {
public:
    explicit Secret(std::string text) : m_text(std::move(text)) {}
    Secret(const Secret&) = delete;
    Secret& operator=(const Secret&) = delete;
    ~Secret() { SecureZeroMemory(m_text.data(), m_text.size()); }

    const std::string& Text() const { return m_text; }

private:
    std::string m_text;
};

} // namespace brevint::explorer
