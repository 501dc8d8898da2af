#pragma once

/// @file
/// Ownership of parsed documents.

#include "brevint/Export.h"

#include <memory>

struct _xmlDoc;

/// Frees a parsed document and all its nodes.
struct BREVINT_API XmlDocDeleter {
    /// Frees.
    void operator()(_xmlDoc* document) const noexcept;
};

/// Owner of a parsed document.
using XmlDocPtr = std::unique_ptr<_xmlDoc, XmlDocDeleter>;
