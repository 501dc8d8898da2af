#include "support/Text.h"

#include <string_view>

namespace BaseHlpr {
namespace {

/// Upper-case letters first, first + step, ... last; lower case is `offset` further on.
struct CaseRange {
    char32_t first;
    char32_t last;
    char32_t step;
    int offset;
};

constexpr CaseRange kUpperCase[] = {
    {0x0041, 0x005A, 1, 32},                           // Basic Latin
    {0x00C0, 0x00D6, 1, 32},                           // Latin-1
    {0x00D8, 0x00DE, 1, 32},   {0x0100, 0x012E, 2, 1}, // Latin Extended-A
    {0x0130, 0x0130, 1, -199},                         // dotted I
    {0x0132, 0x0136, 2, 1},    {0x0139, 0x0147, 2, 1},  {0x014A, 0x0176, 2, 1},
    {0x0178, 0x0178, 1, -121}, {0x0179, 0x017D, 2, 1},  {0x01CD, 0x01DB, 2, 1}, // Latin Extended-B
    {0x01DE, 0x01EE, 2, 1},    {0x01F8, 0x021E, 2, 1},  {0x0222, 0x0232, 2, 1},
    {0x0386, 0x0386, 1, 38}, // Greek
    {0x0388, 0x038A, 1, 37},   {0x038C, 0x038C, 1, 64}, {0x038E, 0x038F, 1, 63},
    {0x0391, 0x03A1, 1, 32},   {0x03A3, 0x03AB, 1, 32}, {0x0400, 0x040F, 1, 80}, // Cyrillic
    {0x0410, 0x042F, 1, 32},   {0x0460, 0x0480, 2, 1},  {0x048A, 0x04BE, 2, 1},
    {0x04C1, 0x04CD, 2, 1},    {0x04D0, 0x052E, 2, 1},  {0x0531, 0x0556, 1, 48}, // Armenian
    {0x1E00, 0x1E94, 2, 1},                             // Latin Extended Additional
    {0x1EA0, 0x1EFE, 2, 1},    {0xFF21, 0xFF3A, 1, 32}, // full-width Latin
};

wchar_t LowerCase(wchar_t character) {
    const auto value = static_cast<char32_t>(character);
    for (const CaseRange& range : kUpperCase) {
        if (value < range.first) {
            break;
        }
        if (value <= range.last && (value - range.first) % range.step == 0) {
            return static_cast<wchar_t>(static_cast<int>(value) + range.offset);
        }
    }
    return character;
}

std::wstring_view View(const wchar_t* text) {
    return text ? std::wstring_view(text) : std::wstring_view();
}

} // namespace

std::wstring StringReplace(const wchar_t* text, const wchar_t* what, const wchar_t* with) {
    const std::wstring_view source = View(text);
    const std::wstring_view search = View(what);
    std::wstring result;
    std::size_t position = 0;
    while (!search.empty()) {
        const std::size_t hit = source.find(search, position);
        if (hit == std::wstring_view::npos) {
            break;
        }
        result.append(source, position, hit - position).append(View(with));
        position = hit + search.size();
    }
    return result.append(source, position);
}

void StringReplace(std::wstring& text, const wchar_t* what, const wchar_t* with) {
    text = StringReplace(text.c_str(), what, with);
}

std::wstring ToLower(const wchar_t* text) {
    std::wstring result(View(text));
    for (wchar_t& character : result) {
        character = LowerCase(character);
    }
    return result;
}

std::wstring Trim(const wchar_t* text) {
    constexpr std::wstring_view kWhiteSpace = L" \t\r\n\v\f";
    const std::wstring_view source = View(text);
    const std::size_t first = source.find_first_not_of(kWhiteSpace);
    if (first == std::wstring_view::npos) {
        return {};
    }
    const std::size_t last = source.find_last_not_of(kWhiteSpace);
    return std::wstring(source.substr(first, last - first + 1));
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
