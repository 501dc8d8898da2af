#include "tests/support/linux/RepeatedPages.h"

#include <algorithm>
#include <cstring>
#include <new>

#include <sys/mman.h>
#include <unistd.h>

namespace brevint::test {

void FillWithRepeatedPages(char* start, std::size_t size, std::string_view text) {
    const int pages = memfd_create("pages", 0);
    bool mapped = ftruncate(pages, static_cast<off_t>(text.size())) == 0;
    for (std::size_t offset = 0; mapped && offset < size; offset += text.size()) {
        mapped = mmap(start + offset, std::min(text.size(), size - offset), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_FIXED | MAP_POPULATE, pages, 0) != MAP_FAILED;
    }
    close(pages);
    if (!mapped) {
        throw std::bad_alloc();
    }
    std::memcpy(start, text.data(), std::min(text.size(), size));
}

} // namespace brevint::test
