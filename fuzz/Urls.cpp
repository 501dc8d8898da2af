#include "base/Ascii.h"
#include "fuzz/Fuzz.h"
#include "platform/linux/handles/ConnectionHandle.h"
#include "platform/linux/http/Redirect.h"
#include "platform/linux/urls/RequestTarget.h"
#include "platform/linux/urls/Url.h"
#include "platform/linux/urls/UrlCracker.h"
#include "support/UrlBuilder.h"
#include "support/Utf8.h"

using namespace platform;

/// What a reply to a request for the URL may lead to.
static void Redirect(const std::string& url, std::string_view location) {
    HttpRequest request;
    request.url = url;
    request.headers.Set("Authorization", "secret");
    ReplyHead reply;
    reply.status = 302;
    reply.location = location;
    if (const auto target = RedirectTarget(request, reply)) {
        Require(!base::HasControls(*target) && target->find_first_of(" #") == std::string::npos);
        const bool refused = FollowRedirect(request, *target, reply.status) != ERROR_SUCCESS;
        Require(refused == (url.starts_with("https:") && target->starts_with("http:")));
        Require(refused || target->starts_with("http://") || target->starts_with("https://"));
        Require(refused || Origin(url) == Origin(*target) ||
                !request.headers.Find("Authorization"));
    }
}

/// A service's address and, on the next line, a path, which is also the Location of a reply.
void Fuzz(std::string_view input) {
    const std::wstring base = Utf8::ToWide(TakeLine(input));
    const std::wstring url = BaseHlpr::BuildUrl(base, Utf8::ToWide(input));
    UrlParts parts;
    if (CrackUrl(url, parts) == ERROR_SUCCESS) {
        const std::string host = Utf8::ToNarrow(parts.host);
        const std::string target = RequestTarget(parts.path);
        Require(target.starts_with('/') && !base::HasControls(target) &&
                target.find(' ') == std::string::npos);
        // What is connected to is what was cracked, in libcurl's eyes too, but for addresses.
        const std::string whole = ConnectionHandle({}, 0, host, parts.port).Url(true, target);
        if (const Url seen(whole); !seen.Part(CURLUPART_URL).empty()) {
            const std::string name = seen.Part(CURLUPART_HOST);
            Require(base::EqualsIgnoreCase(name, host) ||
                    name.find_first_not_of("[:].0123456789abcdef") > 63);
            Require(seen.Part(CURLUPART_USER).empty());
            Redirect(whole, TakeLine(input));
        }
    }
}
