#pragma once

#include "brevint/BaseResponse.h"
#include "brevint/UserRole.h"

/// Who is signed in.
class BREVINT_API CIdentityResponse : public CBaseResponse {
public:
    CIdentityResponse();
    ~CIdentityResponse() override;

    void ParseServerResponse() override;
    /// One of brevint/UserRole.h.
    int GetUserRole() const;
    /// Address of the portal that vouches for the user. Valid while the response lives.
    const wchar_t* GetIdentifyingPartyUrl() const;
    /// Text for the user, set when the service could not be asked. Valid until it is set again.
    const wchar_t* GetErrorMessage() const;
    /// The user's name. Valid while the response lives.
    const wchar_t* GetUsername() const;
    /// Stores a copy; null stands for an empty text.
    void SetErrorMessage(const wchar_t* message);
    /// Does nothing: this response recognises no messages.
    virtual void InitErrorMaps();

private:
    int m_userRole = UserRole::Unknown;
    std::wstring m_identifyingPartyUrl;
    std::wstring m_errorMessage;
    std::wstring m_userName;
};
