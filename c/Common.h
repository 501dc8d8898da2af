#pragma once

// What the sources of brevint/c.h share.

#include "brevint/c.h"
#include "calls/BoundedCall.h"
#include "support/Utf8.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

namespace c {

/// Null stands for an empty text.
inline std::string_view View(const char* text) {
    return text ? std::string_view(text) : std::string_view();
}

inline std::wstring Wide(const char* text) {
    return Utf8::ToWide(View(text));
}

/// On Linux the bytes as they are; on Windows what is malformed becomes what no file has.
inline std::filesystem::path Path(const char* text) {
    if constexpr (std::is_same_v<std::filesystem::path::value_type, wchar_t>) {
        return Utf8::ToWide(View(text));
    } else {
        return std::string(View(text));
    }
}

inline std::string Narrow(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

/// A structure of this version of the library, without anything in it.
template <class Struct>
Struct Blank() {
    Struct blank = {};
    blank.size = sizeof(Struct);
    return blank;
}

/// Gives a structure of the caller's its size, which may be another version's, and the defaults.
template <class Struct>
void Initialise(const Struct& defaults, Struct* target, std::size_t size) {
    if (size >= sizeof(size)) {
        std::memset(target, 0, size);
        std::memcpy(target, &defaults, std::min(size, sizeof(Struct)));
        std::memcpy(target, &size, sizeof(size)); // its first member
    }
}

/// A structure of the caller's, whose size says how much of it there is: members that it lacks have
/// their defaults.
template <class Struct>
Struct Complete(const Struct* given, void (*init)(Struct*, std::size_t)) {
    Struct complete = {};
    init(&complete, sizeof complete);
    if (given) {
        std::memcpy(&complete, given, std::min(given->size, sizeof(Struct)));
        complete.size = sizeof(Struct);
    }
    return complete;
}

/// The other way round: as much as the caller's structure has room for.
template <class Struct>
void Store(const Struct& filled, Struct* target) {
    const std::size_t size = std::min(target->size, sizeof(Struct));
    if (size > sizeof(size)) {
        std::memcpy(&target->size + 1, &filled.size + 1, size - sizeof(size));
    }
}

/// What a user can do about a code; empty for a code that is none.
const char* Hint(double code);

/// Stores the failure for the caller of a function, who may not want it. Returns what the function
/// returns.
std::int32_t Report(const calls::Failure& failure, brevint_error** error);

/// A copy for brevint_text_free.
char* MakeText(std::string_view text);

/// Runs the body of a function of the interface; lack of memory ends in an error.
template <class Body>
std::int32_t Guarded(brevint_error** error, Body body) noexcept {
    try {
        return Report(body(), error);
    } catch (const std::exception&) {
        return Report(calls::OutOfMemory(), error);
    }
}

} // namespace c

struct brevint_client {
    std::shared_ptr<const calls::Service> service;
    bool insecureHttp = false;
};
