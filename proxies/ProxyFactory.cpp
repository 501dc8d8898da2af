#include "brevint/ProxyFactory.h"

#include "brevint/IdentityProxy.h"
#include "brevint/InterfaceIds.h"
#include "brevint/RepositoryProxy.h"
#include "brevint/SignInProxy.h"
#include "brevint/SignOutProxy.h"
#include "brevint/TemplateProxy.h"
#include "brevint/WebRequestFactory.h"

#include <cstring>
#include <new>

namespace {

/// Makes a proxy and hands it out as its interface.
template <class Interface, class Proxy>
void* Make(IRequestFactory* factory) {
    return static_cast<Interface*>(new (std::nothrow) Proxy(factory));
}

struct InterfaceRow {
    const GUID& iid;
    void* (*make)(IRequestFactory*);
};

constexpr InterfaceRow kInterfaces[] = {
    {IID_ISignInProxy, Make<ISignInProxy, CSignInProxy>},
    {IID_IRepositoryProxy, Make<IRepositoryProxy, CRepositoryProxy>},
    {IID_IIdentityProxy, Make<IIdentityProxy, CIdentityProxy>},
    {IID_ITemplateProxy, Make<ITemplateProxy, CTemplateProxy>},
    {IID_ISignOutProxy, Make<ISignOutProxy, CSignOutProxy>},
};

} // namespace

CProxyFactory::CProxyFactory() : m_requestFactory(std::make_unique<WebRequestFactory>()) {}

CProxyFactory::~CProxyFactory() = default;

int CProxyFactory::Create(const GUID& iid, void** object) {
    *object = nullptr;
    for (const InterfaceRow& row : kInterfaces) {
        if (std::memcmp(&iid, &row.iid, sizeof(GUID)) == 0) {
            *object = row.make(m_requestFactory.get());
            break;
        }
    }
    return *object ? 1 : 0;
}
