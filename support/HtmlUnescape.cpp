#include "support/HtmlUnescape.h"

#include "support/Utf8.h"

#include <libxml/HTMLparser.h>

#include <charconv>
#include <optional>
#include <string_view>

namespace BaseHlpr {
namespace {

/// Longer than any entity: bounds the search for its semicolon.
constexpr std::size_t kLongestEntity = 32;

std::optional<char32_t> NumericEntity(std::string_view digits) {
    const bool hexadecimal = digits.starts_with('x') || digits.starts_with('X');
    if (hexadecimal) {
        digits.remove_prefix(1);
    }
    unsigned value = 0;
    const char* end = digits.data() + digits.size();
    const auto [last, error] = std::from_chars(digits.data(), end, value, hexadecimal ? 16 : 10);
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    if (error != std::errc() || last != end || value == 0 || value > 0x10FFFF || surrogate) {
        return std::nullopt;
    }
    return value;
}

/// `name` is what stands between "&" and ";".
std::optional<char32_t> Entity(const std::string& name) {
    if (name.starts_with('#')) {
        return NumericEntity(std::string_view(name).substr(1));
    }
    const auto* key = reinterpret_cast<const xmlChar*>(name.c_str());
    const htmlEntityDesc* entity = htmlEntityLookup(key);
    return entity ? std::optional<char32_t>(entity->value) : std::nullopt;
}

} // namespace

std::wstring HtmlUnescape(const wchar_t* text) {
    const std::wstring_view source = text ? std::wstring_view(text) : std::wstring_view();
    std::wstring result;
    std::size_t position = 0;
    while (position < source.size()) {
        if (source[position] == L'&') {
            const std::wstring_view ahead = source.substr(position + 1, kLongestEntity);
            const std::size_t length = ahead.find(L';');
            if (length != std::wstring_view::npos) {
                const auto codePoint = Entity(Utf8::ToNarrow(ahead.substr(0, length)));
                if (codePoint) {
                    Utf8::AppendCodePoint(result, *codePoint);
                    position += length + 2;
                    continue;
                }
            }
        }
        result += source[position++];
    }
    return result;
}

} // namespace BaseHlpr
