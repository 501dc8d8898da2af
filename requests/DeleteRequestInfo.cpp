#include "requests/DeleteRequestInfo.h"

#include "support/Text.h"

CDeleteRequestInfo::CDeleteRequestInfo(const std::wstring& baseUrl, const std::wstring& itemId)
    : CServiceRequestInfo(
          {WebRequestTypeDelete, AcceptTypeXml, kNoAutoRedirect}, baseUrl, L"Repository/Items",
          BaseHlpr::StringReplace(L"{\"ItemIds\":[\"%ITEMID%\"]}", L"%ITEMID%", itemId.c_str())) {}
