#pragma once

#include <string_view>

/// Whether the first element of a document that has been parsed has that name and no namespace
/// prefix. What follows its start is not looked at.
bool HasRootElement(std::string_view document, std::string_view name);
