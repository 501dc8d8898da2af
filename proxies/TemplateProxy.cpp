#include "brevint/TemplateProxy.h"

#include "brevint/TemplateResponse.h"
#include "proxies/CallService.h"
#include "requests/TemplateRequestInfo.h"

#include <memory>

CTemplateProxy::CTemplateProxy(IRequestFactory* factory) : m_factory(factory) {}

CTemplateProxy::~CTemplateProxy() = default;

CTemplateResponse* CTemplateProxy::GetTemplates(const wchar_t* url, const wchar_t* templateTypeId) {
    auto response = std::make_unique<CTemplateResponse>();
    CTemplateRequestInfo info(url ? url : L"", templateTypeId ? templateTypeId : L"");
    CallService(*m_factory, info, *response);
    return response.release();
}
