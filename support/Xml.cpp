#include "support/Xml.h"

#include "base/Ascii.h"
#include "support/MarkupGuard.h"
#include "support/SimpleXPathHelper.h"
#include "support/Utf8.h"
#include "support/XmlElementSink.h"

#include <libxml/HTMLparser.h>
#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <exception>
#include <memory>
#include <string_view>
#include <utility>

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Memory that libxml2 sets aside for different names, and namespaces in force at one place. Each
/// name it meets is compared with more of them the more there are.
constexpr std::size_t kMostNameMemory = std::size_t{512} * 1024;
constexpr int kMostNamespaces = 256;

struct XmlFree {
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};

struct XmlParserFree {
    void operator()(xmlParserCtxt* context) const noexcept { xmlFreeParserCtxt(context); }
};
using XmlParserPtr = std::unique_ptr<xmlParserCtxt, XmlParserFree>;

std::string ToString(xmlChar* owned) {
    const std::unique_ptr<xmlChar, XmlFree> text(owned);
    return text ? std::string(reinterpret_cast<const char*>(text.get())) : std::string();
}

const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

/// Declared entities are how small documents grow without bound and how they reach for files.
void RefuseEntity(void* context, const xmlChar*, int, const xmlChar*, const xmlChar*, xmlChar*) {
    xmlStopParser(static_cast<xmlParserCtxt*>(context));
}

/// Nobody looks an element up by its id, and to keep many of them takes libxml2 long.
void StartDocument(void* context) {
    static_cast<xmlParserCtxt*>(context)->loadsubset |= XML_SKIP_IDS;
    xmlSAX2StartDocument(context);
}

void StartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                  int namespaceCount, const xmlChar** namespaces, int attributeCount,
                  int defaultedCount, const xmlChar** attributes) {
    auto* const parser = static_cast<xmlParserCtxt*>(context);
    // Its stack holds prefix and address of each.
    if (parser->nsNr / 2 > kMostNamespaces) {
        xmlStopParser(parser);
        return;
    }
    xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                          defaultedCount, attributes);
}

/// A text on its way to a parser.
struct Input {
    std::string_view text;
    const xmlParserCtxt& parser;
    /// What the text is in, unless the parser is to find out.
    xmlCharEncodingHandler* encoding = nullptr;
};

bool HasTooManyNames(const xmlParserCtxt& parser) {
    return xmlDictGetUsage(parser.dict) > kMostNameMemory;
}

/// Hands the parser the text bit by bit: from one piece it would make a copy of the whole, and
/// there would be no moment to end it.
int ReadText(void* source, char* target, int capacity) {
    auto& [text, parser, encoding] = *static_cast<Input*>(source);
    if (HasTooManyNames(parser)) {
        return -1;
    }
    // After bytes that are not UTF-8, libxml2's HTML parser takes what follows for another
    // encoding.
    xmlCharEncodingHandler*& current = parser.input->buf->encoder;
    if (encoding && current != encoding) {
        xmlCharEncCloseFunc(current);
        current = encoding;
    }
    const std::size_t count = text.copy(target, static_cast<std::size_t>(capacity));
    text.remove_prefix(count);
    return static_cast<int>(count);
}

/// Gives what a parser made of a text, or null if it stopped before the end: refused, or for lack
/// of memory. What it has read until then would pass for a document.
XmlDocPtr WholeDocument(const xmlParserCtxt& parser, xmlDoc* document) {
    XmlDocPtr owned(document);
    const bool whole = parser.disableSAX == 0 && !HasTooManyNames(parser);
    return whole ? std::move(owned) : nullptr;
}

/// Elements below the root that leave the document while it is read, with the text before them.
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
        xmlStopParser(parser);
    }
    // Text before the element goes as well. It would become the last node, and libxml2 would append
    // what follows to it by what it remembers of another text's length.
    xmlNode* last = node;
    do {
        xmlNode* const before = last->prev;
        xmlUnlinkNode(last);
        xmlFreeNode(last);
        last = before;
    } while (last && (last->type == XML_TEXT_NODE || last->type == XML_CDATA_SECTION_NODE));
}

