#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevint::service {

/// Names and values in the order in which they were sent.
class FormFields {
public:
    void Add(std::string name, std::string value);

    /// The value of the one field of that name; nothing when it is absent or doubled.
    std::optional<std::string> Single(std::string_view name) const;

    std::size_t Size() const { return m_fields.size(); }

private:
    std::vector<std::pair<std::string, std::string>> m_fields;
};

/// Reads the query part of an address. Throws ServiceError when an escape is malformed.
FormFields ReadQuery(std::string_view query);

/// Reads an application/x-www-form-urlencoded body, strictly: every piece has a "=", every
/// character that the encoding would escape is escaped, every escape is well-formed. One "&" may
/// stand at the end. Throws ServiceError otherwise.
FormFields ReadForm(std::string_view contentType, std::string_view body);

} // namespace brevint::service
