#include "brevint/IdentityResponse.h"

#include "base/Ascii.h"
#include "brevint/ErrorCodes.h"
#include "brevint/UserRole.h"
#include "support/SimpleXPathHelper.h"
#include "support/Xml.h"

namespace {

bool IsTrue(_xmlNode* node) {
    return base::EqualsIgnoreCase(GetNodeValue(node), "true");
}

} // namespace

CIdentityResponse::CIdentityResponse() {
    InitErrorMaps();
}

CIdentityResponse::~CIdentityResponse() = default;

void CIdentityResponse::ParseServerResponse() {
    SetErrorCode(ErrorCode::ReplyNotXml);
    const XmlDocPtr document = ParseReplyText();
    if (!document) {
        return;
    }
    CSimpleXPathHelper xpath(document.get());
    _xmlNode* party = xpath.DoXPath("/ResponseData/IdentifyingPartyUri", nullptr);
    if (!party) {
        SetErrorCode(ErrorCode::IdentityPartyMissing);
        return;
    }
    _xmlNode* name = xpath.DoXPath("/ResponseData/Name", nullptr);
    if (!name) {
        SetErrorCode(ErrorCode::IdentityNameMissing);
        return;
    }
    m_identifyingPartyUrl = GetWideNodeValue(party);
    m_userName = GetWideNodeValue(name);

    if (IsTrue(xpath.DoXPath("/ResponseData/IsAdmin", nullptr))) {
        m_userRole = UserRole::Administrator;
        SetErrorCode(ErrorCode::Success);
    } else if (IsTrue(xpath.DoXPath("/ResponseData/IsUser", nullptr))) {
        m_userRole = UserRole::User;
        SetErrorCode(ErrorCode::Success);
    } else {
        SetErrorCode(ErrorCode::IdentityRoleMissing);
    }
}

int CIdentityResponse::GetUserRole() const {
    return m_userRole;
}

const wchar_t* CIdentityResponse::GetIdentifyingPartyUrl() const {
    return m_identifyingPartyUrl.c_str();
}

const wchar_t* CIdentityResponse::GetErrorMessage() const {
    return m_errorMessage.c_str();
}

const wchar_t* CIdentityResponse::GetUsername() const {
    return m_userName.c_str();
}

void CIdentityResponse::SetErrorMessage(const wchar_t* message) {
    m_errorMessage = message ? message : L"";
}

void CIdentityResponse::InitErrorMaps() {}
