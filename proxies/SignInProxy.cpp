#include "brevint/SignInProxy.h"

#include "brevint/IRequest.h"
#include "brevint/IRequestFactory.h"
#include "brevint/SignInResponse.h"
#include "requests/SignInForms.h"
#include "responses/PortalForm.h"
#include "support/ResourceString.h"
#include "support/UnicodeConvert.h"
#include "transport/RequestFlags.h"

#include <memory>
#include <new>

namespace {

constexpr unsigned long kStatusOk = 200;
constexpr unsigned long kStatusFound = 302;
/// What the platform may say in place of a status; its ERROR_HTTP_REDIRECT_NEEDS_CONFIRMATION.
constexpr unsigned long kRedirectNeedsConfirmation = 12168;

std::wstring Refusal(const PortalPage& page) {
    std::wstring message = L"Failed to find expected error";
    page.FailureMessage(message);
    return message;
}

} // namespace

CSignInProxy::CSignInProxy(IRequestFactory* factory) : m_factory(factory) {}

CSignInProxy::~CSignInProxy() = default;

SignInResponse* CSignInProxy::SignIn(const wchar_t* url, const wchar_t* userName,
                                     const wchar_t* password) {
    auto response = std::make_unique<SignInResponse>();
    m_dashboardUrl = url ? url : L"";
    try {
        ConnectToDashboard(m_dashboardUrl.c_str(), response.get());
        if (response->GetSucceeded()) {
            SubmitUserDataToPortal(userName, password, response.get());
        }
        if (response->GetSucceeded()) {
            GetFederatedAuthCookie(response.get());
        }
    } catch (const std::bad_alloc&) {
        // A server can send more than memory holds.
        FailToConnect(response.get());
    }
    return response.release();
}

void CSignInProxy::ConnectToDashboard(const wchar_t* url, SignInResponse* response) {
    const std::unique_ptr<IRequest> request(m_factory->Create(url, WebRequestTypeGet));
    request->SetRequestFlags(kNoAutoRedirect);
    request->AddAcceptType(AcceptTypeDefault);
    request->SendRequest();
    switch (request->GetRequestStatus()) {
    case kStatusFound:
    case kRedirectNeedsConfirmation:
        request->GetRedirectUrl(response->PortalUrl);
        SetClientMode(response->PortalUrl);
        if (LeavesTls(m_dashboardUrl, response->PortalUrl)) {
            FailToConnect(response);
        }
        break;
    case kStatusOk: Fail(response, L"Already signed in."); break;
    default: FailToConnect(response); break;
    }
}

void CSignInProxy::SubmitUserDataToPortal(const wchar_t* userName, const wchar_t* password,
                                          SignInResponse* response) {
    const std::unique_ptr<IRequest> request(
        m_factory->Create(response->PortalUrl.c_str(), WebRequestTypePost));
    // XML is what the portal is asked for, although it answers with a page.
    request->AddAcceptType(AcceptTypeXml);
    request->SetUploadData(CredentialForm(userName, password).c_str());
    request->AddHeader(kFormContentType);
    request->SendRequest();
    if (request->GetRequestStatus() != kStatusOk) {
        FailToConnect(response);
        return;
    }
    std::wstring reply;
    request->GetRequestedData(reply);
    const PortalPage page(_UNICODECONVERT(reply.c_str()));
    const std::wstring action = page.FormAction();
    const std::wstring fields = page.HiddenFormData();
    if (action.empty() || fields.empty()) {
        Fail(response, Refusal(page));
        return;
    }
    if (LeavesTls(response->PortalUrl, action)) {
        FailToConnect(response);
        return;
    }
    response->FormActionUrl = action;
    response->FormData = fields;
}

void CSignInProxy::GetFederatedAuthCookie(SignInResponse* response) {
    const std::unique_ptr<IRequest> request(
        m_factory->Create(response->FormActionUrl.c_str(), WebRequestTypePost));
    request->SetUploadData(response->FormData.c_str());
    request->AddHeader(kFormContentType);
    request->SendRequest();
    if (request->GetRequestStatus() == kStatusOk) {
        std::wstring cookies;
        request->GetCookie(cookies);
        if (HoldSession(cookies)) {
            response->SetCookie(cookies.c_str());
            response->SetSucceeded(true);
            return;
        }
    }
    FailToConnect(response);
}

void CSignInProxy::GetErrorFromSubmitCredentialRequest(const wchar_t* reply,
                                                       std::wstring& message) {
    message = Refusal(PortalPage(_UNICODECONVERT(reply)));
}

void CSignInProxy::Fail(SignInResponse* response, const std::wstring& message) const {
    response->SetErrorMessage(message.c_str());
    response->SetSucceeded(false);
}

void CSignInProxy::FailToConnect(SignInResponse* response) const {
    Fail(response, BaseHlpr::ConnectionFailureMessage(m_dashboardUrl));
}
