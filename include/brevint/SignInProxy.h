#pragma once

#include "brevint/ISignInProxy.h"

#include <string>

class IRequest;
class IRequestFactory;

/// Federated sign-in by form: service, portal, service.
class BREVINT_API CSignInProxy : public ISignInProxy {
public:
    /// `factory` is not owned and must outlive the proxy.
    explicit CSignInProxy(IRequestFactory* factory);
    CSignInProxy(const CSignInProxy&) = delete;
    CSignInProxy& operator=(const CSignInProxy&) = delete;
    ~CSignInProxy() override;

    SignInResponse* SignIn(const wchar_t* url, const wchar_t* userName,
                           const wchar_t* password) override;

    // The steps of SignIn, in their order. Each reports through the response alone.

    /// Asks the service for its page; the redirect that answers names the portal.
    void ConnectToDashboard(const wchar_t* url, SignInResponse* response);
    /// Posts the credentials to the portal and reads the form that it answers with.
    void SubmitUserDataToPortal(const wchar_t* userName, const wchar_t* password,
                                SignInResponse* response);
    /// Posts that form to the service and takes the cookies that it sets.
    void GetFederatedAuthCookie(SignInResponse* response);

    /// Reads why the portal refused from its reply, or says that the reason was not found.
    void GetErrorFromSubmitCredentialRequest(const wchar_t* reply, std::wstring& message);

private:
    void Fail(SignInResponse* response, const std::wstring& message) const;
    void FailToConnect(SignInResponse* response) const;

    IRequestFactory* m_factory;
    std::wstring m_dashboardUrl;
};
