#pragma once

#include "brevint/XmlDocPtr.h"

#include <string>
#include <string_view>
#include <vector>

class XmlElementSink;
struct _xmlDoc;
struct _xmlNode;

/// How forgiving a parse is.
enum class MarkupMode {
    /// Well-formed XML only. A document that declares entities is refused.
    Strict,
    /// What a browser would show too: a page of the portal. The names of elements and attributes
    /// are in lower case afterwards, and elements are in no namespace.
    Tolerant,
};

/// Parses UTF-8 text, whatever encoding it declares, into a document that the caller frees with
/// FreeXMLDoc. Null when the text cannot be parsed, or is beyond what support/Limits.h allows.
/// Loads nothing, substitutes no entities but the predefined ones, prints nothing. Comments and
/// processing instructions are left out; CDATA is text.
_xmlDoc* ParseXML(std::string_view text, MarkupMode mode = MarkupMode::Strict);
/// The same in strict mode for a document with very many elements of a kind: those that the path
/// "/Name/Name" selects go to the sink while they are read. Neither they nor any text directly in
/// the root become part of the document. When null is returned, some may have gone to the sink all
/// the same, the last one in part. Throws what the sink throws.
_xmlDoc* ParseXML(std::string_view text, std::string_view path, XmlElementSink& sink);
/// The same as the first; a length of -1 runs to the terminating zero, null is no text.
_xmlDoc* ParseXML(const char* text, int length, MarkupMode mode = MarkupMode::Strict);
void FreeXMLDoc(_xmlDoc* document);

/// First node that an XPath expression selects, in document order; null when there is none.
_xmlNode* SimpleDoXPath(const char* path, _xmlDoc* document);
/// The same relative to a node; null for a null node.
_xmlNode* SimpleDoXPath(const char* path, _xmlNode* node);
/// Appends every node that the expression selects, in document order.
void SimpleDoXPath(const char* path, _xmlDoc* document, std::vector<_xmlNode*>& out);

/// Text content of an element; empty for null.
std::string GetNodeValue(_xmlNode* node);
/// The same as wide text.
std::wstring GetWideNodeValue(_xmlNode* node);
/// Value of the attribute with exactly that name, which has no prefix; empty when it is missing,
/// and for null.
std::string GetNodeAttrib(_xmlNode* node, const char* name);
/// First direct child element with that name (not a path), in no namespace; null when there is
/// none, and for null.
_xmlNode* FindChildNode(_xmlNode* node, const char* name);
