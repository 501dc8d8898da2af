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

namespace c {

/// Null stands for an empty text.
inline std::string_view View(const char* text) {
    return text ? std::string_view(text) : std::string_view();
}

inline std::wstring Wide(const char* text) {
    return Utf8::ToWide(View(text));
}

inline std::filesystem::path Path(const char* text) {
    const std::string_view view = View(text);
    return std::u8string(view.begin(), view.end());
}

inline std::string Narrow(const std::filesystem::path& path) {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
}

/// A structure of the caller's, whose size says how much of it there is: members that it lacks have
/// their defaults.
template <class Struct>
Struct Complete(const Struct* given, void (*init)(Struct*)) {
    Struct complete = {};
    init(&complete);
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
    std::memcpy(&target->size + 1, &filled.size + 1, size - sizeof(size));
}

template <class Struct>
void Clear(Struct* target) {
    std::memset(target, 0, sizeof(Struct));
    target->size = sizeof(Struct);
}

/// What a code means and what a user can do; both empty for a code that is none.
const char* Meaning(double code);
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
