#pragma once

#include "brevint/ITemplateProxy.h"

class IRequestFactory;

/// Lists templates.
class BREVINT_API CTemplateProxy : public ITemplateProxy {
public:
    /// `factory` is not owned and must outlive the proxy.
    explicit CTemplateProxy(IRequestFactory* factory);
    CTemplateProxy(const CTemplateProxy&) = delete;
    CTemplateProxy& operator=(const CTemplateProxy&) = delete;
    ~CTemplateProxy() override;

    CTemplateResponse* GetTemplates(const wchar_t* url, const wchar_t* templateTypeId) override;

private:
    IRequestFactory* m_factory;
};
