#include "service/Text.h"

#include "base/Hex.h"

#include <charconv>
#include <ctime>
#include <iomanip>
#include <locale>
#include <random>
#include <sstream>
#include <stdexcept>

namespace brevint::service {

namespace {

// In the "C" locale, whose English names of days and months protocols have.
std::string Format(const char* form, std::chrono::sys_seconds time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    std::tm parts{};
    parts.tm_year = static_cast<int>(date.year()) - 1900;
    parts.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    parts.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    parts.tm_wday = static_cast<int>(std::chrono::weekday(day).c_encoding());
    parts.tm_hour = static_cast<int>(clock.hours().count());
    parts.tm_min = static_cast<int>(clock.minutes().count());
    parts.tm_sec = static_cast<int>(clock.seconds().count());
    std::ostringstream text;
    text.imbue(std::locale::classic());
    text << std::put_time(&parts, form);
    return text.str();
}

} // namespace

std::vector<std::string_view> Split(std::string_view text, char separator) {
    std::vector<std::string_view> pieces;
    for (;;) {
        const auto end = text.find(separator);
        pieces.push_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            return pieces;
        }
        text.remove_prefix(end + 1);
    }
}

std::string HtmlEscape(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (char c : text) {
        switch (c) {
        case '&': result += "&amp;"; break;
        case '<': result += "&lt;"; break;
        case '>': result += "&gt;"; break;
        case '"': result += "&quot;"; break;
        default: result += c;
        }
    }
    return result;
}

std::string RandomToken() {
    std::random_device source;
    std::string token;
    while (token.size() < 64) {
        unsigned bits = source();
        for (int digit = 0; digit < 8; ++digit, bits >>= 4) {
            token += base::kHexDigits[bits & 15];
        }
    }
    return token;
}

std::string FormatUtc(std::chrono::sys_seconds time) {
    return Format("%Y-%m-%dT%H:%M:%SZ", time);
}

std::string FormatHttpDate(std::chrono::sys_seconds time) {
    return Format("%a, %d %b %Y %H:%M:%S GMT", time);
}

std::uint64_t ReadNumber(std::string_view text, std::uint64_t largest) {
    std::uint64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (stop != end || error != std::errc() || number > largest) {
        throw std::invalid_argument("expected a number up to " + std::to_string(largest) +
                                    ", not \"" + std::string(text) + "\"");
    }
    return number;
}

} // namespace brevint::service
