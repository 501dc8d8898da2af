#include "platform/linux/cookies/CookieDate.h"

#include "base/Ascii.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>

namespace platform {

namespace {

using std::string_view;

constexpr bool IsDelimiter(char c) {
    return c == '\t' || (c >= ' ' && c < '0') || (c > ':' && c < 'A') || (c > 'Z' && c < 'a') ||
           (c > 'z' && c < '\x7F');
}

// Takes a number of so many digits off the token; no digit may follow it.
std::optional<int> ReadNumber(string_view& token, std::size_t fewest, std::size_t most) {
    const auto digits = static_cast<std::size_t>(
        std::ranges::find_if_not(token, base::IsDigit<char>) - token.begin());
    if (digits < fewest || digits > most) {
        return std::nullopt;
    }
    int number = 0;
    std::from_chars(token.data(), token.data() + digits, number);
    token.remove_prefix(digits);
    return number;
}

std::optional<std::chrono::seconds> ParseTime(string_view token) {
    std::array<int, 3> fields{};
    for (int& field : fields) {
        if (&field != fields.data()) {
            if (!token.starts_with(':')) {
                return std::nullopt;
            }
            token.remove_prefix(1);
        }
        const auto number = ReadNumber(token, 1, 2);
        if (!number) {
            return std::nullopt;
        }
        field = *number;
    }
    const auto [hour, minute, second] = fields;
    if (hour > 23 || minute > 59 || second > 59) {
        return std::chrono::hours(24); // a time of day, but none that there is
    }
    return std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
}

std::optional<std::chrono::month> ParseMonth(string_view token) {
    constexpr string_view kMonths = "janfebmaraprmayjunjulaugsepoctnovdec";
    for (unsigned month = 0; token.size() >= 3 && month < 12; ++month) {
        if (base::EqualsIgnoreCase(token.substr(0, 3), kMonths.substr(month * std::size_t{3}, 3))) {
            return std::chrono::month(month + 1);
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::int64_t> ParseCookieDate(string_view text) {
    std::optional<std::chrono::seconds> time;
    std::optional<int> day;
    std::optional<std::chrono::month> month;
    std::optional<int> year;
    // Each token is the first of these that it can be and that is not known yet.
    const auto understand = [&](string_view token) {
        if (!time && (time = ParseTime(token))) {
            return;
        }
        string_view rest = token;
        if (!day && (day = ReadNumber(rest, 1, 2))) {
            return;
        }
        if (!month && (month = ParseMonth(token))) {
            return;
        }
        if (!year) {
            year = ReadNumber(token, 2, 4);
        }
    };
    while (!text.empty()) {
        const auto end = std::ranges::find_if(text, IsDelimiter);
        understand(text.substr(0, static_cast<std::size_t>(end - text.begin())));
        text.remove_prefix(std::min(static_cast<std::size_t>(end - text.begin()) + 1, text.size()));
    }
    if (!time || *time >= std::chrono::hours(24) || !day || !month || !year) {
        return std::nullopt;
    }
    if (*year < 100) {
        *year += *year < 70 ? 2000 : 1900;
    }
    const std::chrono::year_month_day date{std::chrono::year(*year), *month,
                                           std::chrono::day(static_cast<unsigned>(*day))};
    if (!date.ok() || *year < 1601) {
        return std::nullopt;
    }
    const std::chrono::sys_seconds moment = std::chrono::sys_days(date) + *time;
    return moment.time_since_epoch().count();
}

} // namespace platform
