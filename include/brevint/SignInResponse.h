#pragma once

#include "brevint/Export.h"

#include <string>

/// Outcome of a sign-in: a plain record that the caller of CSignInProxy::SignIn deletes.
class BREVINT_API SignInResponse {
public:
    /// A record of a successful sign-in without cookie.
    SignInResponse();
    virtual ~SignInResponse();

    /// Why the sign-in failed, for the user; empty on success. Valid until the record changes.
    const wchar_t* GetErrorMessage() const;
    /// The cookies of the service, "name=value; name=value": a credential.
    /// CInternetCache::SetCookie takes it to go on with the session in another process. Valid until
    /// the record changes.
    const wchar_t* GetCookie() const;
    /// True when the user is signed in.
    bool GetSucceeded() const;
    /// Stores a copy; null stands for an empty text.
    void SetErrorMessage(const wchar_t* message);
    /// Stores a copy; null stands for an empty text.
    void SetCookie(const wchar_t* cookie);
    /// Stores the outcome.
    void SetSucceeded(bool succeeded);

private:
    friend class CSignInProxy;

    std::wstring m_errorMessage;
    std::wstring m_cookie;
    bool m_succeeded = true;
    /// The identity portal, where the credentials go.
    std::wstring PortalUrl;
    /// Where the portal's answer is to be posted.
    std::wstring FormActionUrl;
    /// The body of that post: the answer's hidden fields.
    std::wstring FormData;
};
