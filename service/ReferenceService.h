#pragma once

#include "service/HttpServer.h"
#include "service/Router.h"
#include "service/ServiceOptions.h"
#include "service/ServiceState.h"

#include <string>
#include <vector>

namespace brevint::service {

/// A repository service with its identity portal, on a port of the loopback interface. Each one has
/// sessions and a repository of its own, which end with it.
class ReferenceService {
public:
    explicit ReferenceService(ServiceOptions options = {});

    /// Begins to serve. Throws std::exception when the port is not free.
    void Start();

    /// Closes every connection and joins the threads; so does the destructor.
    void Stop();

    /// From the next request on, until the next call, this goes wrong. Any thread may call it.
    void Misbehave(const Misbehaviour& misbehaviour) { m_state.conduct.Set(misbehaviour); }

    /// What the server does with a request. Needs no start.
    Admission Admit(const HttpRequest& head) const { return m_router.Admit(head); }

    /// All that it has.
    std::vector<Resource> Resources() const { return m_router.Resources(); }

    /// The address that clients are given, with "/" at its end. Valid once started.
    std::string Url() const;

private:
    ServiceState m_state;
    Router m_router;
    HttpServer m_server;
};

} // namespace brevint::service
