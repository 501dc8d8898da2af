#include "requests/SignInForms.h"

#include "base/Ascii.h"
#include "support/HttpEscape.h"
#include "support/Text.h"

#include <algorithm>

namespace {

constexpr const wchar_t* kPortalMode = L"&mode=DB";
constexpr const wchar_t* kClientMode = L"&mode=VX";
constexpr const wchar_t* kFirstClientMode = L"?mode=VX";

std::wstring Escape(const wchar_t* text) {
    const std::wstring_view value = text ? text : L"";
    return BaseHlpr::HttpEscapeW(value.data(), static_cast<unsigned>(value.size()));
}

bool HasScheme(std::wstring_view address, std::wstring_view scheme) {
    // A platform that cracks an address passes over what is blank before it.
    const auto start = std::ranges::find_if(address, [](wchar_t c) { return c > L' '; });
    address.remove_prefix(static_cast<std::size_t>(start - address.begin()));
    return base::EqualsIgnoreCase(address.substr(0, scheme.size()), scheme);
}

} // namespace

void SetClientMode(std::wstring& portalUrl) {
    if (portalUrl.find(kPortalMode) != std::wstring::npos) {
        BaseHlpr::StringReplace(portalUrl, kPortalMode, kClientMode);
    } else {
        portalUrl += portalUrl.find(L'?') != std::wstring::npos ? kClientMode : kFirstClientMode;
    }
}

std::wstring CredentialForm(const wchar_t* userName, const wchar_t* password) {
    return L"userName=" + Escape(userName) + L"&password=" + Escape(password);
}

bool LeavesTls(const std::wstring& from, const std::wstring& to) {
    return HasScheme(from, L"https:") && HasScheme(to, L"http:");
}

bool HoldSession(std::wstring_view cookies) {
    return cookies.find(L"FedAuth") != std::wstring_view::npos &&
           cookies.find(L"FedAuth1") != std::wstring_view::npos;
}
