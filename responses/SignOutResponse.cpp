#include "brevint/SignOutResponse.h"

#include "brevint/ErrorCodes.h"

CSignOutResponse::CSignOutResponse() {
    InitErrorMaps();
}

CSignOutResponse::~CSignOutResponse() = default;

void CSignOutResponse::ParseServerResponse() {
    SetErrorCode(ErrorCode::Success);
}

bool CSignOutResponse::GetSignOutResult() const {
    return GetStatusCode() == 200;
}

void CSignOutResponse::InitErrorMaps() {}
