#include "transfers/PartRecord.h"

#include "support/Utf8.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace transfers {

namespace {

constexpr std::string_view kKind = "brevint-part 1";

bool ParseNumber(std::string_view text, std::uint64_t& number) {
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

} // namespace

std::string PartRecord::Text() const {
    std::string text(kKind);
    for (const std::string& line : {Utf8::ToNarrow(url), Utf8::ToNarrow(validator),
                                    std::to_string(total), std::to_string(kept)}) {
        text += '\n' + line;
    }
    return text + '\n';
}

std::optional<PartRecord> PartRecord::Parse(std::string_view text) {
    std::array<std::string_view, 5> lines;
    for (std::string_view& line : lines) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        line = text.substr(0, end);
        text.remove_prefix(end + 1);
    }
    PartRecord record;
    record.url = Utf8::ToWide(lines[1]);
    record.validator = Utf8::ToWide(lines[2]);
    if (lines[0] != kKind || record.validator.empty() || !text.empty() ||
        !ParseNumber(lines[3], record.total) || !ParseNumber(lines[4], record.kept)) {
        return std::nullopt;
    }
    return record;
}

} // namespace transfers
