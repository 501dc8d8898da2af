// Folders: what is in them, and new ones.

#include "base/Ascii.h"
#include "service/JsonReader.h"
#include "service/Resources.h"
#include "service/ServiceError.h"
#include "service/Text.h"
#include "service/XmlWriter.h"

namespace brevint::service {

namespace {

constexpr int kFolderType = 0;

// The numbers that stand in ItemType, with their descriptions.
std::pair<int, const char*> TypeOf(const Item& item) {
    const std::string name = base::ToLower(item.name);
    if (item.IsFolder()) {
        return {kFolderType, "Folder"};
    }
    if (name.ends_with(".project")) {
        return {2, "Project"};
    }
    if (name.ends_with(".template")) {
        return {3, "Template"};
    }
    return {1, "File"};
}

void WriteItem(XmlWriter& xml, const Item& item) {
    const auto [type, typeDescription] = TypeOf(item);
    xml.Open("Item")
        .Element("UniqueId", item.id)
        .Element("ParentId", item.parentId)
        .Element("OwnerId", item.ownerId)
        .Element("Name", item.name)
        .Element("Description", item.description)
        .Element("DateCreated", FormatUtc(item.created))
        .Element("DateModified", FormatUtc(item.modified));
    if (!item.IsFolder()) {
        xml.Open("Data").Element("Size", std::to_string(item.content->Size())).Close();
    }
    xml.Flag("Locked", !item.lockedBy.empty())
        .Element("LockedBy", item.lockedBy)
        .Flag("IsPublic", item.isPublic)
        .Element("ItemType", std::to_string(type))
        .Element("ItemTypeDescription", typeDescription)
        .Close();
}

HttpReply ListFolder(const Call& call, const Repository& repository) {
    XmlWriter xml;
    xml.Open("ResponseData");
    for (const Item& item : repository.Children(call.Guid())) {
        WriteItem(xml, item);
    }
    xml.Close();
    return XmlReply(xml.Document());
}

HttpReply CreateFolder(const Call& call, Repository& repository) {
    const std::string parentId = call.Guid();
    const JsonReader body(call.request.Header("Content-Type"), call.request.body,
                          {"ItemType", "Name"});
    if (body.Integer("ItemType") != kFolderType) {
        throw BadRequest("Only folders can be created here.");
    }
    const std::string id = repository.AddFolder(parentId, body.String("Name"), *call.user);
    XmlWriter xml;
    xml.Open("ResponseData").Element("UniqueId", id).Close();
    return XmlReply(xml.Document());
}

} // namespace

void AddFolderResources(Router& router, ServiceState& state) {
    router.Add({"GET", "Repository/Items/{id}/Items", Access::SignedIn, "",
                "`Item` for each item of a folder, by name"},
               [&state](const Call& call) { return ListFolder(call, state.repository); });
    router.Add({"POST", "Repository/Items/{id}/Items", Access::SignedIn,
                R"(`{"ItemType":0,"Name":"…"}`)", "`UniqueId` of the new folder"},
               [&state](const Call& call) { return CreateFolder(call, state.repository); });
}

} // namespace brevint::service
