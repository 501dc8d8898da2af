#pragma once

#include "platform/linux/Types.h"
#include "platform/linux/http/HttpRequest.h"
#include "platform/linux/http/ReplyHead.h"

#include <optional>
#include <string>

namespace platform {

/// The URL that the reply sends the exchange on to; nothing if the reply is the result itself.
std::optional<std::string> RedirectTarget(const HttpRequest& request, const ReplyHead& reply);

/// Turns the exchange into the one that follows such a reply. Changes nothing and returns
/// ERROR_INTERNET_HTTPS_TO_HTTP_ON_REDIR where that would leave TLS, and
/// ERROR_HTTP_REDIRECT_NEEDS_CONFIRMATION where a body would go to another origin: it may hold a
/// password, and nobody can be asked here.
DWORD FollowRedirect(HttpRequest& request, const std::string& target, long status);

/// Scheme, host and port of an exchange's URL.
std::string Origin(const std::string& url);

} // namespace platform
