#include "brevint/CreateFolderResponse.h"

#include "brevint/ErrorCodes.h"
#include "responses/ErrorMessages.h"
#include "support/Xml.h"

CCreateFolderResponse::CCreateFolderResponse() {
    InitErrorMaps();
}

CCreateFolderResponse::~CCreateFolderResponse() = default;

std::wstring CCreateFolderResponse::GetFolderId() const {
    const XmlDocPtr document = ParseReplyText();
    return GetWideNodeValue(SimpleDoXPath("/ResponseData/UniqueId", document.get()));
}

bool CCreateFolderResponse::GetSucceeded() const {
    return CBaseResponse::GetSucceeded();
}

double CCreateFolderResponse::GetErrorCode() const {
    return CBaseResponse::GetErrorCode();
}

void CCreateFolderResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::InvalidName, ErrorCode::CreateFolderInvalidName},
        {ErrorMessage::InvalidId, ErrorCode::CreateFolderInvalidId},
    };
    AddExactMessages(kExact);
    static constexpr ErrorRow kPrefixes[] = {
        {ErrorMessage::FolderExistsPrefix, ErrorCode::CreateFolderNameExists},
    };
    AddMessagePrefixes(kPrefixes);
}
