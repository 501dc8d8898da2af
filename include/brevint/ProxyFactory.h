#pragma once

#include "brevint/IProxyFactory.h"

#include <memory>

class WebRequestFactory;

/// Makes proxies that share one request factory, which it owns: the proxies must not be used after
/// their proxy factory is gone.
class BREVINT_API CProxyFactory : public IProxyFactory {
public:
    CProxyFactory();
    CProxyFactory(const CProxyFactory&) = delete;
    CProxyFactory& operator=(const CProxyFactory&) = delete;
    ~CProxyFactory() override;

    int Create(const GUID& iid, void** object) override;

private:
    std::unique_ptr<WebRequestFactory> m_requestFactory;
};
