#pragma once

#include "brevint/ISignOutProxy.h"

class IRequestFactory;

/// Ends the session.
class BREVINT_API CSignOutProxy : public ISignOutProxy {
public:
    /// `factory` is not owned and must outlive the proxy.
    explicit CSignOutProxy(IRequestFactory* factory);
    CSignOutProxy(const CSignOutProxy&) = delete;
    CSignOutProxy& operator=(const CSignOutProxy&) = delete;
    ~CSignOutProxy() override;

    CSignOutResponse* SignOut(const std::wstring& url) override;

private:
    IRequestFactory* m_factory;
};
