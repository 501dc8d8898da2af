#pragma once

#include "brevint/XmlDocPtr.h"

#include <string>

/// A page with which the identity portal answers credentials: UTF-8 text, well-formed or not. It is
/// parsed once, however much is read from it; one that cannot be parsed holds nothing.
class PortalPage {
public:
    explicit PortalPage(const char* page);

    /// Action URL of the first form, as it stands; empty when there is none.
    std::wstring FormAction() const;
    /// The hidden input fields, in page order, as an application/x-www-form-urlencoded body. "&"
    /// follows every field, the last one too. Empty when there are none.
    std::wstring HiddenFormData() const;
    /// Text of the first `failureMessage` element; false when there is none.
    bool FailureMessage(std::wstring& message) const;

private:
    XmlDocPtr m_document;
};

/// PortalPage::FormAction of a page of which nothing else is read.
std::wstring GetFormAction(const char* page);
/// PortalPage::HiddenFormData, likewise.
std::wstring GetHiddenFormData(const char* page);