XmlDocPtr ParseStrictly(std::string_view text, Taking* taking = nullptr) {
    if (!IsProportionate(text, MarkupMode::Strict)) {
        return nullptr;
    }
    const XmlParserPtr parser(xmlNewParserCtxt());
    if (!parser) {
        return nullptr;
    }
    parser->sax->startDocument = StartDocument;
    parser->sax->startElementNs = StartElement;
    // To leave out ids counts as a wish for what a declaration of the document's type points to.
    parser->sax->externalSubset = nullptr;
    parser->sax->entityDecl = RefuseEntity;
    if (taking) {
        parser->_private = taking;
        parser->sax->endElementNs = EndElement;
    }
    // What libxml2 says about declarations goes past the options below.
    parser->vctxt.error = nullptr;
    parser->vctxt.warning = nullptr;
    constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                             XML_PARSE_IGNORE_ENC | XML_PARSE_COMPACT;
    // Without a name of the encoding the text is taken as it is; with "UTF-8" it would be
    // converted.
    Input input{text, *parser};
    return WholeDocument(*parser, xmlCtxtReadIO(parser.get(), ReadText, nullptr, &input, nullptr,
                                                nullptr, kOptions));
}

/// Whether there is memory for a page's tree. libxml2's HTML parser does not always come back when
/// memory runs out in its midst.
bool HasMemoryFor(std::string_view page) {
    void* const reserve = xmlMalloc(16 * page.size() + 65'536);
    xmlFree(reserve);
    return reserve != nullptr;
}

XmlDocPtr ParseAsHtml(std::string_view text) {
    if (!IsProportionate(text, MarkupMode::Tolerant) || !HasMemoryFor(text)) {
        return nullptr;
    }
    const XmlParserPtr parser(htmlNewParserCtxt());
    if (!parser) {
        return nullptr;
    }
    parser->sax->startDocument = StartDocument;
    constexpr int kOptions = HTML_PARSE_RECOVER | HTML_PARSE_NONET | HTML_PARSE_NOERROR |
                             HTML_PARSE_NOWARNING | HTML_PARSE_IGNORE_ENC;
    Input input{text, *parser, xmlFindCharEncodingHandler("UTF-8")};
    return WholeDocument(*parser, htmlCtxtReadIO(parser.get(), ReadText, nullptr, &input, nullptr,
                                                 "UTF-8", kOptions));
}

/// False if the document keeps no further names.
bool LowerCaseName(xmlNode* node) {
    const std::string name = base::ToLower(reinterpret_cast<const char*>(node->name));
    xmlNodeSetName(node, XmlText(name.c_str()));
    node->ns = nullptr;
    return node->name != nullptr;
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

/// Gives a document that was parsed as XML the names that an HTML parser would have given it. False
/// if that takes more names than it may have.
bool FoldNames(xmlDoc& document) {
    for (xmlNode* node = xmlDocGetRootElement(&document); node; node = NextInDocument(node)) {
        if (node->type != XML_ELEMENT_NODE) {
            continue;
        }
        if (!LowerCaseName(node)) {
            return false;
        }
        for (xmlAttr* attribute = node->properties; attribute; attribute = attribute->next) {
            if (!LowerCaseName(reinterpret_cast<xmlNode*>(attribute))) {
                return false;
            }
        }
    }
    return true;
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
    return FoldNames(*document) ? std::move(document) : nullptr;
}

bool IsNameCharacter(char character) {
    return base::IsLetterOrDigit(character) || character == '_' || character == '-';
}

/// Whether a path is "Name" or "Name/Name": nothing but element names, each a child of the one
/// before.
bool IsChildPath(std::string_view path) {
    bool atName = true;
    for (const char character : path) {
        const bool nameStarts =
            IsNameCharacter(character) && character != '-' && !base::IsDigit(character);
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
