#pragma once

#include "brevint/XmlDocPtr.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class CFolderItem;
struct _xmlNode;

/// One item of a listing. The texts are UTF-8, each followed by a zero. Without a word of the
/// service a text is empty and a flag true.
struct FolderItemView {
    std::string_view id, parentId, ownerId, name, description, created, modified, size, lockedBy,
        type, typeDescription;
    bool isLocked = true;
    bool isPublic = true;
};

/// The items of a folder as the service described them, in a form that takes a tenth of the memory
/// of the elements that they were read from.
class FolderListing {
public:
    /// Replaces all items by those of a reply. Returns the reply's document without its items; null
    /// if the reply is not XML, and then there are no items.
    XmlDocPtr Read(std::string_view reply);
    std::size_t Count() const { return m_starts.size(); }
    /// What is known of an item. The texts live until the listing changes.
    FolderItemView At(std::size_t index) const;
    /// Keeps one item alone.
    void KeepOnly(std::size_t index);
    /// Appends a new record for every item, in order; the caller deletes them.
    void AppendTo(std::vector<CFolderItem*>& records) const;

    /// A new record from one element, which need not be of a listing.
    static std::unique_ptr<CFolderItem> Item(_xmlNode* element);

private:
    class Reader;

    std::string_view FieldsOf(std::size_t index) const;

    /// The fields of all items, without those that the reply lacks. Each is a byte that says which
    /// field it is, its text in UTF-8, and a zero.
    std::string m_fields;
    std::vector<std::size_t> m_starts; ///< Where each item begins there.
};
