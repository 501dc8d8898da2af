#pragma once

#include "service/ByteRange.h"

#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevint::service {

class Blob;

using HttpHeaders = std::vector<std::pair<std::string, std::string>>;

/// A request as it came in: nothing is decoded yet.
struct HttpRequest {
    std::string method = {};
    std::string path = {};  ///< Begins with "/"; percent escapes as sent.
    std::string query = {}; ///< What follows "?", without it; percent escapes as sent.
    HttpHeaders headers = {};
    std::string body = {};

    /// The value of a header, "" when it is absent. A header that was sent several times gives its
    /// values joined by ", ", so that a doubled single-valued header matches nothing.
    std::string Header(std::string_view name) const;

    std::optional<std::string> Cookie(std::string_view name) const;
};

struct HttpReply {
    int status = 200;
    HttpHeaders headers = {};
    std::string body = {};
    std::shared_ptr<const Blob> file = {}; ///< When set it is sent in place of `body`.
    std::optional<ByteRange> range =
        {};               ///< The part of the file that is sent; all of it unless set.
    bool chunked = false; ///< The file is sent in chunks, its length not announced.
};

HttpReply HtmlReply(int status, std::string page);
HttpReply XmlReply(std::string document);
HttpReply RedirectReply(std::string location);

/// The document in which every failed call is told: /ResponseData/Message.
HttpReply ErrorReply(int status, std::string_view message);

/// The same for what was thrown: a ServiceError names its status, anything else has status 500.
HttpReply ErrorReply(const std::exception& failure);

} // namespace brevint::service
