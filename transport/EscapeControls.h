#pragma once

#include <string>

/// The address with every control character percent-encoded, so that none can end the request line,
/// or a part of the address, early.
std::wstring EscapeControls(const std::wstring& url);
