#include "proxies/PortalForm.h"

#include "base/Ascii.h"
#include "support/HttpEscape.h"
#include "support/Utf8.h"
#include "support/Xml.h"

namespace {

XmlDocPtr ParsePage(const char* page) {
    return XmlDocPtr(ParseXML(page, -1, MarkupMode::Tolerant));
}

bool IsHidden(_xmlNode* input) {
    return base::EqualsIgnoreCase(GetNodeAttrib(input, "type"), "hidden");
}

} // namespace

std::wstring GetFormAction(const char* page) {
    const XmlDocPtr document = ParsePage(page);
    return Utf8::ToWide(GetNodeAttrib(SimpleDoXPath("//form", document.get()), "action"));
}

std::wstring GetHiddenFormData(const char* page) {
    const XmlDocPtr document = ParsePage(page);
    std::vector<_xmlNode*> inputs;
    SimpleDoXPath("//input", document.get(), inputs);
    std::string body;
    for (_xmlNode* input : inputs) {
        if (IsHidden(input)) {
            const std::string value = GetNodeAttrib(input, "value");
            body += GetNodeAttrib(input, "name");
            body += '=';
            body += BaseHlpr::HttpEscape(value.c_str(), static_cast<unsigned>(value.size()));
            // After the last field too, deliberately: the service is sent the body so.
            body += '&';
        }
    }
    return Utf8::ToWide(body);
}

bool GetFailureMessage(const char* page, std::wstring& message) {
    const XmlDocPtr document = ParsePage(page);
    // The name is failureMessage; a tolerant parse has all names in lower case.
    _xmlNode* element = SimpleDoXPath("//failuremessage", document.get());
    if (element) {
        message = GetWideNodeValue(element);
    }
    return element != nullptr;
}
