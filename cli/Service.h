#pragma once

#include "brevint/InterfaceIds.h"
#include "brevint/ProxyFactory.h"
#include "cli/Session.h"

#include <memory>
#include <new>
#include <string>

class IIdentityProxy;
class IRepositoryProxy;
class ISignInProxy;
class ISignOutProxy;
class ITemplateProxy;

namespace brevint::cli {

/// The service at one address, reached through the library. Proxies must not outlive it.
class Service {
public:
    /// Puts the session's cookies, if there are any, into the process's jar.
    explicit Service(const Session& session);

    const std::wstring& Url() const { return url_; }

    std::unique_ptr<IIdentityProxy> Identity();
    std::unique_ptr<IRepositoryProxy> Repository();
    std::unique_ptr<ISignInProxy> SignIn();
    std::unique_ptr<ISignOutProxy> SignOut();
    std::unique_ptr<ITemplateProxy> Templates();

private:
    template <class Interface>
    std::unique_ptr<Interface> Make(const GUID& iid);

    std::wstring url_;
    CProxyFactory factory_;
};

} // namespace brevint::cli
