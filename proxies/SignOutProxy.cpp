#include "brevint/SignOutProxy.h"

#include "brevint/SignOutResponse.h"
#include "proxies/CallService.h"
#include "requests/SignOutRequestInfo.h"

#include <memory>

CSignOutProxy::CSignOutProxy(IRequestFactory* factory) : m_factory(factory) {}

CSignOutProxy::~CSignOutProxy() = default;

CSignOutResponse* CSignOutProxy::SignOut(const std::wstring& url) {
    auto response = std::make_unique<CSignOutResponse>();
    CSignOutRequestInfo info(url);
    CallService(*m_factory, info, *response);
    return response.release();
}
