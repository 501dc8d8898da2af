#include "requests/IdentityRequestInfo.h"

CIdentityRequestInfo::CIdentityRequestInfo(const std::wstring& baseUrl)
    : CServiceRequestInfo({WebRequestTypeGet, AcceptTypeXml, 0}, baseUrl,
                          L"/application/identity") {}
