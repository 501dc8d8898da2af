#include "platform/linux/http/Redirect.h"

#include "platform/linux/WinInet.h"
#include "platform/linux/urls/RequestTarget.h"
#include "platform/linux/urls/Url.h"
#include "platform/linux/urls/UrlCracker.h"
#include "support/Utf8.h"

namespace platform {

namespace {

// Whether it begins as an address, but is none. libcurl takes "http:/a" and "http:///a" for
// addresses of the host "a".
bool IsMalformed(const std::string& text) {
    const std::wstring wide = Utf8::ToWide(text);
    UrlParts parts;
    return CrackUrl(wide, parts) == ERROR_INTERNET_INVALID_URL &&
           (parts.scheme == INTERNET_SCHEME_HTTP || parts.scheme == INTERNET_SCHEME_HTTPS);
}

} // namespace

std::optional<std::string> RedirectTarget(const HttpRequest& request, const ReplyHead& reply) {
    switch (reply.status) {
    case 301:
    case 302:
    case 303:
    case 307:
    case 308: break;
    default: return std::nullopt;
    }
    if (!request.followRedirects || !reply.location) {
        return std::nullopt;
    }
    const std::string location = reply.location->empty() ? "/" : EscapeReference(*reply.location);
    Url url(request.url);
    if (IsMalformed(*reply.location) || !url.Resolve(location)) {
        return std::nullopt;
    }
    const std::string scheme = url.Part(CURLUPART_SCHEME);
    if (scheme != "http" && scheme != "https") {
        return std::nullopt;
    }
    for (const CURLUPart part : {CURLUPART_FRAGMENT, CURLUPART_USER, CURLUPART_PASSWORD}) {
        url.Remove(part);
    }
    // libcurl has taken escapes in the host for what they stand for, be it a control character.
    const std::string target = url.Part(CURLUPART_URL);
    return IsMalformed(target) ? std::nullopt : std::optional(target);
}

DWORD FollowRedirect(HttpRequest& request, const std::string& target, long status) {
    if (request.url.starts_with("https:") && target.starts_with("http:")) {
        return ERROR_INTERNET_HTTPS_TO_HTTP_ON_REDIR;
    }
    const bool leavesOrigin = Origin(request.url) != Origin(target);
    // A body may hold a password.
    if (leavesOrigin && status > 303 && request.bodySize > 0) {
        return ERROR_HTTP_REDIRECT_NEEDS_CONFIRMATION;
    }
    if (status <= 303) {
        request.verb = request.verb == "HEAD" ? "HEAD" : "GET";
        request.body = nullptr;
        request.bodySize = 0;
        request.headers.Remove("Content-Type");
    }
    if (leavesOrigin) {
        for (const char* name : {"Authorization", "Cookie", "Host"}) {
            request.headers.Remove(name);
        }
    }
    request.url = target;
    return ERROR_SUCCESS;
}

std::string Origin(const std::string& url) {
    return url.substr(0, url.find('/', url.find("://") + 3));
}

} // namespace platform
