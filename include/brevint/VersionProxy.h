#pragma once

#include "brevint/IVersionProxy.h"

class IRequestFactory;

/// Asks for versions.
class BREVINT_API CVersionProxy final : public IVersionProxy {
public:
    /// `factory` is not owned and must outlive the proxy.
    explicit CVersionProxy(IRequestFactory* factory);
    CVersionProxy(const CVersionProxy&) = delete;
    CVersionProxy& operator=(const CVersionProxy&) = delete;
    ~CVersionProxy();

    CVersionInfoResponse* GetVersionInfo(const wchar_t* url) override;

private:
    IRequestFactory* m_factory;
};
