#include "brevint/VersionInfoResponse.h"

#include "brevint/ErrorCodes.h"
#include "support/SimpleXPathHelper.h"
#include "support/Xml.h"

CVersionInfoResponse::CVersionInfoResponse() {
    InitErrorMaps();
}

CVersionInfoResponse::~CVersionInfoResponse() = default;

void CVersionInfoResponse::ParseServerResponse() {
    const XmlDocPtr document = ParseReply();
    if (!document) {
        return;
    }
    CSimpleXPathHelper xpath(document.get());
    m_systemVersion = GetWideNodeValue(xpath.DoXPath("//ResponseData/Version", nullptr));
    std::vector<_xmlNode*> versions;
    xpath.DoXPath("//ResponseData/Client/Version", versions, nullptr);
    for (_xmlNode* version : versions) {
        m_compatibleDesktopVersions.push_back(GetWideNodeValue(version));
    }
    SetErrorCode(ErrorCode::Success);
}

const wchar_t* CVersionInfoResponse::GetSystemVersion() const {
    return m_systemVersion.c_str();
}

std::vector<std::wstring> CVersionInfoResponse::GetCompatableDesktopVersions() const {
    return m_compatibleDesktopVersions;
}

void CVersionInfoResponse::InitErrorMaps() {}
