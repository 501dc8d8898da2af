#include "responses/FolderListing.h"

#include "brevint/FolderItem.h"
#include "support/Utf8.h"
#include "support/Xml.h"

#include <memory>
#include <string_view>

namespace {

struct TextField {
    const char* path;
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
    const char* path;
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
_xmlNode* Find(_xmlNode* element, const char* path) {
    const bool isName = std::string_view(path).find('/') == std::string_view::npos;
    return isName ? FindChildNode(element, path) : SimpleDoXPath(path, element);
}

/// Takes the first of the fields that are still there.
std::string_view NextField(std::string_view& fields) {
    const std::string_view field = fields.substr(0, fields.find('\0'));
    fields.remove_prefix(field.size() + 1);
    return field;
}

} // namespace

void FolderListing::Restart(std::size_t bytes) {
    m_starts = {};
    m_fields = {};
    m_fields.reserve(bytes);
}

void FolderListing::Add(_xmlNode* element) {
    m_starts.push_back(m_fields.size());
    const auto keep = [&](const char* path) {
        AppendNodeValue(Find(element, path), m_fields);
        m_fields += '\0';
    };
    for (const TextField& text : kTexts) {
        keep(text.path);
    }
    for (const Flag& flag : kFlags) {
        keep(flag.path);
    }
}

FolderItemView FolderListing::At(std::size_t index) const {
    std::string_view fields = std::string_view(m_fields).substr(m_starts[index]);
    FolderItemView item;
    for (const TextField& text : kTexts) {
        item.*text.view = NextField(fields);
    }
    for (const Flag& flag : kFlags) {
        item.*flag.view = IsTrue(NextField(fields));
    }
    return item;
}

void FolderListing::KeepOnly(std::size_t index) {
    const std::size_t end = index + 1 < m_starts.size() ? m_starts[index + 1] : m_fields.size();
    m_fields = m_fields.substr(m_starts[index], end - m_starts[index]);
    m_starts = {0};
}

void FolderListing::AppendTo(std::vector<CFolderItem*>& records) const {
    records.reserve(records.size() + m_starts.size());
    std::string_view fields = m_fields;
    std::wstring value;
    for (std::size_t i = 0; i < m_starts.size(); ++i) {
        auto record = std::make_unique<CFolderItem>();
        for (const TextField& text : kTexts) {
            Utf8::ToWide(NextField(fields), value);
            (record.get()->*text.set)(value);
        }
        for (const Flag& flag : kFlags) {
            (record.get()->*flag.set)(IsTrue(NextField(fields)));
        }
        records.push_back(record.release());
    }
}

std::unique_ptr<CFolderItem> FolderListing::Item(_xmlNode* element) {
    auto record = std::make_unique<CFolderItem>();
    for (const TextField& text : kTexts) {
        (record.get()->*text.set)(GetWideNodeValue(Find(element, text.path)));
    }
    for (const Flag& flag : kFlags) {
        (record.get()->*flag.set)(IsTrue(GetNodeValue(Find(element, flag.path))));
    }
    return record;
}
