#pragma once

#include <cstddef>
#include <string_view>

namespace brevint::test {

/// Fills a range of addresses with the same text again and again, in the memory of one text. The
/// range begins with a page, and the text is whole pages.
void FillWithRepeatedPages(char* start, std::size_t size, std::string_view text);

} // namespace brevint::test
