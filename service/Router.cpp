#include "service/Router.h"

#include "base/Ascii.h"
#include "service/Guid.h"
#include "service/ServiceError.h"
#include "service/SessionCookies.h"
#include "service/Text.h"

#include <optional>
#include <utility>

namespace brevint::service {

namespace {

constexpr std::string_view kIdSegment = "{id}";

// What stands for "{id}" in a path that fits the pattern, "" where it holds none; nothing when it
// does not fit.
std::optional<std::string> Match(const std::vector<std::string_view>& pattern,
                                 const std::vector<std::string_view>& path) {
    if (pattern.size() != path.size()) {
        return std::nullopt;
    }
    std::string id;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (pattern[i] == kIdSegment) {
            id = path[i];
        } else if (!base::EqualsIgnoreCase(pattern[i], path[i])) {
            return std::nullopt;
        }
    }
    return id;
}

// Whether a Host header names this machine itself, with or without a port.
bool IsThisMachine(std::string_view host) {
    if (!host.ends_with(']')) {
        const std::size_t colon = std::min(host.rfind(':'), host.size());
        const std::string_view port = host.substr(std::min(colon + 1, host.size()));
        if (port.find_first_not_of("0123456789") != std::string_view::npos) {
            return false;
        }
        host = host.substr(0, colon);
    }
    const bool isV4 =
        host.starts_with("127.") && host.find_first_not_of("0123456789.") == std::string_view::npos;
    return isV4 || host == "localhost" || host == "[::1]";
}

// Throws for a request that a web page of somebody else could have a browser send here: to a name
// that leads to this machine for once, or under a name of this machine, but from that page.
void CheckOrigin(const HttpRequest& head) {
    const std::string host = base::ToLower(head.Header("Host"));
    if (!IsThisMachine(host)) {
        throw ServiceError(421, "The host must be localhost, 127.x.x.x or [::1].");
    }
    const std::string origin = base::ToLower(head.Header("Origin"));
    if (!origin.empty() && origin != "http://" + host) {
        throw ServiceError(403, "Another web site sent this request.");
    }
}

} // namespace

std::string Call::Guid() const {
    const auto guid = ParseGuid(id);
    if (!guid) {
        throw MalformedGuid();
    }
    return *guid;
}

void Router::Add(const Resource& resource, const Handler& handler) {
    AddOpened(resource, [handler](const Call& opened) {
        return Admission{.answer = [handler, call = opened](HttpRequest request) mutable {
            call.request = std::move(request);
            return handler(call);
        }};
    });
}

void Router::AddOpened(const Resource& resource, Opener opener) {
    m_routes.push_back({resource, Split(resource.pattern, '/'), std::move(opener)});
}

std::vector<Resource> Router::Resources() const {
    std::vector<Resource> resources;
    resources.reserve(m_routes.size());
    for (const Route& route : m_routes) {
        resources.push_back(route.resource);
    }
    return resources;
}

Admission Router::Admit(const HttpRequest& head) const {
    CheckOrigin(head);
    if (!head.path.starts_with('/')) {
        throw BadRequest("The request names no path.");
    }
    const auto segments = Split(std::string_view(head.path).substr(1), '/');
    std::string methods;
    for (const Route& route : m_routes) {
        const auto id = Match(route.segments, segments);
        if (!id) {
            continue;
        }
        if (route.resource.method != head.method) {
            methods.append(methods.empty() ? "" : ", ").append(route.resource.method);
            continue;
        }
        const Call call{head, *id, m_sessions.Find(ReadSessionCookies(head)),
                        "http://" + head.Header("Host") + "/"};
        if (!call.user && route.resource.access == Access::SignedIn) {
            throw AuthorizationFailed();
        }
        Admission admission = route.opener(call);
        admission.trusted = call.user != nullptr;
        return admission;
    }
    if (methods.empty()) {
        throw ServiceError(404, "There is no such resource.");
    }
    HttpReply reply = ErrorReply(405, "The resource does not know this method.");
    reply.headers.emplace_back("Allow", methods);
    return {.refusal = std::move(reply)};
}

} // namespace brevint::service
