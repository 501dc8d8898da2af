#pragma once

#include "service/HttpMessage.h"

#include <compare>
#include <string>

namespace brevint::service {

/// The two federation cookies: one session key, split.
struct SessionCookies {
    std::string fedAuth;
    std::string fedAuth1;

    auto operator<=>(const SessionCookies&) const = default;
};

/// What the request carries; "" for a cookie that is missing.
SessionCookies ReadSessionCookies(const HttpRequest& request);

/// Readable by scripts and by client libraries, which hand them to their application.
void SetSessionCookies(HttpReply& reply, const SessionCookies& cookies);

void ExpireSessionCookies(HttpReply& reply);

} // namespace brevint::service
