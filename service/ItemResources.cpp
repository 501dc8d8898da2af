// What can be done with any item: its path, checking it out and in, deleting it.

#include "service/JsonReader.h"
#include "service/Resources.h"
#include "service/ServiceError.h"
#include "service/XmlWriter.h"

namespace brevint::service {

namespace {

HttpReply Done() {
    XmlWriter xml;
    xml.Open("ResponseData").Close();
    return XmlReply(xml.Document());
}

HttpReply TellPath(const Call& call, const Repository& repository) {
    XmlWriter xml;
    xml.Open("ResponseData").Element("Path", repository.Path(call.Guid())).Close();
    return XmlReply(xml.Document());
}

HttpReply SetLocked(const Call& call, Repository& repository) {
    const JsonReader body(call.request.Header("Content-Type"), call.request.body,
                          {"ItemId", "Locked"});
    const std::string id = body.Guid("ItemId");
    if (id != call.Guid()) {
        throw BadRequest("The body names another item than the address.");
    }
    if (body.Boolean("Locked")) {
        repository.CheckOut(id, *call.user);
    } else {
        repository.CheckIn(id, *call.user);
    }
    return Done();
}

HttpReply DeleteItems(const Call& call, Repository& repository) {
    const JsonReader body(call.request.Header("Content-Type"), call.request.body, {"ItemIds"});
    const std::vector<std::string> ids = body.Guids("ItemIds");
    if (ids.empty()) {
        throw BadRequest("The body names no item.");
    }
    repository.Remove(ids, *call.user);
    return Done();
}

} // namespace

void AddItemResources(Router& router, ServiceState& state) {
    router.Add({"GET", "Repository/Items/{id}/Path", Access::SignedIn, "", "`Path`"},
               [&state](const Call& call) { return TellPath(call, state.repository); });
    router.Add({"PUT", "Repository/Items/{id}/Locked", Access::SignedIn,
                R"(`{"ItemId":"ID","Locked":true}`)",
                "nothing; checks a file out (`true`) or in (`false`)"},
               [&state](const Call& call) { return SetLocked(call, state.repository); });
    router.Add({"DELETE", "Repository/Items", Access::SignedIn, R"(`{"ItemIds":["ID",…]}`)",
                "nothing; deletes all of them or none"},
               [&state](const Call& call) { return DeleteItems(call, state.repository); });
}

} // namespace brevint::service
