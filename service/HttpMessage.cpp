#include "service/HttpMessage.h"

#include "base/Ascii.h"
#include "service/ServiceError.h"
#include "service/Text.h"
#include "service/XmlWriter.h"

namespace brevint::service {

std::string HttpRequest::Header(std::string_view name) const {
    std::string value;
    bool found = false;
    for (const auto& [key, text] : headers) {
        if (!base::EqualsIgnoreCase(key, name)) {
            continue;
        }
        if (found) {
            value += ", ";
        }
        value += text;
        found = true;
    }
    return value;
}

std::optional<std::string> HttpRequest::Cookie(std::string_view name) const {
    for (const auto& [key, text] : headers) {
        if (!base::EqualsIgnoreCase(key, "Cookie")) {
            continue;
        }
        for (std::string_view piece : Split(text, ';')) {
            piece = base::Trim(piece);
            if (piece.size() > name.size() && piece.starts_with(name) &&
                piece[name.size()] == '=') {
                return std::string(piece.substr(name.size() + 1));
            }
        }
    }
    return std::nullopt;
}

HttpReply HtmlReply(int status, std::string page) {
    return {.status = status,
            .headers = {{"Content-Type", "text/html; charset=utf-8"}},
            .body = std::move(page)};
}

HttpReply XmlReply(std::string document) {
    return {.headers = {{"Content-Type", "text/xml; charset=utf-8"}}, .body = std::move(document)};
}

HttpReply RedirectReply(std::string location) {
    return {.status = 302, .headers = {{"Location", std::move(location)}}};
}

HttpReply ErrorReply(int status, std::string_view message) {
    XmlWriter xml;
    xml.Open("ResponseData").Element("Message", message).Close();
    HttpReply reply = XmlReply(xml.Document());
    reply.status = status;
    return reply;
}

HttpReply ErrorReply(const std::exception& failure) {
    const auto* const refusal = dynamic_cast<const ServiceError*>(&failure);
    return ErrorReply(refusal ? refusal->Status() : 500, failure.what());
}

} // namespace brevint::service
