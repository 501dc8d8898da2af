#include "service/XmlWriter.h"

#include <cassert>
#include <utility>

namespace brevint::service {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
constexpr std::string_view kNonCharacterLead = "\xEF\xBF"; // U+FFFE and U+FFFF go on with BE or BF

} // namespace

XmlWriter::XmlWriter() : m_text(R"(<?xml version="1.0" encoding="utf-8"?>)") {}

XmlWriter& XmlWriter::Open(std::string_view name) {
    m_text.append("<").append(name).append(">");
    m_open.push_back(name);
    return *this;
}

XmlWriter& XmlWriter::Element(std::string_view name, std::string_view text) {
    Open(name);
    AppendText(text);
    return Close();
}

XmlWriter& XmlWriter::Flag(std::string_view name, bool value) {
    return Element(name, value ? "true" : "false");
}

XmlWriter& XmlWriter::Close() {
    m_text.append("</").append(m_open.back()).append(">");
    m_open.pop_back();
    return *this;
}

std::string XmlWriter::Document() {
    assert(m_open.empty());
    return std::move(m_text);
}

void XmlWriter::AppendText(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        switch (c) {
        case '&': m_text += "&amp;"; break;
        case '<': m_text += "&lt;"; break;
        case '>': m_text += "&gt;"; break;
        case '"': m_text += "&quot;"; break;
        case '\r': m_text += "&#13;"; break; // a bare CR would be read as a line feed
        default:
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n') {
                m_text += kReplacement;
            } else if (text.substr(i).starts_with(kNonCharacterLead) && i + 2 < text.size() &&
                       (text[i + 2] == '\xBE' || text[i + 2] == '\xBF')) {
                m_text += kReplacement;
                i += 2;
            } else {
                m_text += c;
            }
        }
    }
}

} // namespace brevint::service
