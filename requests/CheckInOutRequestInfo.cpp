#include "requests/CheckInOutRequestInfo.h"

#include "support/Text.h"

namespace {

const wchar_t* BodyTemplate(int mode) {
    switch (mode) {
    case CCheckInOutRequestInfo::kCheckOut: return L"{\"ItemId\":\"%ITEMID%\",\"Locked\":true}";
    case CCheckInOutRequestInfo::kCheckIn: return L"{\"ItemId\":\"%ITEMID%\",\"Locked\":false}";
    default: return L"";
    }
}

} // namespace

CCheckInOutRequestInfo::CCheckInOutRequestInfo(const std::wstring& baseUrl,
                                               const std::wstring& itemId, int mode)
    : CServiceRequestInfo(
          {WebRequestTypePut, AcceptTypeXml, kNoAutoRedirect}, baseUrl,
          BaseHlpr::StringReplace(L"Repository/Items/%ITEMID%/Locked", L"%ITEMID%", itemId.c_str()),
          BaseHlpr::StringReplace(BodyTemplate(mode), L"%ITEMID%", itemId.c_str())) {}
