#pragma once

#include <string>
#include <string_view>

/// What a sign-in sends, and how it knows that it has come to a session.

/// The header line of a form, without its line end.
inline constexpr const wchar_t* kFormContentType =
    L"Content-Type: application/x-www-form-urlencoded";

/// Tells the portal, by its address, that a client signs in and not a browser.
void SetClientMode(std::wstring& portalUrl);

/// The body with which the portal is told the credentials. Null stands for an empty text.
std::wstring CredentialForm(const wchar_t* userName, const wchar_t* password);

/// Whether the way from one address to the next gives up TLS, and with it what is sent there. What
/// is no address at all does not: it fails where it is sent.
bool LeavesTls(const std::wstring& from, const std::wstring& to);

/// Whether the cookies are those of a session.
bool HoldSession(std::wstring_view cookies);
