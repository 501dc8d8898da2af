#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

/// Reads a time in the form of ISO 8601, "2026-03-01T12:30:00Z", as seconds since 1970, UTC. The
/// time of day may be missing, a blank may stand for the "T", fractions of a second are left out,
/// and a time without a zone is UTC's. Nothing for any other text.
std::optional<std::int64_t> ParseIsoTime(std::string_view text);
