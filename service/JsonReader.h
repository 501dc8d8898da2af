#pragma once

#include <nlohmann/json_fwd.hpp>

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::service {

/// The JSON object of a request's body, read strictly: well-formed UTF-8 JSON that holds exactly
/// the expected members. Every refusal is a ServiceError.
class JsonReader {
public:
    /// A missing Content-Type counts as JSON; another one is refused.
    JsonReader(std::string_view contentType, std::string_view body,
               std::initializer_list<std::string_view> members);

    std::string String(std::string_view member) const;
    bool Boolean(std::string_view member) const;
    int Integer(std::string_view member) const;
    std::string Guid(std::string_view member) const;
    std::vector<std::string> Guids(std::string_view member) const;

private:
    std::shared_ptr<const nlohmann::json> m_object;
};

} // namespace brevint::service
