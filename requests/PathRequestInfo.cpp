#include "requests/PathRequestInfo.h"

#include "support/Text.h"

CPathRequestInfo::CPathRequestInfo(const std::wstring& baseUrl, const std::wstring& itemId)
    : CServiceRequestInfo({WebRequestTypeGet, AcceptTypeXml, kNoAutoRedirect}, baseUrl,
                          BaseHlpr::StringReplace(L"/Repository/Items/%ITEMID%/Path", L"%ITEMID%",
                                                  itemId.c_str())) {}
