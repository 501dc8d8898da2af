#pragma once

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <utility>

/// What a fuzzer does with an input. Each source of this folder has its own, and is a program.
void Fuzz(std::string_view input);

/// Ends the run when a property that must hold for every input does not.
inline void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

/// Takes the first line, without its end, off the text.
inline std::string_view TakeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    return std::exchange(text, text.substr(std::min(end + 1, text.size()))).substr(0, end);
}
