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
    std::vector<std::string> ids; ///< What stands for each "{id}" of the pattern, as sent.
    const User* user = nullptr;   ///< Null when nobody is signed in; never null with SignedIn.
    std::string serviceUrl;       ///< As the client reaches the service; ends in "/".

    /// The id at `index` as a GUID in lower case. Throws ServiceError when it is none.
    std::string Guid(std::size_t index = 0) const;
};

enum class Access { Anyone, SignedIn };

/// Finds the resource that answers a request and turns every ServiceError into an error document.
/// Filled before the server starts, unchanged afterwards.
class Router {
public:
    using Handler = std::function<HttpReply(Call&)>;

    /// `basePath` is "" or like "/dashboard"; the resources lie below it.
    Router(std::string basePath, const Sessions& sessions);

    /// `pattern` is relative to the base path, like "Repository/Items/{id}/Path"; its words match
    /// in any letter case, "{id}" matches any one segment.
    void Add(std::string method, std::string_view pattern, Access access, Handler handler);

    /// Refuses by its head alone a request that names no name of this machine as its host, that a
    /// page of another web site sends, whose resource is not there, or that lacks the session it
    /// needs. Trusted is whoever has a session.
    Admission Admit(const HttpRequest& head) const;

private:
    struct Route {
        std::string method;
        std::vector<std::string> segments;
        Access access;
        Handler handler;
    };

    Admission Find(const HttpRequest& head) const;

    const std::string m_basePath;
    const Sessions& m_sessions;
    std::vector<Route> m_routes;
};

} // namespace brevint::service
