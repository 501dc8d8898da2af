#include "requests/TemplateRequestInfo.h"

#include "support/Text.h"

CTemplateRequestInfo::CTemplateRequestInfo(const std::wstring& baseUrl,
                                           const std::wstring& templateTypeId)
    : CServiceRequestInfo(
          {WebRequestTypeGet, AcceptTypeXml, kNoAutoRedirect}, baseUrl,
          BaseHlpr::StringReplace(L"/Analysis/Types?source=templates&key=%TEMPLATETYPEID%",
                                  L"%TEMPLATETYPEID%", templateTypeId.c_str())) {}
