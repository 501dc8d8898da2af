#include "fuzz/Fuzz.h"

#include <cstddef>

// What libFuzzer calls.
extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
    Fuzz({reinterpret_cast<const char*>(data), size});
    return 0;
}
