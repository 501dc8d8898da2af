#pragma once

#include <string>
#include <string_view>

/// Whether a name from outside (UTF-8) can be that of a local file or folder: it leads nowhere
/// else, is not too long, holds nothing that a terminal or a display obeys, is no part file's, and
/// on Windows is one that Windows takes for what it says.
bool IsLocalName(std::string_view name);

/// Whether Windows takes a name for what it says: it has no character with a meaning of its own, no
/// dot or blank at its end, and is neither a device nor a file that Windows obeys.
bool IsNameOnWindows(std::string_view name);

/// The same text for names (UTF-8) that a disk or a service may take for one: such as differ in
/// letter case, in how accents are written, or in characters that nobody sees.
std::string NameKey(std::string_view name);
