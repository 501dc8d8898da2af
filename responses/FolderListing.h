#pragma once

#include "support/XmlElementSink.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

class CFolderItem;

/// The items of a folder as the service described them, in a form that takes a tenth of the memory
/// of the elements that they were read from.
class FolderListing : public XmlElementSink {
public:
    /// Drops all items, and expects such as take so many bytes in a reply.
    void Restart(std::size_t bytes);
    /// Adds an item. A field that its element lacks is empty.
    void Add(_xmlNode* element) override;
    /// Appends a new record for every item, in order; the caller deletes them.
    void AppendTo(std::vector<CFolderItem*>& records) const;

    /// A new record from one element, which need not be of a listing.
    static std::unique_ptr<CFolderItem> Item(_xmlNode* element);

private:
    std::size_t m_count = 0;
    /// The fields of all items in UTF-8, each ended by a zero.
    std::string m_fields;
};
