#include "tests/support/linux/RepeatedPages.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

namespace brevint::test {

void FillWithRepeatedPages(char* start, std::size_t size, char content) {
    constexpr std::size_t window = std::size_t{1} << 26;
    const int pages = memfd_create("pages", 0);
    bool mapped = ftruncate(pages, window) == 0;
    for (std::size_t offset = 0; mapped && offset < size; offset += window) {
        mapped = mmap(start + offset, std::min(window, size - offset), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_FIXED | MAP_POPULATE, pages, 0) != MAP_FAILED;
    }
    close(pages);
    if (!mapped) {
        throw std::bad_alloc();
    }
    std::memset(start, content, std::min(window, size));
}

} // namespace brevint::test
