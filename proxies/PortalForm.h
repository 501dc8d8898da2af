#pragma once

#include <string>

// Readers of the pages with which the identity portal answers credentials. A page is UTF-8 text,
// well-formed or not.

/// Action URL of the page's first form, as it stands; empty when there is none.
std::wstring GetFormAction(const char* page);

/// The page's hidden input fields, in page order, as an application/x-www-form-urlencoded body in
/// which "&" follows every field, the last one too; empty when there are none.
std::wstring GetHiddenFormData(const char* page);

/// Text of the page's first `failureMessage` element; false when there is none.
bool GetFailureMessage(const char* page, std::wstring& message);
