#include "support/IsoTime.h"

#include "base/Ascii.h"

#include <charconv>
#include <chrono>

namespace {

/// Takes texts off the front of a time.
class Reader {
public:
    explicit Reader(std::string_view text) : m_rest(text) {}

    bool IsAtEnd() const { return m_rest.empty(); }

    /// Takes one of these characters; 0 when none of them is next.
    char Take(std::string_view characters) {
        const char next = m_rest.empty() ? '\0' : m_rest.front();
        if (next == '\0' || characters.find(next) == std::string_view::npos) {
            return '\0';
        }
        m_rest.remove_prefix(1);
        return next;
    }

    /// Takes a number of exactly so many digits that is no larger than `most`.
    bool Number(std::size_t digits, int most, int& number) {
        const std::string_view text = m_rest.substr(0, digits);
        const char* const end = text.data() + text.size();
        if (text.size() != digits || !base::IsDigit(text.front())) {
            return false;
        }
        const auto [stop, error] = std::from_chars(text.data(), end, number);
        m_rest.remove_prefix(digits);
        return error == std::errc() && stop == end && number <= most;
    }

    void PassDigits() {
        while (!m_rest.empty() && base::IsDigit(m_rest.front())) {
            m_rest.remove_prefix(1);
        }
    }

private:
    std::string_view m_rest;
};

constexpr int kLastHour = 23;
constexpr int kLastMinute = 59;
constexpr int kLeapSecond = 60;

/// "12:30", "12:30:15", "12:30:15.123"
bool ReadTimeOfDay(Reader& reader, std::chrono::seconds& time) {
    int hour = 0;
    int minute = 0;
    int second = 0;
    if (!reader.Number(2, kLastHour, hour) || !reader.Take(":") ||
        !reader.Number(2, kLastMinute, minute)) {
        return false;
    }
    if (reader.Take(":")) {
        if (!reader.Number(2, kLeapSecond, second)) {
            return false;
        }
        if (reader.Take(".,")) {
            reader.PassDigits();
        }
    }
    time = std::chrono::hours(hour) + std::chrono::minutes(minute) + std::chrono::seconds(second);
    return true;
}

/// "Z", "+01:00", "-0530", "+01", or nothing
bool ReadZone(Reader& reader, std::chrono::seconds& offset) {
    if (reader.Take("Zz") || reader.IsAtEnd()) {
        return true;
    }
    const char sign = reader.Take("+-");
    int hours = 0;
    int minutes = 0;
    if (!sign || !reader.Number(2, kLastHour, hours)) {
        return false;
    }
    if (!reader.IsAtEnd()) {
        reader.Take(":");
        if (!reader.Number(2, kLastMinute, minutes)) {
            return false;
        }
    }
    offset = std::chrono::hours(hours) + std::chrono::minutes(minutes);
    offset = sign == '-' ? -offset : offset;
    return true;
}

} // namespace

std::optional<std::int64_t> ParseIsoTime(std::string_view text) {
    using namespace std::chrono;
    constexpr int kAny = 9999;
    Reader reader(text);
    int year = 0;
    int month = 0;
    int day = 0;
    if (!reader.Number(4, kAny, year) || !reader.Take("-") || !reader.Number(2, kAny, month) ||
        !reader.Take("-") || !reader.Number(2, kAny, day)) {
        return std::nullopt;
    }
    const year_month_day date(std::chrono::year(year),
                              std::chrono::month(static_cast<unsigned>(month)),
                              std::chrono::day(static_cast<unsigned>(day)));
    seconds time{};
    seconds offset{};
    const bool hasTime = reader.Take("Tt ") != '\0';
    if (!date.ok() || (hasTime && (!ReadTimeOfDay(reader, time) || !ReadZone(reader, offset))) ||
        !reader.IsAtEnd()) {
        return std::nullopt;
    }
    return (sys_days(date).time_since_epoch() + time - offset) / seconds(1);
}
