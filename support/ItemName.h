#pragma once

#include <string_view>

/// Whether an item may be called so. What is a step on a path, or ends a line, may not be a name.
bool IsItemName(std::wstring_view name);

/// Whether a file of that name can be sent. The name goes into a form as it is, so that some
/// characters would forge the form's head.
bool IsFormName(std::wstring_view name);

/// Whether the service refuses a file of that name, whatever it holds: it may be a program.
bool IsProgramName(std::wstring_view name);
