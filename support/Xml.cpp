#include "support/Xml.h"

#include "support/MarkupGuard.h"
#include "support/SimpleXPathHelper.h"
#include "support/Utf8.h"
#include "support/XmlElementSink.h"

#include <libxml/HTMLparser.h>
#include <libxml/parser.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <exception>
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

/// Stopping alone would leave what has been read so far as a document.
void Refuse(xmlParserCtxt& parser) {
    parser.wellFormed = 0;
    xmlStopParser(&parser);
}

/// Declared entities are how small documents grow without bound and how they reach for files.
void RefuseEntity(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
    Refuse(*static_cast<xmlParserCtxt*>(context));
}

/// Hands the parser the text bit by bit: from one piece it would make a copy of the whole.
int ReadText(void* source, char* target, int capacity) {
    auto& text = *static_cast<std::string_view*>(source);
    const std::size_t count = text.copy(target, static_cast<std::size_t>(capacity));
    text.remove_prefix(count);
    return static_cast<int>(count);
}

/// Elements below the root that leave the document while it is read.
struct Taking {
    std::string_view root;
    std::string_view element;
    XmlElementSink& sink;
    std::exception_ptr failure;
};

bool IsElement(const xmlNode* node, std::string_view name) {
    // Most elements that a search meets are others, which their first letter tells.
    return node->type == XML_ELEMENT_NODE && !node->ns && *node->name == name.front() &&
           name == reinterpret_cast<const char*>(node->name);
}

void EndElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri) {
    auto* const parser = static_cast<xmlParserCtxt*>(context);
    auto& taking = *static_cast<Taking*>(parser->_private);
    xmlNode* const node = parser->node;
    xmlSAX2EndElementNs(context, name, prefix, uri);
    const xmlNode* const parent = node ? node->parent : nullptr;
    if (!parent || parent != xmlDocGetRootElement(parser->myDoc) ||
        !IsElement(node, taking.element) || !IsElement(parent, taking.root)) {
        return;
    }
    try {
        taking.sink.Take(node);
    } catch (...) {
        taking.failure = std::current_exception();
        Refuse(*parser);
    }
    xmlUnlinkNode(node);
    xmlFreeNode(node);
}

XmlDocPtr ParseStrictly(std::string_view text, Taking* taking = nullptr) {
    if (!IsProportionate(text, MarkupMode::Strict)) {
        return nullptr;
    }
    const std::unique_ptr<xmlParserCtxt, XmlParserFree> context(xmlNewParserCtxt());
    if (!context) {
        return nullptr;
    }
    context->sax->entityDecl = RefuseEntity;
    if (taking) {
        context->_private = taking;
        context->sax->endElementNs = EndElement;
    }
    // What libxml2 says about declarations goes past the options below.
    context->vctxt.error = nullptr;
    context->vctxt.warning = nullptr;
    constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                             XML_PARSE_IGNORE_ENC | XML_PARSE_COMPACT;
    // Without a name of the encoding the text is taken as it is; with "UTF-8" it would be
    // converted.
    return XmlDocPtr(
        xmlCtxtReadIO(context.get(), ReadText, nullptr, &text, nullptr, nullptr, kOptions));
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

/// The node that follows in document order; null after the last one.
xmlNode* NextInDocument(xmlNode* node) {
    if (node->type == XML_ELEMENT_NODE && node->children) {
        return node->children;
    }
    while (node && !node->next) {
        node = node->parent;
    }
    return node ? node->next : nullptr;
}

/// Gives a document that was parsed as XML the names that an HTML parser would have given it.
void FoldNames(xmlDoc& document) {
    for (xmlNode* node = xmlDocGetRootElement(&document); node; node = NextInDocument(node)) {
        if (node->type == XML_ELEMENT_NODE) {
            LowerCaseName(node);
            for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
                LowerCaseName(reinterpret_cast<xmlNode*>(attribute));
            }
        }
    }
}

/// Whether a page begins with an HTML doctype or element: no need to find out by parsing it as XML.
bool BeginsAsHtml(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    for (const std::string_view start : {"<!doctype html", "<html"}) {
        const std::string_view begin = text.substr(0, start.size());
        const std::string_view next = text.substr(begin.size(), 1);
        if (begin.size() == start.size() && next.find_first_of(" \t\r\n>") == 0 &&
            xmlStrncasecmp(XmlText(begin.data()), XmlText(start.data()),
                           static_cast<int>(start.size())) == 0) {
            return true;
        }
    }
    return false;
}

/// A page is HTML to a browser, also when it happens to be well-formed XML: text in its scripts is
/// not markup then. Other well-formed documents are XML.
XmlDocPtr ParseTolerantly(std::string_view text) {
    XmlDocPtr document = BeginsAsHtml(text) ? nullptr : ParseStrictly(text);
    const xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    const bool prefixed = root && root->ns && root->ns->prefix;
    if (!root || (xmlStrcasecmp(root->name, XmlText("html")) == 0 && !prefixed)) {
        return ParseAsHtml(text);
    }
    FoldNames(*document);
    return document;
}

bool IsNameCharacter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
           (character >= '0' && character <= '9') || character == '_' || character == '-';
}

/// Whether a path is "Name" or "Name/Name": nothing but element names, each a child of the one
/// before.
bool IsChildPath(std::string_view path) {
    bool atName = true;
    for (const char character : path) {
        const bool nameStarts =
            IsNameCharacter(character) && character != '-' && (character < '0' || character > '9');
        if (atName ? !nameStarts : character != '/' && !IsNameCharacter(character)) {
            return false;
        }
        atName = character == '/';
    }
    return !atName;
}

