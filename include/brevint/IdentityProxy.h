#pragma once

#include "brevint/IIdentityProxy.h"

class IRequestFactory;

/// Tells who is signed in.
class BREVINT_API CIdentityProxy : public IIdentityProxy {
public:
    /// `factory` is not owned and must outlive the proxy.
    explicit CIdentityProxy(IRequestFactory* factory);
    CIdentityProxy(const CIdentityProxy&) = delete;
    CIdentityProxy& operator=(const CIdentityProxy&) = delete;
    ~CIdentityProxy() override;

    CIdentityResponse* GetIdentity(const std::wstring& url) override;

private:
    IRequestFactory* m_factory;
};
