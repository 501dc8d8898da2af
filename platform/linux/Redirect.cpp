#include "platform/linux/Redirect.h"

#include "platform/linux/Url.h"
#include "platform/linux/WinInet.h"

namespace platform {

std::optional<std::string> RedirectTarget(const Exchange& exchange, const Reply& reply) {
    switch (reply.status) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308: break;
    default: return std::nullopt;
    }
    Url url;
    if (!exchange.followRedirects || !reply.location || !url.Resolve(exchange.url) ||
        !url.Resolve(reply.location->empty() ? "/" : *reply.location)) {
        return std::nullopt;
    }
    const std::string scheme = url.Part(CURLUPART_SCHEME);
    if (scheme != "http" && scheme != "https") {
        return std::nullopt;
    }
    for (const CURLUPart part : {CURLUPART_FRAGMENT, CURLUPART_USER, CURLUPART_PASSWORD}) {
        url.Remove(part);
    }
    return url.Part(CURLUPART_URL);
}

DWORD FollowRedirect(Exchange& exchange, const std::string& target, long status) {
    if (exchange.url.starts_with("https:") && target.starts_with("http:")) {
        return ERROR_INTERNET_HTTPS_TO_HTTP_ON_REDIR;
    }
    const bool leavesOrigin = Origin(exchange.url) != Origin(target);
    if (leavesOrigin && status > 303 && exchange.bodySize > 0) {
        return ERROR_HTTP_REDIRECT_NEEDS_CONFIRMATION;
    }
    if (status <= 303 && exchange.verb != "GET" && exchange.verb != "HEAD") {
        exchange.verb = "GET";
        exchange.body = nullptr;
        exchange.bodySize = 0;
        exchange.headers.Remove("Content-Type");
    }
    if (leavesOrigin) {
        for (const char* name : {"Authorization", "Cookie", "Host"}) {
            exchange.headers.Remove(name);
        }
    }
    exchange.url = target;
    return ERROR_SUCCESS;
}

std::string Origin(const std::string& url) {
    return url.substr(0, url.find('/', url.find("://") + 3));
}

} // namespace platform
