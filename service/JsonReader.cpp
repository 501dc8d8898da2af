#include "service/JsonReader.h"

#include "base/Ascii.h"
#include "service/Guid.h"
#include "service/ServiceError.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <limits>

namespace brevint::service {

namespace {

using nlohmann::json;

// The value as a message shows it. Arrays and objects are only named: they may be nested deeper
// than the stack would bear to print.
std::string Show(const json& value) {
    return value.is_structured() ? value.type_name() : value.dump();
}

json Parse(std::string_view body) {
    try {
        return json::parse(body);
    } catch (const json::exception&) {
        throw BadRequest("The body is not valid JSON.");
    }
}

std::string ReadGuid(const json& value, const std::string& path) {
    const auto guid =
        value.is_string() ? ParseGuid(value.get_ref<const std::string&>()) : std::nullopt;
    if (!guid) {
        throw ConversionError(Show(value), "Guid", path);
    }
    return *guid;
}

} // namespace

JsonReader::JsonReader(std::string_view contentType, std::string_view body,
                       std::initializer_list<std::string_view> members) {
    const std::string_view mediaType = base::Trim(contentType.substr(0, contentType.find(';')));
    if (!mediaType.empty() && !base::EqualsIgnoreCase(mediaType, "application/json")) {
        throw ServiceError(415, "The body must be application/json.");
    }
    json value = Parse(body);
    if (!value.is_object()) {
        throw BadRequest("The body is not a JSON object.");
    }
    for (std::string_view name : members) {
        if (!value.contains(std::string(name))) {
            throw BadRequest("Member '" + std::string(name) + "' is missing.");
        }
    }
    for (const auto& [name, ignored] : value.items()) {
        if (std::ranges::find(members, name) == members.end()) {
            throw BadRequest("Member '" + name + "' is unknown.");
        }
    }
    m_object = std::make_shared<const json>(std::move(value));
}

std::string JsonReader::String(std::string_view member) const {
    const json& value = m_object->at(std::string(member));
    if (!value.is_string()) {
        throw ConversionError(Show(value), "String", std::string(member));
    }
    return value.get<std::string>();
}

bool JsonReader::Boolean(std::string_view member) const {
    const json& value = m_object->at(std::string(member));
    if (!value.is_boolean()) {
        throw ConversionError(Show(value), "Boolean", std::string(member));
    }
    return value.get<bool>();
}

int JsonReader::Integer(std::string_view member) const {
    const json& value = m_object->at(std::string(member));
    if (!value.is_number_integer() || value > std::numeric_limits<int>::max() ||
        value < std::numeric_limits<int>::min()) {
        throw ConversionError(Show(value), "Int32", std::string(member));
    }
    return value.get<int>();
}

std::string JsonReader::Guid(std::string_view member) const {
    return ReadGuid(m_object->at(std::string(member)), std::string(member));
}

std::vector<std::string> JsonReader::Guids(std::string_view member) const {
    const json& value = m_object->at(std::string(member));
    if (!value.is_array()) {
        throw ConversionError(Show(value), "Guid[]", std::string(member));
    }
    std::vector<std::string> guids;
    for (const json& element : value) {
        guids.push_back(
            ReadGuid(element, std::string(member) + "[" + std::to_string(guids.size()) + "]"));
    }
    return guids;
}

} // namespace brevint::service
