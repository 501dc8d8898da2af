// Who is signed in, and what the service is.

#include "service/Resources.h"
#include "service/XmlWriter.h"

namespace brevint::service {

namespace {

constexpr char kServiceVersion[] = "4.2.0.118";
constexpr const char* kDesktopVersions[] = {"4.0.0", "4.1.0", "4.2.0"};

HttpReply TellIdentity(const Call& call) {
    XmlWriter xml;
    xml.Open("ResponseData")
        .Element("IdentifyingPartyUri", call.serviceUrl + "portal/login")
        .Element("Name", call.user->name)
        .Flag("IsAdmin", call.user->role == Role::Administrator)
        .Flag("IsUser", true) // administrators are users as well
        .Close();
    return XmlReply(xml.Document());
}

HttpReply TellVersions(const Call&) {
    XmlWriter xml;
    xml.Open("ResponseData").Element("Version", kServiceVersion).Open("Client");
    for (const char* version : kDesktopVersions) {
        xml.Element("Version", version);
    }
    xml.Close().Close();
    return XmlReply(xml.Document());
}

} // namespace

void AddAccountResources(Router& router) {
    router.Add({"GET", "Application/Identity", Access::SignedIn, "",
                "`IdentifyingPartyUri`, `Name`, `IsAdmin`, `IsUser`"},
               TellIdentity);
    router.Add({"GET", "Application/Versions", Access::SignedIn, "",
                "`Version`, `Client/Version` for each desktop version that is accepted"},
               TellVersions);
}

} // namespace brevint::service
