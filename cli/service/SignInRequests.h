#pragma once

#include "brevint/IRequestFactory.h"
#include "cli/session/ServiceUrl.h"

#include <string>

namespace brevint::cli {

/// Makes the requests of one sign-in, which go to the service, to the portal that the service
/// names, and to the address in the form of the portal's page. Nothing is sent where the password
/// or the form's token must not go: unencrypted to another machine without `insecureHttp`, and with
/// the form to another host or port than the service's, where it would open the session of another
/// service.
class SignInRequests final : public IRequestFactory {
public:
    /// `serviceUrl` is one that CheckServiceUrl has returned.
    SignInRequests(const std::string& serviceUrl, bool insecureHttp);

    IRequest* Create() override;
    IRequest* Create(const wchar_t* url, WebRequestType type) override;

    /// Why a request was not sent; empty when all were.
    const std::string& Refusal() const { return m_refusal; }

    /// Whether the service answered with a page of its own instead of sending on to a portal.
    bool EndedWithServicePage() const { return m_count == kService && m_lastStatus == 200; }

    /// Whether the portal answered with a page after which nothing was sent. Only then can the
    /// sign-in's error message be the portal's.
    bool EndedWithPortalPage() const { return m_count == kPortal && m_lastStatus == 200; }

private:
    class Watched;

    /// The requests by their number.
    static constexpr int kService = 1;
    static constexpr int kPortal = 2;

    /// Why nothing may be sent to an address that the service or the portal has named; empty when
    /// it may.
    std::string Refuse(const std::string& url) const;

    const Origin m_service;
    const bool m_insecureHttp;
    int m_count = 0;
    unsigned long m_lastStatus = 0;
    std::string m_refusal;
};

} // namespace brevint::cli
