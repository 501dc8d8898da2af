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

/// An address of the service, and what it is for. Those that need a session stand in the table of
/// docs/service.md, which is made from this.
struct Resource {
    std::string_view method;

    /// As in "Repository/Items/{id}/Path": words match in any letter case, "{id}" any one segment.
    std::string_view pattern;

    Access access;
    std::string_view request = {}; ///< What comes with a request, for the document.
    std::string_view reply = {};   ///< What the reply holds, for the document.
};

/// Finds the resource that answers a request. It is filled before the server starts, and does not
/// change after that.
class Router {
public:
    /// Answers a call when its body is there.
    using Handler = std::function<HttpReply(const Call&)>;

    /// Says by its head what comes of a call.
    using Opener = std::function<Admission(const Call&)>;

    explicit Router(const Sessions& sessions) : m_sessions(sessions) {}

    /// The texts must outlive the router.
    void Add(const Resource& resource, const Handler& handler);

    /// The same for a resource whose requests are not only answered.
    void AddOpened(const Resource& resource, Opener opener);

    /// All that were added, in their order.
    std::vector<Resource> Resources() const;

    /// Refuses by its head alone a request that names no name of this machine as its host, that a
    /// page of another web site sends, whose resource is not there, or that lacks the session it
    /// needs: mostly by a ServiceError. Trusted is whoever has a session.
    Admission Admit(const HttpRequest& head) const;

private:
    struct Route {
        Resource resource;
        std::vector<std::string_view> segments; // of the pattern
        Opener opener;
    };

    const Sessions& m_sessions;
    std::vector<Route> m_routes;
};

} // namespace brevint::service
