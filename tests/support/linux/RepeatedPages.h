#pragma once

#include <cstddef>

namespace brevint::test {

/// Fills a range of addresses, which begins with a page, with a character in little memory: its
/// pages are the same few again and again.
void FillWithRepeatedPages(char* start, std::size_t size, char content);

} // namespace brevint::test
