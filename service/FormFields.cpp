#include "service/FormFields.h"

#include "base/Hex.h"
#include "service/ServiceError.h"
#include "service/Text.h"

#include <algorithm>

namespace brevint::service {

namespace {

std::string Decode(std::string_view text) {
    std::string blanks(text);
    std::ranges::replace(blanks, '+', ' ');
    std::optional<std::string> decoded = base::PercentDecode(blanks);
    if (!decoded) {
        throw BadRequest("A percent escape is malformed.");
    }
    return *std::move(decoded);
}

bool IsFormCharacter(char c) {
    return base::IsLetterOrDigit(c) || std::string_view("*-._+%").find(c) != std::string_view::npos;
}

} // namespace

void FormFields::Add(std::string name, std::string value) {
    m_fields.emplace_back(std::move(name), std::move(value));
}

std::optional<std::string> FormFields::Single(std::string_view name) const {
    const std::string* value = nullptr;
    for (const auto& [key, text] : m_fields) {
        if (key != name) {
            continue;
        }
        if (value) {
            return std::nullopt;
        }
        value = &text;
    }
    return value ? std::optional(*value) : std::nullopt;
}

FormFields ReadQuery(std::string_view query) {
    FormFields fields;
    for (std::string_view piece : Split(query, '&')) {
        const auto equals = std::min(piece.find('='), piece.size());
        if (!piece.empty()) {
            fields.Add(Decode(piece.substr(0, equals)),
                       equals < piece.size() ? Decode(piece.substr(equals + 1)) : std::string());
        }
    }
    return fields;
}

FormFields ReadForm(std::string_view contentType, std::string_view body) {
    const std::string_view mediaType = base::Trim(contentType.substr(0, contentType.find(';')));
    if (!base::EqualsIgnoreCase(mediaType, "application/x-www-form-urlencoded")) {
        throw ServiceError(415, "The body must be application/x-www-form-urlencoded.");
    }
    if (body.ends_with('&')) {
        body.remove_suffix(1);
    }
    FormFields fields;
    for (std::string_view piece : Split(body, '&')) {
        const auto equals = piece.find('=');
        if (equals == std::string_view::npos) {
            throw BadRequest("A form field lacks its \"=\".");
        }
        const std::string_view name = piece.substr(0, equals);
        const std::string_view value = piece.substr(equals + 1);
        if (!std::ranges::all_of(name, IsFormCharacter) ||
            !std::ranges::all_of(value, IsFormCharacter)) {
            throw BadRequest("A form field holds a character that must be escaped.");
        }
        fields.Add(Decode(name), Decode(value));
    }
    return fields;
}

} // namespace brevint::service
