#include "service/Router.h"

#include "base/Ascii.h"
#include "service/Guid.h"
#include "service/ServiceError.h"
#include "service/SessionCookies.h"
#include "service/Text.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace brevint::service {

namespace {

constexpr std::string_view idSegment = "{id}";

/// The ids of a path that fits the pattern; nothing when it does not fit.
std::optional<std::vector<std::string>> Match(const std::vector<std::string>& pattern,
                                              const std::vector<std::string_view>& path) {
    if (pattern.size() != path.size())
        return std::nullopt;
    std::vector<std::string> ids;
    for (std::size_t i = 0; i < path.size(); ++i) {
        if (pattern[i] == idSegment)
            ids.emplace_back(path[i]);
        else if (!base::EqualsIgnoreCase(pattern[i], path[i]))
            return std::nullopt;
    }
    return ids;
}

std::string CheckedHost(const HttpRequest& request) {
    std::string host = request.Header("Host");
    const bool proper = !host.empty() && std::all_of(host.begin(), host.end(), [](char c) {
        return base::IsLetterOrDigit(c) ||
               std::string_view(".-:[]").find(c) != std::string_view::npos;
    });
    if (!proper)
        throw BadRequest("The request names no proper host.");
    return host;
}

} // namespace

std::string Call::Guid(std::size_t index) const {
    const auto guid = ParseGuid(ids.at(index));
    if (!guid)
        throw MalformedGuid();
    return *guid;
}

Router::Router(std::string basePath, const Sessions& sessions)
    : basePath_(std::move(basePath)), sessions_(sessions) {}

void Router::Add(std::string method, std::string_view pattern, Access access, Handler handler) {
    Route route{std::move(method), {}, access, std::move(handler)};
    for (std::string_view segment : Split(pattern, '/'))
        route.segments.emplace_back(segment);
    routes_.push_back(std::move(route));
}

HttpReply Router::Answer(HttpRequest request) const {
    try {
        return Dispatch(std::move(request));
    } catch (const ServiceError& failure) {
        return ErrorReply(failure.Status(), failure.what());
    }
}

HttpReply Router::Dispatch(HttpRequest request) const {
    Call call;
    call.serviceUrl = "http://" + CheckedHost(request) + basePath_ + "/";
    if (request.method == "GET" && !request.body.empty())
        throw BadRequest("A GET request carries no body.");

    const std::string path = request.path + (request.path == basePath_ ? "/" : "");
    if (!path.starts_with(basePath_ + "/"))
        throw ServiceError(404, "There is no such resource.");
    const auto segments = Split(std::string_view(path).substr(basePath_.size() + 1), '/');

    std::string methods;
    for (const Route& route : routes_) {
        auto ids = Match(route.segments, segments);
        if (!ids)
            continue;
        if (route.method != request.method) {
            methods += (methods.empty() ? "" : ", ") + route.method;
            continue;
        }
        call.ids = *std::move(ids);
        call.user = sessions_.Find(ReadSessionCookies(request));
        if (!call.user && route.access == Access::SignedIn)
            throw AuthorizationFailed();
        call.request = std::move(request);
        return route.handler(call);
    }
    if (methods.empty())
        throw ServiceError(404, "There is no such resource.");
    HttpReply reply = ErrorReply(405, "The resource does not know this method.");
    reply.headers.emplace_back("Allow", methods);
    return reply;
}

} // namespace brevint::service
