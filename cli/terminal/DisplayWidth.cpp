#include "cli/terminal/DisplayWidth.h"

#include <utf8.h>
#include <utf8proc.h>

namespace brevint::cli {

namespace {

/// As wcwidth has it, by which terminals go. utf8proc 2.8 differs in two things: it counts no
/// column for marks that stand beside their letter, and one for the vowels and ends of Korean
/// syllables, which are drawn into the column of the beginning.
std::size_t Columns(char32_t c) {
    const auto* const character = utf8proc_get_property(static_cast<utf8proc_int32_t>(c));
    if (character->category == UTF8PROC_CATEGORY_MC) {
        return 1;
    }
    const bool continuesSyllable = character->boundclass == UTF8PROC_BOUNDCLASS_V ||
                                   character->boundclass == UTF8PROC_BOUNDCLASS_T;
    return continuesSyllable ? 0 : character->charwidth;
}

} // namespace

std::size_t DisplayWidth(std::string_view text) {
    std::size_t columns = 0;
    for (auto next = text.begin(); next != text.end();) {
        columns += Columns(utf8::next(next, text.end()));
    }
    return columns;
}

std::string ShortenFront(std::string_view text, std::size_t columns) {
    std::size_t width = DisplayWidth(text);
    if (width <= columns) {
        return std::string(text);
    }
    auto rest = text.begin();
    while (rest != text.end() && width + 1 > columns) {
        width -= Columns(utf8::next(rest, text.end()));
    }
    return columns == 0 ? std::string() : "\u2026" + std::string(rest, text.end());
}

} // namespace brevint::cli
