#include "brevint/GetFolderContentsResponse.h"

#include "brevint/ErrorCodes.h"
#include "brevint/FolderItem.h"
#include "responses/ErrorMessages.h"
#include "support/Xml.h"

namespace {

/// A flag is true unless its text holds an "f", so also when it is absent. That is deliberate.
bool IsTrue(const std::wstring& text) {
    return text.find(L'f') == std::wstring::npos;
}

} // namespace

CGetFolderContentsResponse::CGetFolderContentsResponse() {
    InitErrorMaps();
}

CGetFolderContentsResponse::~CGetFolderContentsResponse() = default;

void CGetFolderContentsResponse::ParseServerResponse() {
    m_document = ParseReply();
    if (m_document) {
        JudgeByMessage(m_document.get());
    }
}

void CGetFolderContentsResponse::GetFolderContents(std::vector<CFolderItem*>& items) {
    std::vector<_xmlNode*> nodes;
    SimpleDoXPath("/ResponseData/Item", m_document.get(), nodes);
    items.reserve(items.size() + nodes.size());
    for (_xmlNode* node : nodes) {
        items.push_back(GetFolderItemFromNode(node));
    }
}

CFolderItem* CGetFolderContentsResponse::GetFolderItemFromNode(_xmlNode* node) const {
    auto item = std::make_unique<CFolderItem>();
    item->SetUniqueId(GetValueFromChildNode(node, "UniqueId"));
    item->SetParentId(GetValueFromChildNode(node, "ParentId"));
    item->SetOwnerId(GetValueFromChildNode(node, "OwnerId"));
    item->SetName(GetValueFromChildNode(node, "Name"));
    item->SetDescription(GetValueFromChildNode(node, "Description"));
    item->SetCreated(GetValueFromChildNode(node, "DateCreated"));
    item->SetModified(GetValueFromChildNode(node, "DateModified"));
    item->SetSize(GetWideNodeValue(SimpleDoXPath("Data/Size", node)));
    item->SetIsLocked(IsTrue(GetValueFromChildNode(node, "Locked")));
    item->SetIsPublic(IsTrue(GetValueFromChildNode(node, "IsPublic")));
    item->SetLockedBy(GetValueFromChildNode(node, "LockedBy"));
    item->SetItemType(GetValueFromChildNode(node, "ItemType"));
    item->SetItemTypeDescription(GetValueFromChildNode(node, "ItemTypeDescription"));
    return item.release();
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
