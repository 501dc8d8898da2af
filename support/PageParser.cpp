#include "base/Ascii.h"
#include "support/BoundedParse.h"
#include "support/CharacterReferences.h"
#include "support/Limits.h"
#include "support/MarkupParsers.h"
#include "support/Utf8.h"
#include "support/XmlTree.h"

#include <libxml/HTMLparser.h>
#include <libxml/SAX2.h>
#include <libxml/parserInternals.h>

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace {

struct HtmlParserFree {
    void operator()(xmlParserCtxt* context) const noexcept { htmlFreeParserCtxt(context); }
};

const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

bool StartsWithName(std::string_view text, std::string_view name) {
    return text.size() >= name.size() && xmlStrncasecmp(XmlText(text.data()), XmlText(name.data()),
                                                        static_cast<int>(name.size())) == 0;
}

/// Whether a text begins with that name, and the name ends there.
bool IsTagOf(std::string_view text, std::string_view name) {
    return StartsWithName(text, name) && text.size() > name.size() &&
           std::string_view(" \t\n\f\r/>").find(text[name.size()]) != std::string_view::npos;
}

constexpr std::string_view kTemplate = "template";

/// Whether a browser takes what stands between the tags of such an element for text, or, of a
/// template, for something that is not part of the page. libxml2 2.9 does so for the first two
/// only. <noscript> is not one of them: there are no scripts here.
bool HoldsNoMarkup(std::string_view element) {
    constexpr std::string_view kNames[] = {"script",   "style",   "textarea", "title",  "iframe",
                                           "noframes", "noembed", "xmp",      kTemplate};
    return std::ranges::find(kNames, element) != std::end(kNames);
}

/// Length of what stands before the end tag of such an element, or of all there is. Templates nest,
/// the others do not.
std::size_t ContentLength(std::string_view text, std::string_view element) {
    int open = 1;
    for (std::size_t position = text.find('<'); position != std::string_view::npos;
         position = text.find('<', position + 1)) {
        const bool ends = text.substr(position + 1).starts_with('/');
        if (IsTagOf(text.substr(position + (ends ? 2 : 1)), element)) {
            open += ends ? -1 : element == kTemplate;
        }
        if (open == 0) {
            return position;
        }
    }
    return text.size();
}

void StartElement(void* context, const xmlChar* name, const xmlChar** attributes) {
    std::size_t count = 0;
    while (attributes && attributes[2 * count]) {
        ++count;
    }
    BoundedParse& parse = BoundedParse::Of(context);
    if (!parse.Enter(count)) {
        return;
    }
    auto* const parser = static_cast<xmlParserCtxt*>(context);
    const bool isTooDeep = parser->nodeNr >= Limits::kDeepest;
    xmlSAX2StartElement(context, name, attributes);
    if (isTooDeep) {
        // As in browsers, what it holds comes after it: a page may leave very many tags open.
        nodePop(parser);
        namePop(parser);
    }
    const std::string_view element = reinterpret_cast<const char*>(name);
    const std::string_view unread = parse.Unread();
    // The parser stands before the tag's ">". Going on before the end tag instead, it takes the
    // element for ended. One with "/>" is, as in XHTML.
    if (unread.starts_with('>') && HoldsNoMarkup(element)) {
        parse.Skip(1 + ContentLength(unread.substr(1), element));
    }
}

void Characters(void* context, const xmlChar* text, int length) {
    BoundedParse& parse = BoundedParse::Of(context);
    const std::string_view unread = parse.Unread();
    // "<!" that begins neither comment nor doctype is text to libxml2, which is before it now. To a
    // browser what follows is a comment up to the next ">".
    if (length == 1 && *text == '<' && unread.starts_with("<!") && !unread.starts_with("<!--")) {
        parse.Skip(std::min(unread.find('>'), unread.size()));
        return;
    }
    xmlSAX2Characters(context, text, length);
}

/// Whether there is memory for a page's tree. libxml2's HTML parser does not always come back when
/// memory runs out in its midst.
bool HasMemoryFor(std::string_view page) {
    void* const reserve = xmlMalloc(16 * page.size() + 65'536);
    xmlFree(reserve);
    return reserve != nullptr;
}

XmlDocPtr ParseAsHtml(std::string_view text) {
    const std::unique_ptr<xmlParserCtxt, HtmlParserFree> parser(
        HasMemoryFor(text) ? htmlNewParserCtxt() : nullptr);
    if (!parser) {
        return nullptr;
    }
    BoundedParse parse(*parser, text);
    parser->sax->startElement = StartElement;
    parser->sax->characters = Characters;
    constexpr int kOptions = HTML_PARSE_RECOVER | HTML_PARSE_NONET | HTML_PARSE_NOERROR |
                             HTML_PARSE_NOWARNING | HTML_PARSE_IGNORE_ENC;
    return parse.Whole(htmlCtxtReadIO(parser.get(), BoundedParse::Read, nullptr, &parse, nullptr,
                                      nullptr, kOptions));
}

/// False if the document keeps no further names.
bool LowerCaseName(xmlNode* node) {
    const std::string name = base::ToLower(reinterpret_cast<const char*>(node->name));
    xmlNodeSetName(node, XmlText(name.c_str()));
    return node->name != nullptr;
}

/// Gives an element of a document that was parsed as XML what an HTML parser would have given it.
/// An attribute with a prefix stays apart from that without. False if memory runs out.
bool MakeHtml(xmlNode* element) {
    if (!LowerCaseName(element)) {
        return false;
    }
    element->ns = nullptr;
    for (xmlAttr* attribute = element->properties; attribute; attribute = attribute->next) {
        if (!LowerCaseName(reinterpret_cast<xmlNode*>(attribute))) {
            return false;
        }
    }
    if (HoldsNoMarkup(reinterpret_cast<const char*>(element->name))) {
        xmlFreeNodeList(std::exchange(element->children, nullptr));
        element->last = nullptr;
    }
    return true;
}

bool MakeHtml(xmlDoc& document) {
    for (xmlNode* node = xmlDocGetRootElement(&document); node; node = NextInDocument(node)) {
        if (node->type == XML_ELEMENT_NODE && !MakeHtml(node)) {
            return false;
        }
    }
    return true;
}

/// Whether a page begins with an HTML doctype or element: no need to find out by parsing it as XML.
bool BeginsAsHtml(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    return IsTagOf(text, "<!doctype html") || IsTagOf(text, "<html");
}

} // namespace

/// A page is HTML to a browser, also when it happens to be well-formed XML: text in its scripts is
/// not markup then. Other well-formed documents are XML.
XmlDocPtr ParsePage(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    if (text.size() > Limits::kLongestPage) {
        return nullptr;
    }
    const std::string page = WithSoundReferences(Utf8::Repaired(text));
    XmlDocPtr document = BeginsAsHtml(page) ? nullptr : ParseStrictly(page);
    const xmlNode* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    const bool prefixed = root && root->ns && root->ns->prefix;
    if (!root || (xmlStrcasecmp(root->name, XmlText("html")) == 0 && !prefixed)) {
        return ParseAsHtml(page);
    }
    return MakeHtml(*document) ? std::move(document) : nullptr;
}
