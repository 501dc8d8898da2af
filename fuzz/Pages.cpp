#include "fuzz/Fuzz.h"
#include "responses/PortalForm.h"

void Fuzz(std::string_view input) {
    const std::string page(input);
    GetFormAction(page.c_str());
    const std::wstring fields = GetHiddenFormData(page.c_str());
    Require(fields.empty() || (fields.ends_with(L'&') && fields.find(L'=') != std::wstring::npos));
    std::wstring message = L"unchanged";
    Require(PortalPage(page.c_str()).FailureMessage(message) || message == L"unchanged");
}
