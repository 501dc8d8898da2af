#include "support/Xml.h"

#include "support/MarkupParsers.h"
#include "support/SimpleXPathHelper.h"
#include "support/Utf8.h"
#include "support/XmlTree.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct XmlFree {
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};

std::string ToString(xmlChar* owned) {
    const std::unique_ptr<xmlChar, XmlFree> text(owned);
    return text ? std::string(reinterpret_cast<const char*>(text.get())) : std::string();
}

/// Sets libxml2 up, which does that itself but not for two threads at once, and drops a byte-order
/// mark. False if nothing is left to parse.
bool Prepare(std::string_view& text) {
    [[maybe_unused]] static const bool isSetUp = (xmlInitParser(), true);
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    return !text.empty();
}

} // namespace

void XmlDocDeleter::operator()(_xmlDoc* document) const noexcept {
    FreeXMLDoc(document);
}

_xmlDoc* ParseXML(std::string_view text, MarkupMode mode) {
    if (!Prepare(text)) {
        return nullptr;
    }
    return (mode == MarkupMode::Strict ? ParseStrictly(text) : ParsePage(text)).release();
}

_xmlDoc* ParseXML(std::string_view text, std::string_view path, XmlElementSink& sink) {
    if (!Prepare(text)) {
        return nullptr;
    }
    path.remove_prefix(path.starts_with('/') ? 1 : 0);
    const std::string_view root = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(root.size() + 1, path.size()));
    const SelectedElements selected{root, path, sink};
    return ParseStrictly(text, &selected).release();
}

_xmlDoc* ParseXML(const char* text, int length, MarkupMode mode) {
    if (!text) {
        return nullptr;
    }
    const std::size_t size = length < 0 ? std::strlen(text) : static_cast<std::size_t>(length);
    return ParseXML(std::string_view(text, size), mode);
}

void FreeXMLDoc(_xmlDoc* document) {
    xmlFreeDoc(document);
}

_xmlNode* SimpleDoXPath(const char* path, _xmlDoc* document) {
    return CSimpleXPathHelper(document).DoXPath(path, nullptr);
}

_xmlNode* SimpleDoXPath(const char* path, _xmlNode* node) {
    return node ? CSimpleXPathHelper(node->doc).DoXPath(path, node) : nullptr;
}

void SimpleDoXPath(const char* path, _xmlDoc* document, std::vector<_xmlNode*>& out) {
    CSimpleXPathHelper(document).DoXPath(path, out, nullptr);
}

std::string GetNodeValue(_xmlNode* node) {
    return node ? ToString(xmlNodeGetContent(node)) : std::string();
}

std::wstring GetWideNodeValue(_xmlNode* node) {
    return Utf8::ToWide(GetNodeValue(node));
}

std::string GetNodeAttrib(_xmlNode* node, const char* name) {
    return node ? ToString(xmlGetNoNsProp(node, reinterpret_cast<const xmlChar*>(name)))
                : std::string();
}

_xmlNode* FindChildNode(_xmlNode* node, const char* name) {
    xmlNode* child = node && name ? node->children : nullptr;
    while (child && !IsElement(child, name)) {
        child = child->next;
    }
    return child;
}
