#include "service/XmlWriter.h"

#include <cassert>
#include <utility>

namespace brevint::service {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";
constexpr std::string_view nonCharacterLead = "\xEF\xBF"; // U+FFFE and U+FFFF go on with BE or BF

} // namespace

XmlWriter::XmlWriter() : text_("<?xml version=\"1.0\" encoding=\"utf-8\"?>") {}

XmlWriter& XmlWriter::Open(std::string_view name) {
    text_.append("<").append(name).append(">");
    open_.push_back(name);
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
    text_.append("</").append(open_.back()).append(">");
    open_.pop_back();
    return *this;
}

std::string XmlWriter::Document() {
    assert(open_.empty());
    return std::move(text_);
}

void XmlWriter::AppendText(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        switch (c) {
        case '&': text_ += "&amp;"; break;
        case '<': text_ += "&lt;"; break;
        case '>': text_ += "&gt;"; break;
        case '"': text_ += "&quot;"; break;
        case '\r': text_ += "&#13;"; break; // a bare CR would be read as a line feed
        default:
            if (static_cast<unsigned char>(c) < 0x20 && c != '\t' && c != '\n') {
                text_ += replacement;
            } else if (text.substr(i).starts_with(nonCharacterLead) && i + 2 < text.size() &&
                       (text[i + 2] == '\xBE' || text[i + 2] == '\xBF')) {
                text_ += replacement;
                i += 2;
            } else {
                text_ += c;
            }
        }
    }
}

} // namespace brevint::service
