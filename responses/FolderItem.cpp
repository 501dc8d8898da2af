#include "brevint/FolderItem.h"

CFolderItem::CFolderItem() = default;

CFolderItem::~CFolderItem() = default;

const std::wstring& CFolderItem::GetUniqueId() const {
    return m_uniqueId;
}

const std::wstring& CFolderItem::GetParentId() const {
    return m_parentId;
}

const std::wstring& CFolderItem::GetOwnerId() const {
    return m_ownerId;
}

const std::wstring& CFolderItem::GetName() const {
    return m_name;
}

const std::wstring& CFolderItem::GetDescription() const {
    return m_description;
}

const std::wstring& CFolderItem::GetCreated() const {
    return m_created;
}

const std::wstring& CFolderItem::GetModified() const {
    return m_modified;
}

const std::wstring& CFolderItem::GetSize() const {
    return m_size;
}

bool CFolderItem::GetIsLocked() const {
    return m_isLocked;
}

const std::wstring& CFolderItem::GetLockedBy() const {
    return m_lockedBy;
}

bool CFolderItem::GetIsPublic() const {
    return m_isPublic;
}

const std::wstring& CFolderItem::GetItemType() const {
    return m_itemType;
}

const std::wstring& CFolderItem::GetItemTypeDescription() const {
    return m_itemTypeDescription;
}

void CFolderItem::SetUniqueId(const std::wstring& value) {
    m_uniqueId = value;
}

void CFolderItem::SetParentId(const std::wstring& value) {
    m_parentId = value;
}

void CFolderItem::SetOwnerId(const std::wstring& value) {
    m_ownerId = value;
}

void CFolderItem::SetName(const std::wstring& value) {
    m_name = value;
}

void CFolderItem::SetDescription(const std::wstring& value) {
    m_description = value;
}

void CFolderItem::SetCreated(const std::wstring& value) {
    m_created = value;
}

void CFolderItem::SetModified(const std::wstring& value) {
    m_modified = value;
}

void CFolderItem::SetSize(const std::wstring& value) {
    m_size = value;
}

void CFolderItem::SetIsLocked(bool value) {
    m_isLocked = value;
}

void CFolderItem::SetLockedBy(const std::wstring& value) {
    m_lockedBy = value;
}

void CFolderItem::SetIsPublic(bool value) {
    m_isPublic = value;
}

void CFolderItem::SetItemType(const std::wstring& value) {
    m_itemType = value;
}

void CFolderItem::SetItemTypeDescription(const std::wstring& value) {
    m_itemTypeDescription = value;
}
