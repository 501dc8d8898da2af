#include "brevint/VersionProxy.h"

#include "brevint/VersionInfoResponse.h"
#include "proxies/CallService.h"
#include "requests/VersionInfoRequestInfo.h"

#include <memory>

CVersionProxy::CVersionProxy(IRequestFactory* factory) : m_factory(factory) {}

CVersionProxy::~CVersionProxy() = default;

CVersionInfoResponse* CVersionProxy::GetVersionInfo(const wchar_t* url) {
    auto response = std::make_unique<CVersionInfoResponse>();
    CVersionInfoRequestInfo info(url ? url : L"");
    CallService(*m_factory, info, *response);
    return response.release();
}
