#include "responses/FolderListing.h"

#include "brevint/FolderItem.h"
#include "support/Utf8.h"
#include "support/Xml.h"
#include "support/XmlElementSink.h"

#include <algorithm>
#include <array>
#include <bitset>
#include <iterator>
#include <utility>

namespace {

struct TextField {
    std::string_view path;
    void (CFolderItem::*set)(const std::wstring&);
    std::string_view FolderItemView::*view;
};

constexpr TextField kTexts[] = {
    {"UniqueId", &CFolderItem::SetUniqueId, &FolderItemView::id},
    {"ParentId", &CFolderItem::SetParentId, &FolderItemView::parentId},
    {"OwnerId", &CFolderItem::SetOwnerId, &FolderItemView::ownerId},
    {"Name", &CFolderItem::SetName, &FolderItemView::name},
    {"Description", &CFolderItem::SetDescription, &FolderItemView::description},
    {"DateCreated", &CFolderItem::SetCreated, &FolderItemView::created},
    {"DateModified", &CFolderItem::SetModified, &FolderItemView::modified},
    {"Data/Size", &CFolderItem::SetSize, &FolderItemView::size},
    {"LockedBy", &CFolderItem::SetLockedBy, &FolderItemView::lockedBy},
    {"ItemType", &CFolderItem::SetItemType, &FolderItemView::type},
    {"ItemTypeDescription", &CFolderItem::SetItemTypeDescription, &FolderItemView::typeDescription},
};

struct Flag {
    std::string_view path;
    void (CFolderItem::*set)(bool);
    bool FolderItemView::*view;
};

constexpr Flag kFlags[] = {
    {"Locked", &CFolderItem::SetIsLocked, &FolderItemView::isLocked},
    {"IsPublic", &CFolderItem::SetIsPublic, &FolderItemView::isPublic},
};

/// A flag is true unless its text holds an "f", so also when it is absent. That is deliberate.
bool IsTrue(std::string_view text) {
    return text.find('f') == std::string_view::npos;
}

/// The element that a field's path, of one or two names, leads to. Most have one.
_xmlNode* Find(_xmlNode* element, const std::string& path) {
    const bool isName = path.find('/') == std::string::npos;
    return isName ? FindChildNode(element, path.c_str()) : SimpleDoXPath(path.c_str(), element);
}

/// Where the fields stand in an item, texts first.
constexpr auto kPaths = [] {
    std::array<std::string_view, std::size(kTexts) + std::size(kFlags)> paths;
    std::ranges::transform(kTexts, paths.begin(), &TextField::path);
    std::ranges::transform(kFlags, paths.begin() + std::size(kTexts), &Flag::path);
    return paths;
}();

} // namespace

/// Adds items to a listing while a reply is read. Where several elements of an item have the path
/// of a field, the first counts.
class FolderListing::Reader : public XmlElementSink {
public:
    explicit Reader(FolderListing& listing) : m_listing(listing) {}

    void Begin(std::string_view name) override {
        switch (++m_depth) {
        case 1:
            m_listing.m_starts.push_back(m_listing.m_fields.size());
            m_known.reset();
            break;
        case 2:
            if (!BeginField(name)) {
                m_child = name;
            }
            break;
        case 3:
            if (m_fieldDepth == 0) {
                BeginField(m_child + '/' + std::string(name));
            }
            break;
        default: break;
        }
    }

    void Text(std::string_view text) override {
        if (m_fieldDepth != 0) {
            m_listing.m_fields += text;
        }
    }

    void End() override {
        if (m_depth-- == m_fieldDepth) {
            m_listing.m_fields += '\0';
            m_fieldDepth = 0;
        }
    }

private:
    /// False if no field has that path, or the item has had that field.
    bool BeginField(std::string_view path) {
        const auto field =
            static_cast<std::size_t>(std::ranges::find(kPaths, path) - kPaths.begin());
        if (field == kPaths.size() || m_known[field]) {
            return false;
        }
        m_known.set(field);
        m_listing.m_fields += static_cast<char>(field);
        m_fieldDepth = m_depth;
        return true;
    }

    FolderListing& m_listing;
    int m_depth = 0;      ///< Of the element that is read; an item's is 1.
    int m_fieldDepth = 0; ///< Of the element that is a field; 0 outside such.
    std::string m_child;  ///< The name of the element of depth 2, if that is no field.
    std::bitset<kPaths.size()> m_known;
};

XmlDocPtr FolderListing::Read(std::string_view reply) {
    *this = {};
    // No more is needed: "<Name></Name>" becomes two bytes, and no text grows.
    m_fields.reserve(reply.size());
    Reader reader(*this);
    XmlDocPtr document(ParseXML(reply, "/ResponseData/Item", reader));
    if (!document) {
        *this = {};
    }
    return document;
}

FolderItemView FolderListing::At(std::size_t index) const {
    std::string_view fields = FieldsOf(index);
    FolderItemView item;
    for (const TextField& text : kTexts) {
        item.*text.view = ""; // with its zero
    }
    while (!fields.empty()) {
        const std::size_t field = static_cast<unsigned char>(fields.front());
        const std::string_view text = fields.substr(1, fields.find('\0', 1) - 1);
        fields.remove_prefix(1 + text.size() + 1);
        if (field < std::size(kTexts)) {
            item.*kTexts[field].view = text;
        } else {
            item.*kFlags[field - std::size(kTexts)].view = IsTrue(text);
        }
    }
    return item;
}

void FolderListing::KeepOnly(std::size_t index) {
    m_fields = std::string(FieldsOf(index));
    m_starts = {0};
}

void FolderListing::AppendTo(std::vector<CFolderItem*>& records) const {
    records.reserve(records.size() + Count());
    std::wstring value;
    for (std::size_t i = 0; i < Count(); ++i) {
        const FolderItemView item = At(i);
        auto record = std::make_unique<CFolderItem>();
        for (const TextField& text : kTexts) {
            Utf8::ToWide(item.*text.view, value);
            (record.get()->*text.set)(value);
        }
        for (const Flag& flag : kFlags) {
            (record.get()->*flag.set)(item.*flag.view);
        }
        records.push_back(record.release());
    }
}

std::string_view FolderListing::FieldsOf(std::size_t index) const {
    const std::size_t end = index + 1 < Count() ? m_starts[index + 1] : m_fields.size();
    return std::string_view(m_fields).substr(m_starts[index], end - m_starts[index]);
}

std::unique_ptr<CFolderItem> FolderListing::Item(_xmlNode* element) {
    auto record = std::make_unique<CFolderItem>();
    for (const TextField& text : kTexts) {
        (record.get()->*text.set)(GetWideNodeValue(Find(element, std::string(text.path))));
    }
    for (const Flag& flag : kFlags) {
        (record.get()->*flag.set)(IsTrue(GetNodeValue(Find(element, std::string(flag.path)))));
    }
    return record;
}
