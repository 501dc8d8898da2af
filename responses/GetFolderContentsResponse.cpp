#include "brevint/GetFolderContentsResponse.h"

#include "brevint/ErrorCodes.h"
#include "brevint/FolderItem.h"
#include "responses/AllOrNone.h"
#include "responses/ErrorMessages.h"
#include "responses/FolderListing.h"
#include "support/Xml.h"

CGetFolderContentsResponse::CGetFolderContentsResponse()
    : m_listing(std::make_unique<FolderListing>()) {
    InitErrorMaps();
}

CGetFolderContentsResponse::~CGetFolderContentsResponse() = default;

void CGetFolderContentsResponse::ParseServerResponse() {
    *m_listing = {};
    std::string repaired;
    const XmlDocPtr document(BeginParse() ? m_listing->Read(ReplyAsUtf8(repaired)) : nullptr);
    if (document) {
        JudgeByMessage(document.get());
    }
}

void CGetFolderContentsResponse::GetFolderContents(std::vector<CFolderItem*>& items) {
    if (!AppendAllOrNone(items, [&] { m_listing->AppendTo(items); })) {
        SetErrorCode(ErrorCode::EmptyReply);
    }
}

CFolderItem* CGetFolderContentsResponse::GetFolderItemFromNode(_xmlNode* node) const {
    return FolderListing::Item(node).release();
}

std::wstring CGetFolderContentsResponse::GetValueFromChildNode(_xmlNode* node,
                                                               const char* name) const {
    return GetWideNodeValue(FindChildNode(node, name));
}

void CGetFolderContentsResponse::InitErrorMaps() {
    static constexpr ErrorRow kExact[] = {
        {ErrorMessage::AuthorizationFailed, ErrorCode::AuthorizationFailed},
        {ErrorMessage::ItemNotFound, ErrorCode::FolderContentsItemNotFound},
        {ErrorMessage::InvalidId, ErrorCode::FolderContentsInvalidId},
        {ErrorMessage::NotAFolder, ErrorCode::FolderContentsNotAFolder},
    };
    AddExactMessages(kExact);
}
