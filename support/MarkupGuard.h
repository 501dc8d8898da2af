#pragma once

#include "support/Xml.h"

#include <string_view>

/// False for text over which libxml2 would take time out of proportion to its length: it compares
/// every attribute of an element with all others, every declaration of a document with all others,
/// and copies a comment for each pair of hyphens in it. Strictly read, a document is refused for
///
/// - more than 256 attributes of one element,
/// - an internal subset of more than 1 KiB, or with literals or comments, so with entities,
/// - a comment that holds a pair of hyphens, which is not well-formed either.
///
/// Tolerantly read, the first of these holds.
bool IsProportionate(std::string_view text, MarkupMode mode);
