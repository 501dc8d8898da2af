#include "responses/PortalForm.h"

#include "base/Ascii.h"
#include "support/HttpEscape.h"
#include "support/Utf8.h"
#include "support/Xml.h"

#include <algorithm>
#include <string_view>

namespace {

/// Letter case is folded as in HTML, in ASCII alone.
bool IsHidden(_xmlNode* input) {
    return base::EqualsIgnoreCase(GetNodeAttrib(input, "type"), "hidden");
}

} // namespace

PortalPage::PortalPage(const char* page) : m_document(ParseXML(page, -1, MarkupMode::Tolerant)) {}

std::wstring PortalPage::FormAction() const {
    return Utf8::ToWide(GetNodeAttrib(SimpleDoXPath("//form", m_document.get()), "action"));
}

std::wstring PortalPage::HiddenFormData() const {
    std::vector<_xmlNode*> inputs;
    SimpleDoXPath("//input", m_document.get(), inputs);
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

bool PortalPage::FailureMessage(std::wstring& message) const {
    // The name is failureMessage; a tolerant parse has all names in lower case.
    _xmlNode* element = SimpleDoXPath("//failuremessage", m_document.get());
    if (element) {
        message = GetWideNodeValue(element);
    }
    return element != nullptr;
}

std::wstring GetFormAction(const char* page) {
    return PortalPage(page).FormAction();
}

std::wstring GetHiddenFormData(const char* page) {
    return PortalPage(page).HiddenFormData();
}