/// "Name" of the path "//Name"; empty for any other path.
std::string_view NameAnywhere(std::string_view path) {
    const std::string_view name = path.substr(std::min<std::size_t>(2, path.size()));
    const bool simple =
        path.starts_with("//") && IsChildPath(name) && name.find('/') == std::string_view::npos;
    return simple ? name : std::string_view();
}

/// "Name/Name" of the path "/Name/Name"; empty for any other path.
std::string_view ChildPathFromRoot(std::string_view path) {
    const std::string_view rest = path.substr(std::min<std::size_t>(1, path.size()));
    return path.starts_with('/') && IsChildPath(rest) ? rest : std::string_view();
}

/// Visits what a child path selects, in document order, until a visit returns true; tells whether
/// one did. This spares the price of an XPath evaluation, which small replies would feel and
/// listings of many items would pay per item.
template <class Visit>
bool VisitChildPath(xmlNode* node, std::string_view path, const Visit& visit) {
    const std::string_view name = path.substr(0, path.find('/'));
    const bool last = name.size() == path.size();
    for (xmlNode* child = node->children; child; child = child->next) {
        if (IsElement(child, name) &&
            (last ? visit(child) : VisitChildPath(child, path.substr(name.size() + 1), visit))) {
            return true;
        }
    }
    return false;
}

xmlNode* FirstAtChildPath(xmlNode* node, std::string_view path) {
    xmlNode* first = nullptr;
    VisitChildPath(node, path, [&](xmlNode* found) {
        first = found;
        return true;
    });
    return first;
}

/// Visits what the paths "/Name/Name" and "//Name" select, likewise. False for any other path.
template <class Visit>
bool VisitSimplePath(xmlDoc* document, std::string_view path, const Visit& visit) {
    if (!document) {
        return true;
    }
    if (const std::string_view children = ChildPathFromRoot(path); !children.empty()) {
        // A document is the node above its root element.
        VisitChildPath(reinterpret_cast<xmlNode*>(document), children, visit);
        return true;
    }
    const std::string_view name = NameAnywhere(path);
    for (xmlNode* node = name.empty() ? nullptr : xmlDocGetRootElement(document); node;
         node = NextInDocument(node)) {
        if (IsElement(node, name) && visit(node)) {
            break;
        }
    }
    return !name.empty();
}

/// Sets libxml2 up, which does that itself but not for two threads at once, and drops a byte-order
/// mark. False if what is left cannot be parsed for its length.
bool Prepare(std::string_view& text) {
    [[maybe_unused]] static const bool isSetUp = (xmlInitParser(), true);
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    return !text.empty() && text.size() <= INT_MAX;
}

/// The text of an element that holds nothing else, which is where it is already. Null for others.
const char* OnlyText(const xmlNode* node) {
    const xmlNode* child = node->children;
    const bool only =
        node->type == XML_ELEMENT_NODE && child && !child->next && child->type == XML_TEXT_NODE;
    return only ? reinterpret_cast<const char*>(child->content) : nullptr;
}

} // namespace

void XmlDocDeleter::operator()(_xmlDoc* document) const noexcept {
    xmlFreeDoc(document);
}

_xmlDoc* ParseXML(std::string_view text, MarkupMode mode) {
    if (!Prepare(text)) {
        return nullptr;
    }
    return (mode == MarkupMode::Strict ? ParseStrictly(text) : ParseTolerantly(text)).release();
}

_xmlDoc* ParseXML(std::string_view text, std::string_view path, XmlElementSink& sink) {
    if (!Prepare(text)) {
        return nullptr;
    }
    const std::string_view names = ChildPathFromRoot(path);
    const std::string_view root = names.substr(0, names.find('/'));
    Taking taking{root, names.substr(root.size() + 1), sink, nullptr};
    XmlDocPtr document = ParseStrictly(text, &taking);
    if (taking.failure) {
        std::rethrow_exception(taking.failure);
    }
    return document.release();
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
    xmlNode* first = nullptr;
    const auto take = [&first](xmlNode* found) {
        first = found;
        return true;
    };
    return VisitSimplePath(document, path, take)
               ? first
               : CSimpleXPathHelper(document).DoXPath(path, nullptr);
}

_xmlNode* SimpleDoXPath(const char* path, _xmlNode* node) {
    if (!node) {
        return nullptr;
    }
    return IsChildPath(path) ? FirstAtChildPath(node, path)
                             : CSimpleXPathHelper(node->doc).DoXPath(path, node);
}

void SimpleDoXPath(const char* path, _xmlDoc* document, std::vector<_xmlNode*>& out) {
    const auto take = [&out](xmlNode* found) {
        out.push_back(found);
        return false;
    };
    if (!VisitSimplePath(document, path, take)) {
        CSimpleXPathHelper(document).DoXPath(path, out, nullptr);
    }
}

std::string GetNodeValue(_xmlNode* node) {
    return node ? ToString(xmlNodeGetContent(node)) : std::string();
}

std::wstring GetWideNodeValue(_xmlNode* node) {
    return Utf8::ToWide(GetNodeValue(node));
}

void AppendNodeValue(_xmlNode* node, std::string& text) {
    if (const char* only = node ? OnlyText(node) : nullptr) {
        text += only;
    } else {
        text += GetNodeValue(node);
    }
}

std::string GetNodeAttrib(_xmlNode* node, const char* name) {
    return node ? ToString(xmlGetNoNsProp(node, XmlText(name))) : std::string();
}

_xmlNode* FindChildNode(_xmlNode* node, const char* name) {
    return node ? FirstAtChildPath(node, name) : nullptr;
}
