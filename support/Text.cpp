#include "support/Text.h"

#include "base/Ascii.h"
#include "support/Utf8.h"

#include <utf8proc.h>

namespace BaseHlpr {
namespace {

std::wstring_view View(const wchar_t* text) {
    return text ? std::wstring_view(text) : std::wstring_view();
}

std::wstring Replaced(std::wstring_view text, std::wstring_view what, std::wstring_view with) {
    std::wstring result;
    std::size_t position = 0;
    while (!what.empty()) {
        const std::size_t hit = text.find(what, position);
        if (hit == std::wstring_view::npos) {
            break;
        }
        result.append(text, position, hit - position).append(with);
        position = hit + what.size();
    }
    return result.append(text, position);
}

} // namespace

std::wstring StringReplace(const wchar_t* text, const wchar_t* what, const wchar_t* with) {
    return Replaced(View(text), View(what), View(with));
}

void StringReplace(std::wstring& text, const wchar_t* what, const wchar_t* with) {
    text = Replaced(text, View(what), View(with));
}

std::wstring ToLower(std::wstring_view text) {
    std::wstring lower;
    lower.reserve(text.size());
    while (!text.empty()) {
        const std::wstring_view rest = text;
        const char32_t character = Utf8::NextCodePoint(text);
        const auto mapped =
            static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(character)));
        if (mapped == character) {
            lower.append(rest, 0, rest.size() - text.size());
        } else {
            Utf8::AppendCodePoint(lower, mapped);
        }
    }
    return lower;
}

std::wstring ToLower(const wchar_t* text) {
    return ToLower(View(text));
}

std::wstring Trim(const wchar_t* text) {
    return std::wstring(base::Trim<wchar_t>(View(text), L" \t\r\n\v\f"));
}

void Split(const wchar_t* text, std::vector<std::wstring>& out, const wchar_t* separator,
           bool dropEmpty) {
    const std::wstring_view source = View(text);
    const std::wstring_view mark = View(separator);
    std::size_t position = 0;
    for (;;) {
        const std::size_t hit =
            mark.empty() ? std::wstring_view::npos : source.find(mark, position);
        const std::wstring_view piece = source.substr(position, hit - position);
        if (!piece.empty() || !dropEmpty) {
            out.emplace_back(piece);
        }
        if (hit == std::wstring_view::npos) {
            return;
        }
        position = hit + mark.size();
    }
}

} // namespace BaseHlpr
