#include "requests/SignOutRequestInfo.h"

CSignOutRequestInfo::CSignOutRequestInfo(const std::wstring& baseUrl)
    : CServiceRequestInfo({WebRequestTypeGet, AcceptTypeDefault, 0}, baseUrl, L"/SignOut") {}
