#include "platform/linux/http/HeaderList.h"

#include "base/Ascii.h"
#include "support/Utf8.h"

#include <algorithm>
#include <charconv>

namespace platform {

bool IsFieldValue(std::string_view text) {
    return std::ranges::all_of(text, [](char c) {
        return c == '\t' || !base::HasControls({&c, 1});
    });
}

void HeaderList::Set(std::string_view name, std::string_view value) {
    Header header{std::string(name), std::string(value)};
    Remove(name);
    m_headers.push_back(std::move(header));
}

void HeaderList::Remove(std::string_view name) {
    std::erase_if(m_headers, [&](const Header& h) { return base::EqualsIgnoreCase(h.name, name); });
}

const Header* HeaderList::Find(std::string_view name) const {
    const auto found = std::ranges::find_if(
        m_headers, [&](const Header& h) { return base::EqualsIgnoreCase(h.name, name); });
    return found == m_headers.end() ? nullptr : &*found;
}

void HeaderList::SetBlock(std::wstring_view block) {
    const std::string text = Utf8::ToNarrow(block);
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t lineEnd = std::min(rest.find_first_of("\r\n"), rest.size());
        const std::string_view line = base::Trim(rest.substr(0, lineEnd));
        rest.remove_prefix(std::min(lineEnd + 1, rest.size()));
        if (line.empty()) {
            continue;
        }
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            return;
        }
        const std::string_view name = base::Trim(line.substr(0, colon));
        const std::string_view value = base::Trim(line.substr(colon + 1));
        if (base::EqualsIgnoreCase(name, "Content-Length")) {
            std::from_chars(value.data(), value.data() + value.size(), m_announcedLength);
        }
        if (!name.empty() && !base::HasControls(name) && IsFieldValue(value) &&
            !base::EqualsIgnoreCase(name, "Content-Length") &&
            !base::EqualsIgnoreCase(name, "Transfer-Encoding")) {
            Set(name, value);
        }
    }
}

} // namespace platform
