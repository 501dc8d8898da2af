#pragma once

#include "support/XmlElementSink.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class CFolderItem;

/// One item of a listing.
struct FolderItemView {
    std::string_view id, parentId, ownerId, name, description, created, modified, size, lockedBy,
        type, typeDescription;
    bool isLocked = false;
    bool isPublic = false;
};

/// The items of a folder as the service described them, in a form that takes a tenth of the memory
/// of the elements that they were read from.
class FolderListing : public XmlElementSink {
public:
    /// Drops all items, and expects such as take so many bytes in a reply.
    void Restart(std::size_t bytes);
    /// Adds an item. A field that its element lacks is empty.
    void Add(_xmlNode* element) override;
    std::size_t Count() const { return m_starts.size(); }
    /// What is known of an item. The texts are UTF-8, each followed by a zero, and live until the
    /// listing changes.
    FolderItemView At(std::size_t index) const;
    /// Keeps one item alone.
    void KeepOnly(std::size_t index);
    /// Appends a new record for every item, in order; the caller deletes them.
    void AppendTo(std::vector<CFolderItem*>& records) const;

    /// A new record from one element, which need not be of a listing.
    static std::unique_ptr<CFolderItem> Item(_xmlNode* element);

private:
    /// The fields of all items in UTF-8, each ended by a zero.
    std::string m_fields;
    std::vector<std::size_t> m_starts; ///< Where each item begins there.
};
