#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brevint::service {

/// Writes one UTF-8 XML document. Text is escaped; characters that XML cannot carry become U+FFFD.
class XmlWriter {
public:
    XmlWriter();

    /// `name` must outlive the element: string literals are meant.
    XmlWriter& Open(std::string_view name);
    XmlWriter& Element(std::string_view name, std::string_view text);
    XmlWriter& Flag(std::string_view name, bool value);
    XmlWriter& Close();

    /// The finished document; every element must have been closed. Leaves the writer empty.
    std::string Document();

private:
    void AppendText(std::string_view text);

    std::string m_text;
    std::vector<std::string_view> m_open;
};

} // namespace brevint::service
