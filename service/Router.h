#pragma once

#include "service/HttpServer.h"
#include "service/Sessions.h"
#include "service/User.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace brevint::service {

/// One request on its way through a resource.
struct Call {
    HttpRequest request;
    std::string id;             ///< What stands for "{id}" in the pattern, as sent.
    const User* user = nullptr; ///< Null when nobody is signed in; never null with SignedIn.
    std::string serviceUrl;     ///< As the client reaches the service; ends in "/".

    /// The id as a GUID in lower case. Throws ServiceError when it is none.
    std::string Guid() const;
};

enum class Access { Anyone, SignedIn };

/// Finds the resource that answers a request. It is filled before the server starts, and does not
/// change after that.
class Router {
public:
    /// Answers a call when its body is there.
    using Handler = std::function<HttpReply(const Call&)>;

    /// Says by its head what comes of a call.
    using Opener = std::function<Admission(const Call&)>;

    explicit Router(const Sessions& sessions) : m_sessions(sessions) {}

    /// In a pattern like "Repository/Items/{id}/Path" words match in any letter case, and "{id}"
    /// matches any one segment.
    void Add(std::string method, std::string_view pattern, Access access, const Handler& handler);

    /// The same for a resource whose requests are not only answered.
    void AddOpened(std::string method, std::string_view pattern, Access access, Opener opener);

    /// Refuses by its head alone a request that names no name of this machine as its host, that a
    /// page of another web site sends, whose resource is not there, or that lacks the session it
    /// needs: mostly by a ServiceError. Trusted is whoever has a session.
    Admission Admit(const HttpRequest& head) const;

private:
    struct Route {
        std::string method;
        std::vector<std::string> segments;
        Access access;
        Opener opener;
    };

    const Sessions& m_sessions;
    std::vector<Route> m_routes;
};

} // namespace brevint::service
