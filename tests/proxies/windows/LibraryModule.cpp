#include "tests/support/Environment.h"

namespace {

// The library finds its texts in the module of its name. Programs like this one, which hold the
// library's code themselves, have to load it.
[[maybe_unused]] void* const kModule = brevint::test::LoadModule("Brevint.dll");

} // namespace
