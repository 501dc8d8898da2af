#pragma once

#include "brevint/InterfaceIds.h"
#include "brevint/ProxyFactory.h"
#include "cli/service/Verdict.h"
#include "cli/service/Wait.h"
#include "cli/session/Session.h"

#include <chrono>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

class IIdentityProxy;
class IRepositoryProxy;
class ISignOutProxy;
class ITemplateProxy;

namespace brevint::cli {

/// The service at one address, reached through the library. Proxies must not outlive it.
class Service : public std::enable_shared_from_this<Service> {
public:
    /// Puts the session's cookies, if there are any, into the process's jar. No call may take
    /// longer than `timeout`.
    Service(const Session& session, std::chrono::seconds timeout);

    const std::wstring& Url() const { return m_url; }

    std::unique_ptr<IIdentityProxy> Identity();
    std::unique_ptr<IRepositoryProxy> Repository();
    std::unique_ptr<ISignOutProxy> SignOut();
    std::unique_ptr<ITemplateProxy> Templates();

    /// The response of `call(Service&)`, which returns it for its caller to delete. Throws a
    /// Failure that begins with `summary` when it comes to nothing. `call` must hold copies of what
    /// it needs (see AwaitCall); `doing` is what is shown as progress.
    template <class Function>
    auto Call(const std::string& summary, const Function& call,
              const std::string& doing = "Waiting for the service") {
        using Response = std::remove_pointer_t<std::invoke_result_t<Function, Service&>>;
        const auto response = std::make_shared<std::unique_ptr<Response>>();
        AwaitCall([self = shared_from_this(), response, call] { response->reset(call(*self)); },
                  doing, summary, m_timeout);
        if constexpr (std::is_convertible_v<Response*, const IReadOnlyResponse*>) {
            RequireSuccess(response->get(), summary);
        }
        return std::move(*response);
    }

private:
    template <class Interface>
    std::unique_ptr<Interface> Make(const GUID& iid);

    std::wstring m_url;
    std::chrono::seconds m_timeout;
    CProxyFactory m_factory;
};

/// Takes every cookie out of the process's jar that requests to the service at that address could
/// carry, whichever folder of its host it was set for. The address is one that CheckServiceUrl has
/// returned.
void ForgetCookies(const std::string& url);

} // namespace brevint::cli
