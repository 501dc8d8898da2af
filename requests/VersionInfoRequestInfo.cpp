#include "requests/VersionInfoRequestInfo.h"

CVersionInfoRequestInfo::CVersionInfoRequestInfo(const std::wstring& baseUrl)
    : CServiceRequestInfo({WebRequestTypeGet, AcceptTypeXml, 0}, baseUrl,
                          L"/Application/Versions") {}
