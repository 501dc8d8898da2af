#pragma once

#include <string_view>

namespace calls {

/// Whether a Content-Type is that of a page of HTML.
bool IsPageType(std::wstring_view contentType);

/// Whether content without a Content-Type begins as a page does.
bool BeginsAsPage(std::string_view content);

} // namespace calls
