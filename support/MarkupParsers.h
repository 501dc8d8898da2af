#pragma once

#include "brevint/XmlDocPtr.h"

#include <string_view>

class XmlElementSink;

/// Elements that leave a document while it is read: those that the path "/root/element" selects.
struct SelectedElements {
    std::string_view root;
    std::string_view element;
    XmlElementSink& sink;
};

/// Reads well-formed XML; null for anything else. Throws what the sink throws.
XmlDocPtr ParseStrictly(std::string_view text, const SelectedElements* selected = nullptr);

/// Reads a page as browsers do; null beyond the limits. What a browser does not take for markup is
/// not in the document. Names are in lower case, elements in no namespace.
XmlDocPtr ParsePage(std::string_view text);
