#include "support/Xml.h"

#include "support/MarkupGuard.h"
#include "support/SimpleXPathHelper.h"
#include "support/Utf8.h"

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string_view>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

struct XmlFree {
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};

struct XmlParserFree {
    void operator()(xmlParserCtxt* context) const noexcept { xmlFreeParserCtxt(context); }
};

std::string ToString(xmlChar* owned) {
    const std::unique_ptr<xmlChar, XmlFree> text(owned);
    return text ? std::string(reinterpret_cast<const char*>(text.get())) : std::string();
}

const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

/// Declared entities are how small documents grow without bound and how they reach for files.
void RefuseEntity(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    // Stopping alone would leave what has been read so far as a document.
    parser->wellFormed = 0;
    xmlStopParser(parser);
}

XmlDocPtr ParseStrictly(std::string_view text) {
    if (!IsProportionate(text, MarkupMode::Strict)) {
        return nullptr;
    }
    const std::unique_ptr<xmlParserCtxt, XmlParserFree> context(xmlNewParserCtxt());
    if (!context) {
        return nullptr;
    }
    context->sax->entityDecl = RefuseEntity;
    // What libxml2 says about declarations goes past the options below.
    context->vctxt.error = nullptr;
    context->vctxt.warning = nullptr;
    constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                             XML_PARSE_IGNORE_ENC | XML_PARSE_COMPACT;
    return XmlDocPtr(xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()),
                                       nullptr, "UTF-8", kOptions));
}

XmlDocPtr ParseAsHtml(std::string_view text) {
    if (!IsProportionate(text, MarkupMode::Tolerant)) {
        return nullptr;
    }
    constexpr int kOptions = HTML_PARSE_RECOVER | HTML_PARSE_NONET | HTML_PARSE_NOERROR |
                             HTML_PARSE_NOWARNING | HTML_PARSE_IGNORE_ENC;
    return XmlDocPtr(
        htmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, "UTF-8", kOptions));
}

void LowerCaseName(xmlNode* node) {
    std::string name(reinterpret_cast<const char*>(node->name));
    for (char& character : name) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    xmlNodeSetName(node, XmlText(name.c_str()));
    node->ns = nullptr;
}

/// Gives a document that was parsed as XML the names that an HTML parser would have given it.
void FoldNames(xmlDoc& document) {
    xmlNode* node = xmlDocGetRootElement(&document);
    while (node) {
        if (node->type == XML_ELEMENT_NODE) {
            LowerCaseName(node);
            for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
                LowerCaseName(reinterpret_cast<xmlNode*>(attribute));
            }
        }
        if (node->type == XML_ELEMENT_NODE && node->children) {
            node = node->children;
            continue;
        }
        while (node && !node->next) {
            node = node->parent;
        }
        node = node ? node->next : nullptr;
    }
}

/// A page is HTML to a browser, also when it happens to be well-formed XML: text in its scripts is
/// not markup then. Other well-formed documents are XML.
XmlDocPtr ParseTolerantly(std::string_view text) {
    XmlDocPtr document = ParseStrictly(text);
    const xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    const bool prefixed = root && root->ns && root->ns->prefix;
    if (!root || (xmlStrcasecmp(root->name, XmlText("html")) == 0 && !prefixed)) {
        return ParseAsHtml(text);
    }
    FoldNames(*document);
    return document;
}

bool IsChildPath(std::string_view path) {
    constexpr std::string_view kNameCharacters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                 "abcdefghijklmnopqrstuvwxyz"
                                                 "0123456789_-";
    constexpr std::string_view kDigitsAndHyphen = "0123456789-";
    while (!path.empty()) {
        const std::string_view name = path.substr(0, path.find('/'));
        if (name.empty() || kDigitsAndHyphen.find(name.front()) != std::string_view::npos ||
            name.find_first_not_of(kNameCharacters) != std::string_view::npos) {
            return false;
        }
        path.remove_prefix(name.size());
        if (!path.empty()) {
            path.remove_prefix(1);
            if (path.empty()) {
                return false;
            }
        }
    }
    return true;
}

bool IsElement(const xmlNode* node, std::string_view name) {
    return node->type == XML_ELEMENT_NODE && !node->ns &&
           name == reinterpret_cast<const char*>(node->name);
}

/// Answers "Name" and "Name/Name" without the price of an XPath evaluation, which listings of many
/// items would pay per item.
xmlNode* FirstAtChildPath(const xmlNode* node, std::string_view path) {
    const std::string_view name = path.substr(0, path.find('/'));
    const bool last = name.size() == path.size();
    for (xmlNode* child = node->children; child; child = child->next) {
        if (IsElement(child, name)) {
            xmlNode* found = last ? child : FirstAtChildPath(child, path.substr(name.size() + 1));
            if (found) {
                return found;
            }
        }
    }
    return nullptr;
}

} // namespace

void XmlDocDeleter::operator()(_xmlDoc* document) const noexcept {
    xmlFreeDoc(document);
}

_xmlDoc* ParseXML(const char* text, int length, MarkupMode mode) {
    if (!text) {
        return nullptr;
    }
    std::string_view content(text,
                             length < 0 ? std::strlen(text) : static_cast<std::size_t>(length));
    if (content.starts_with(kByteOrderMark)) {
        content.remove_prefix(kByteOrderMark.size());
    }
    if (content.empty() || content.size() > INT_MAX) {
        return nullptr;
    }
    return (mode == MarkupMode::Strict ? ParseStrictly(content) : ParseTolerantly(content))
        .release();
}

void FreeXMLDoc(_xmlDoc* document) {
    xmlFreeDoc(document);
}

_xmlNode* SimpleDoXPath(const char* path, _xmlDoc* document) {
    return CSimpleXPathHelper(document).DoXPath(path, nullptr);
}

_xmlNode* SimpleDoXPath(const char* path, _xmlNode* node) {
    if (!node) {
        return nullptr;
    }
    return IsChildPath(path) ? FirstAtChildPath(node, path)
                             : CSimpleXPathHelper(node->doc).DoXPath(path, node);
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
    return node ? ToString(xmlGetNoNsProp(node, XmlText(name))) : std::string();
}

_xmlNode* FindChildNode(_xmlNode* node, const char* name) {
    return node ? FirstAtChildPath(node, name) : nullptr;
}
