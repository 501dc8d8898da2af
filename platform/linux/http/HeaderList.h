#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

struct Header {
    std::string name;
    std::string value;
};

/// Whether a header can have that value: tabs are the only control characters in it.
bool IsFieldValue(std::string_view text);

/// The request headers of one exchange, names compared without regard to case.
class HeaderList {
public:
    /// Replaces a header of the same name, spelling included.
    void Set(std::string_view name, std::string_view value);
    void Remove(std::string_view name);
    const Header* Find(std::string_view name) const;

    /// Sets every header of a block as HttpSendRequestW takes it: empty lines count for nothing, a
    /// line without a colon ends the block, and a line with control characters, tabs in its value
    /// apart, is left out. The layer frames messages itself, so Content-Length and
    /// Transfer-Encoding are left out too.
    void SetBlock(std::wstring_view block);
    /// What such a block announced as Content-Length; 0 when that was nothing or no number.
    std::uint64_t AnnouncedLength() const { return m_announcedLength; }

    auto begin() const { return m_headers.begin(); }
    auto end() const { return m_headers.end(); }

private:
    std::vector<Header> m_headers;
    std::uint64_t m_announcedLength = 0;
};

} // namespace platform
