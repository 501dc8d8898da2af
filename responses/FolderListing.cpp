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
};

constexpr TextField kTexts[] = {
    {"UniqueId", &CFolderItem::SetUniqueId},
    {"ParentId", &CFolderItem::SetParentId},
    {"OwnerId", &CFolderItem::SetOwnerId},
    {"Name", &CFolderItem::SetName},
    {"Description", &CFolderItem::SetDescription},
    {"DateCreated", &CFolderItem::SetCreated},
    {"DateModified", &CFolderItem::SetModified},
    {"Data/Size", &CFolderItem::SetSize},
    {"LockedBy", &CFolderItem::SetLockedBy},
    {"ItemType", &CFolderItem::SetItemType},
    {"ItemTypeDescription", &CFolderItem::SetItemTypeDescription},
};

struct Flag {
    const char* path;
    void (CFolderItem::*set)(bool);
};

constexpr Flag kFlags[] = {
    {"Locked", &CFolderItem::SetIsLocked},
    {"IsPublic", &CFolderItem::SetIsPublic},
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
    m_count = 0;
    m_fields = {};
    m_fields.reserve(bytes);
}

void FolderListing::Add(_xmlNode* element) {
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
    ++m_count;
}

void FolderListing::AppendTo(std::vector<CFolderItem*>& records) const {
    records.reserve(records.size() + m_count);
    std::string_view fields = m_fields;
    std::wstring value;
    for (std::size_t i = 0; i < m_count; ++i) {
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
