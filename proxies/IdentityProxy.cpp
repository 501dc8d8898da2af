#include "brevint/IdentityProxy.h"

#include "brevint/IdentityResponse.h"
#include "proxies/CallService.h"
#include "requests/IdentityRequestInfo.h"
#include "support/ResourceString.h"

#include <memory>

CIdentityProxy::CIdentityProxy(IRequestFactory* factory) : m_factory(factory) {}

CIdentityProxy::~CIdentityProxy() = default;

CIdentityResponse* CIdentityProxy::GetIdentity(const std::wstring& url) {
    auto response = std::make_unique<CIdentityResponse>();
    CIdentityRequestInfo info(url);
    CallService(*m_factory, info, *response);
    if (response->GetStatusCode() != 200) {
        response->SetErrorMessage(BaseHlpr::ConnectionFailureMessage(url).c_str());
    }
    return response.release();
}
