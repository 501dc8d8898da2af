#include "brevint/PathResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"
#include "support/Xml.h"

CPathResponse::CPathResponse() {
    InitErrorMaps();
}

CPathResponse::~CPathResponse() = default;

void CPathResponse::ParseServerResponse() {
    if (GetStatusCode() != 200 || IsReplyEmpty()) {
        CBaseResponse::ParseServerResponse();
        return;
    }
    if (const XmlDocPtr document = ParseReply()) {
        m_path = GetWideNodeValue(SimpleDoXPath("/ResponseData/Path", document.get()));
        SetErrorCode(ErrorCode::Success);
    }
}

const wchar_t* CPathResponse::GetPath() const {
    return m_path.c_str();
}

void CPathResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::ItemNotFound, ErrorCode::PathItemNotFound},
        {ErrorMessage::InvalidId, ErrorCode::PathInvalidId},
    };
    AddExactMessages(kExact);
}
