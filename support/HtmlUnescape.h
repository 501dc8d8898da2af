#pragma once

#include <string>

namespace BaseHlpr {

/// Resolves HTML character entities, named and numeric ("&eacute;", "&#233;", "&#xE9;"). What is
/// not an entity stays as it is; resolved text is not searched again.
std::wstring HtmlUnescape(const wchar_t* text);

} // namespace BaseHlpr
