#pragma once

#include <span>

// A string resource: what a row of a STRINGTABLE is on Windows.
struct StringResource {
    unsigned id;
    const wchar_t* text;
};

// The string resources of the module that this layer is linked into; that module defines it.
std::span<const StringResource> ModuleStringTable() noexcept;
