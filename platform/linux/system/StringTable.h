#pragma once

#include <span>

/// A string resource: what a row of a STRINGTABLE is on Windows.
struct StringResource {
    unsigned id;
    const wchar_t* text;
};

/// The module that this layer is linked into defines these: its name, and its string resources.
const char* ModuleName() noexcept;
std::span<const StringResource> ModuleStringTable() noexcept;
