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

// The ids of a path that fits the pattern; nothing when it does not fit.
std::optional<std::vector<std::string>> Match(const std::vector<std::string>& pattern,
                                              const std::vector<std::string_view>& path) {
    if (pattern.size() != path.size())
        return std::nullopt;
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (pattern[i] == kIdSegment)
            ids.emplace_back(path[i]);
        else if (!base::EqualsIgnoreCase(pattern[i], path[i]))
            return std::nullopt;
    }
    return ids;
}

HttpReply Refusal(const ServiceError& failure) {
    return ErrorReply(failure.Status(), failure.what());
}

// Whether a Host header names this machine itself, with or without a port.
bool IsThisMachine(std::string_view host) {
    if (!host.ends_with(']')) {
        const std::size_t colon = std::min(host.rfind(':'), host.size());
        const std::string_view port = host.substr(std::min(colon + 1, host.size()));
        if (port.find_first_not_of("0123456789") != std::string_view::npos)
            return false;
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
    if (!IsThisMachine(host))
        throw ServiceError(421, "The host must be localhost, 127.x.x.x or [::1].");
    const std::string origin = base::ToLower(head.Header("Origin"));
    if (!origin.empty() && origin != "http://" + host)
        throw ServiceError(403, "Another web site sent this request.");
}

} // namespace

std::string Call::Guid(std::size_t index) const {
    const auto guid = ParseGuid(ids.at(index));
    if (!guid)
        throw MalformedGuid();
    return *guid;
}

Router::Router(std::string basePath, const Sessions& sessions)
    : m_basePath(std::move(basePath)), m_sessions(sessions) {}

void Router::Add(std::string method, std::string_view pattern, Access access, Handler handler) {
    Route route{std::move(method), {}, access, std::move(handler)};
    for (std::string_view segment : Split(pattern, '/'))
        route.segments.emplace_back(segment);
    m_routes.push_back(std::move(route));
}

Admission Router::Admit(const HttpRequest& head) const {
    try {
        CheckOrigin(head);
        return Find(head);
    } catch (const ServiceError& failure) {
        return {Refusal(failure), {}};
    }
}

Admission Router::Find(const HttpRequest& head) const {
    const std::string path = head.path + (head.path == m_basePath ? "/" : "");
    if (!path.starts_with(m_basePath + "/"))
        throw ServiceError(404, "There is no such resource.");
    const auto segments = Split(std::string_view(path).substr(m_basePath.size() + 1), '/');

    std::string methods;
    for (const Route& route : m_routes) {
        auto ids = Match(route.segments, segments);
        if (!ids)
            continue;
        if (route.method != head.method) {
            methods += (methods.empty() ? "" : ", ") + route.method;
            continue;
        }
        Call call{{},
                  *std::move(ids),
                  m_sessions.Find(ReadSessionCookies(head)),
                  "http://" + head.Header("Host") + m_basePath + "/"};
        if (!call.user && route.access == Access::SignedIn)
            throw AuthorizationFailed();
        const bool trusted = call.user != nullptr;
        const auto answer = [&route, call = std::move(call)](HttpRequest request) mutable {
            try {
                if (request.method == "GET" && !request.body.empty())
                    throw BadRequest("A GET request carries no body.");
                call.request = std::move(request);
                return route.handler(call);
            } catch (const ServiceError& failure) {
                return Refusal(failure);
            }
        };
        return {std::nullopt, answer, trusted};
    }
    if (methods.empty())
        throw ServiceError(404, "There is no such resource.");
    HttpReply reply = ErrorReply(405, "The resource does not know this method.");
    reply.headers.emplace_back("Allow", methods);
    return {std::move(reply), {}};
}

} // namespace brevint::service
