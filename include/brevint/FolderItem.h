#pragma once

#include "brevint/Export.h"

#include <string>

/// One item of the repository, a file or a folder: a plain record. All texts are as the server sent
/// them, dates and sizes too.
class BREVINT_API CFolderItem {
public:
    CFolderItem();
    ///@{
    /// A plain value.
    CFolderItem(const CFolderItem&) = default;
    CFolderItem(CFolderItem&&) = default;
    CFolderItem& operator=(const CFolderItem&) = default;
    CFolderItem& operator=(CFolderItem&&) = default;
    ///@}
    virtual ~CFolderItem();

    /// Identifier, as the calls of IRepositoryProxy take it.
    const std::wstring& GetUniqueId() const;
    /// Identifier of the folder that holds the item.
    const std::wstring& GetParentId() const;
    /// Identifier of the item's owner.
    const std::wstring& GetOwnerId() const;
    /// Name within the folder.
    const std::wstring& GetName() const;
    /// Text for people.
    const std::wstring& GetDescription() const;
    /// When the item was made.
    const std::wstring& GetCreated() const;
    /// When the item was last changed.
    const std::wstring& GetModified() const;
    /// Size in bytes, as text; empty for an item without data.
    const std::wstring& GetSize() const;
    /// True when the item is checked out, and when the server does not say.
    bool GetIsLocked() const;
    /// Who has the item checked out.
    const std::wstring& GetLockedBy() const;
    /// True when the item is public, and when the server does not say.
    bool GetIsPublic() const;
    /// The item's type: a number of the server, as text.
    const std::wstring& GetItemType() const;
    /// The type in words.
    const std::wstring& GetItemTypeDescription() const;

    ///@{
    /// Stores what the getter of that name returns.
    void SetUniqueId(const std::wstring& value);
    void SetParentId(const std::wstring& value);
    void SetOwnerId(const std::wstring& value);
    void SetName(const std::wstring& value);
    void SetDescription(const std::wstring& value);
    void SetCreated(const std::wstring& value);
    void SetModified(const std::wstring& value);
    void SetSize(const std::wstring& value);
    void SetIsLocked(bool value);
    void SetLockedBy(const std::wstring& value);
    void SetIsPublic(bool value);
    void SetItemType(const std::wstring& value);
    void SetItemTypeDescription(const std::wstring& value);
    ///@}

private:
    std::wstring m_uniqueId;
    std::wstring m_parentId;
    std::wstring m_ownerId;
    std::wstring m_name;
    std::wstring m_description;
    std::wstring m_created;
    std::wstring m_modified;
    std::wstring m_size;
    bool m_isLocked = false;
    std::wstring m_lockedBy;
    bool m_isPublic = false;
    std::wstring m_itemType;
    std::wstring m_itemTypeDescription;
};
