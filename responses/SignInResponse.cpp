#include "brevint/SignInResponse.h"

SignInResponse::SignInResponse() = default;

SignInResponse::~SignInResponse() = default;

const wchar_t* SignInResponse::GetErrorMessage() const {
    return m_errorMessage.c_str();
}

const wchar_t* SignInResponse::GetCookie() const {
    return m_cookie.c_str();
}

bool SignInResponse::GetSucceeded() const {
    return m_succeeded;
}

void SignInResponse::SetErrorMessage(const wchar_t* message) {
    m_errorMessage = message ? message : L"";
}

void SignInResponse::SetCookie(const wchar_t* cookie) {
    m_cookie = cookie ? cookie : L"";
}

void SignInResponse::SetSucceeded(bool succeeded) {
    m_succeeded = succeeded;
}
