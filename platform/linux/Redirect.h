#pragma once

#include "platform/linux/Exchange.h"
#include "platform/linux/Reply.h"
#include "platform/linux/Types.h"

#include <optional>
#include <string>

namespace platform {

// The URL that the reply sends the exchange on to; nothing if the reply is the result itself.
std::optional<std::string> RedirectTarget(const Exchange& exchange, const Reply& reply);

// Turns the exchange into the one that follows such a reply. Changes nothing and returns
// ERROR_INTERNET_HTTPS_TO_HTTP_ON_REDIR where that would leave TLS, and
// ERROR_HTTP_REDIRECT_NEEDS_CONFIRMATION where a body would go to another origin: it may hold a
// password, and nobody can be asked here.
DWORD FollowRedirect(Exchange& exchange, const std::string& target, long status);

// Scheme, host and port of an exchange's URL.
std::string Origin(const std::string& url);

} // namespace platform
