#include "transfers/HttpFields.h"

#include "base/Ascii.h"
#include "support/IsoTime.h"

#include <charconv>

namespace transfers {

namespace {

/// Takes a text off the front of another.
bool Take(std::string_view& text, std::string_view front) {
    const bool isThere = text.starts_with(front);
    text.remove_prefix(isThere ? front.size() : 0);
    return isThere;
}

bool TakeNumber(std::string_view& text, std::uint64_t& number) {
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    return error == std::errc();
}

} // namespace

std::optional<ContentRange> ParseContentRange(std::string_view text) {
    ContentRange range;
    if (!Take(text, "bytes ")) {
        return std::nullopt;
    }
    const bool hasRange = !Take(text, "*");
    if (hasRange && (!TakeNumber(text, range.first) || !Take(text, "-") ||
                     !TakeNumber(text, range.last) || range.first > range.last)) {
        return std::nullopt;
    }
    if (!Take(text, "/")) {
        return std::nullopt;
    }
    const bool hasTotal = !Take(text, "*");
    if (hasTotal && (!TakeNumber(text, range.total) || (hasRange && range.last >= range.total))) {
        return std::nullopt;
    }
    return text.empty() && (hasRange || hasTotal) ? std::optional(range) : std::nullopt;
}

std::optional<std::int64_t> ParseHttpDate(std::string_view text) {
    constexpr std::string_view kForm = "Sun, 06 Nov 1994 08:49:37 GMT";
    constexpr std::string_view kMonths = "JanFebMarAprMayJunJulAugSepOctNovDec";
    if (text.size() != kForm.size() || !text.ends_with(" GMT")) {
        return std::nullopt;
    }
    const std::size_t month = kMonths.find(text.substr(8, 3));
    if (month == std::string_view::npos || month % 3 != 0) {
        return std::nullopt;
    }
    std::string iso(text.substr(12, 4));
    iso.append(month < 27 ? "-0" : "-").append(std::to_string(month / 3 + 1)).append("-");
    iso.append(text.substr(5, 2)).append("T").append(text.substr(17, 8)).append("Z");
    return ParseIsoTime(iso);
}

} // namespace transfers
