#pragma once

/// @file
/// What the other headers here share. Nothing in it is meant for applications.

#include "brevint/c.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <system_error>

namespace brevint::detail {

/// Frees what a function of brevint/c.h has made.
struct Free {
    void operator()(brevint_cancellation* object) const noexcept {
        brevint_cancellation_free(object);
    }
    void operator()(brevint_client* object) const noexcept { brevint_client_free(object); }
    void operator()(brevint_error* object) const noexcept { brevint_error_free(object); }
    void operator()(brevint_identity* object) const noexcept { brevint_identity_free(object); }
    void operator()(brevint_items* object) const noexcept { brevint_items_free(object); }
    void operator()(brevint_job* object) const noexcept { brevint_job_free(object); }
    void operator()(brevint_queue* object) const noexcept { brevint_queue_free(object); }
    void operator()(brevint_templates* object) const noexcept { brevint_templates_free(object); }
    void operator()(brevint_versions* object) const noexcept { brevint_versions_free(object); }
    void operator()(char* object) const noexcept { brevint_text_free(object); }
};

template <class Object>
using Owned = std::unique_ptr<Object, Free>;

/// A structure with its size and defaults.
template <class Struct>
Struct Initial(void (*init)(Struct*, std::size_t)) noexcept {
    Struct result = {};
    init(&result, sizeof result);
    return result;
}

inline std::string Text(const char* text) {
    return text ? text : "";
}

/// A text as the library takes it. One with a zero in it would arrive cut.
inline const char* Terminated(const std::string& text) {
    if (text.find('\0') != std::string::npos) {
        throw std::invalid_argument("brevint: a text contains a zero");
    }
    return text.c_str();
}

/// On Linux the bytes of the name as they are, on Windows its UTF-8, whatever the locale. A name
/// that is no Unicode there becomes the empty one, which no file has.
inline std::string Utf8(const std::filesystem::path& path) try {
    const std::u8string text = path.u8string();
    return {text.begin(), text.end()};
} catch (const std::system_error&) {
    return {};
}

inline std::filesystem::path Path(const char* utf8) {
    const std::string text = Text(utf8);
    return std::u8string(text.begin(), text.end());
}

inline std::optional<std::uint64_t> Size(std::uint64_t size) noexcept {
    return size == BREVINT_UNKNOWN_SIZE ? std::nullopt : std::optional(size);
}

inline std::optional<std::chrono::seconds> Duration(std::uint64_t seconds) noexcept {
    return seconds == BREVINT_UNKNOWN_SIZE
               ? std::nullopt
               : std::optional(std::chrono::seconds(static_cast<std::int64_t>(seconds)));
}

inline std::optional<std::chrono::sys_seconds> Time(std::int64_t seconds) noexcept {
    return seconds == BREVINT_UNKNOWN_TIME
               ? std::nullopt
               : std::optional(std::chrono::sys_seconds(std::chrono::seconds(seconds)));
}

} // namespace brevint::detail
