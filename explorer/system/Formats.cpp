#include "explorer/system/Formats.h"

#include <algorithm>

#include <windows.h>

#include <shlwapi.h>

namespace brevint::explorer {

namespace {

constexpr UINT kBufferSize = 128;

/// The local time; nothing for one that Windows cannot say.
std::optional<SYSTEMTIME> LocalTime(std::chrono::sys_seconds time) {
    constexpr std::int64_t kFrom1601 = 11'644'473'600; // seconds until 1970
    constexpr std::int64_t kLatest = 900'000'000'000;
    const std::int64_t seconds = time.time_since_epoch().count() + kFrom1601;
    if (seconds < 0 || seconds > kLatest) {
        return std::nullopt;
    }
    const ULARGE_INTEGER ticks = {.QuadPart = static_cast<ULONGLONG>(seconds) * 10'000'000};
    const FILETIME file = {ticks.LowPart, ticks.HighPart};
    SYSTEMTIME universal;
    SYSTEMTIME local;
    if (!FileTimeToSystemTime(&file, &universal) ||
        !SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local)) {
        return std::nullopt;
    }
    return local;
}

} // namespace

std::wstring SizeText(std::optional<std::uint64_t> bytes) {
    if (!bytes) {
        return {};
    }
    wchar_t buffer[kBufferSize] = L"";
    StrFormatByteSizeW(static_cast<LONGLONG>(std::min<std::uint64_t>(*bytes, INT64_MAX)), buffer,
                       kBufferSize);
    return buffer;
}

std::wstring TimeText(std::optional<std::chrono::sys_seconds> time) {
    const std::optional<SYSTEMTIME> local = time ? LocalTime(*time) : std::nullopt;
    if (!local) {
        return {};
    }
    wchar_t date[kBufferSize] = L"";
    wchar_t clock[kBufferSize] = L"";
    GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, &*local, nullptr, date, kBufferSize,
                    nullptr);
    GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, TIME_NOSECONDS, &*local, nullptr, clock, kBufferSize);
    return std::wstring(date) + L' ' + clock;
}

std::wstring DurationText(std::optional<std::chrono::seconds> duration) {
    if (!duration) {
        return {};
    }
    const auto milliseconds =
        std::clamp<std::int64_t>(duration->count(), 0, MAXINT32 / 1000) * 1000;
    wchar_t buffer[kBufferSize] = L"";
    StrFromTimeIntervalW(buffer, kBufferSize, static_cast<DWORD>(milliseconds), 2);
    std::wstring text = buffer;
    return text.erase(0, text.find_first_not_of(L' '));
}

std::wstring NumberText(std::uint64_t number) {
    wchar_t point[] = L"."; // there is nothing after it
    wchar_t separator[8] = L",";
    GetLocaleInfoEx(LOCALE_NAME_USER_DEFAULT, LOCALE_STHOUSAND, separator, 8);
    NUMBERFMTW format = {};
    format.LeadingZero = 1; // or there would be no zero at all
    format.Grouping = 3;
    format.lpDecimalSep = point;
    format.lpThousandSep = separator;
    wchar_t buffer[kBufferSize] = L"";
    GetNumberFormatEx(LOCALE_NAME_USER_DEFAULT, 0, std::to_wstring(number).c_str(), &format, buffer,
                      kBufferSize);
    return buffer;
}

} // namespace brevint::explorer
