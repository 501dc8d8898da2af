#include "support/BoundedParse.h"
#include "support/Limits.h"
#include "support/MarkupParsers.h"
#include "support/XmlElementSink.h"
#include "support/XmlTree.h"

#include <libxml/SAX2.h>
#include <libxml/hash.h>

#include <exception>
#include <memory>

namespace {

struct XmlParserFree {
    void operator()(xmlParserCtxt* context) const noexcept { xmlFreeParserCtxt(context); }
};

/// Called where libxml2 would load the DTD that a document points to. It would do so unasked:
/// XML_SKIP_IDS is a bit of loadsubset, and any bit there counts as a wish for that in libxml2 2.9.
void EndDeclarations(void* context, const xmlChar*, const xmlChar*, const xmlChar*) {
    // Attributes and namespaces that declarations supply are left out: a few declarations would
    // make very many.
    auto& parser = *static_cast<xmlParserCtxt*>(context);
    xmlHashFree(static_cast<xmlHashTable*>(parser.attsDefault), xmlHashDefaultDeallocator);
    parser.attsDefault = nullptr;
}

void StartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                  int namespaceCount, const xmlChar** namespaces, int attributeCount,
                  int defaultedCount, const xmlChar** attributes) {
    BoundedParse& parse = BoundedParse::Of(context);
    if (static_cast<xmlParserCtxt*>(context)->nodeNr >= Limits::kDeepest) {
        parse.End();
    }
    if (parse.Enter(static_cast<std::size_t>(namespaceCount) +
                    static_cast<std::size_t>(attributeCount))) {
        xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces,
                              attributeCount, defaultedCount, attributes);
    }
}

void EndElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri) {
    xmlNode* const node = static_cast<xmlParserCtxt*>(context)->node;
    xmlSAX2EndElementNs(context, name, prefix, uri);
    BoundedParse::Of(context).Leave(node);
}

class StrictParse final : public BoundedParse {
public:
    StrictParse(xmlParserCtxt& parser, std::string_view text, const SelectedElements* selected);

    /// Throws what the sink has thrown.
    void Rethrow() const;

private:
    void OnFault(const xmlError& fault) override;
    void Leave(xmlNode* node) override;

    const SelectedElements* m_selected;
    std::exception_ptr m_failure;
};

StrictParse::StrictParse(xmlParserCtxt& parser, std::string_view text,
                         const SelectedElements* selected)
    : BoundedParse(parser, text), m_selected(selected) {
    xmlSAXHandler& handlers = *parser.sax;
    handlers.startElementNs = StartElement;
    handlers.endElementNs = selected ? EndElement : handlers.endElementNs;
    // Declared entities are how small documents grow without bound and how they reach for files.
    handlers.entityDecl = [](void* context, const xmlChar*, int, const xmlChar*, const xmlChar*,
                             xmlChar*) {
        Of(context).End();
    };
    handlers.unparsedEntityDecl = [](void* context, const xmlChar*, const xmlChar*, const xmlChar*,
                                     const xmlChar*) {
        Of(context).End();
    };
    // Nobody asks for the other declarations, and libxml2 compares each of them with all others.
    handlers.attributeDecl = nullptr;
    handlers.elementDecl = nullptr;
    handlers.notationDecl = nullptr;
    handlers.externalSubset = EndDeclarations;
    // What libxml2 says about declarations goes past the options below.
    parser.vctxt.error = nullptr;
    parser.vctxt.warning = nullptr;
}

void StrictParse::Rethrow() const {
    if (m_failure) {
        std::rethrow_exception(m_failure);
    }
}

/// Text that is not well-formed is not read on.
void StrictParse::OnFault(const xmlError& fault) {
    BoundedParse::OnFault(fault);
    if (fault.level == XML_ERR_FATAL) {
        End();
    }
}

void StrictParse::Leave(xmlNode* node) {
    const xmlNode* const parent = node ? node->parent : nullptr;
    if (m_failure || !parent || parent != xmlDocGetRootElement(Parser().myDoc) ||
        !IsElement(node, m_selected->element) || !IsElement(parent, m_selected->root)) {
        return;
    }
    try {
        m_selected->sink.Add(node);
    } catch (...) {
        m_failure = std::current_exception();
        End();
    }
    // Text before the element goes too: libxml2 keeps the length of the last text node, which is
    // that of a text within the element, and would append what follows at that place.
    xmlNode* last = node;
    do {
        xmlNode* const before = last->prev;
        xmlUnlinkNode(last);
        xmlFreeNode(last);
        last = before;
    } while (last && last->type == XML_TEXT_NODE);
}

} // namespace

XmlDocPtr ParseStrictly(std::string_view text, const SelectedElements* selected) {
    const std::unique_ptr<xmlParserCtxt, XmlParserFree> parser(xmlNewParserCtxt());
    if (!parser || text.size() > Limits::kLongestReply) {
        return nullptr;
    }
    StrictParse parse(*parser, text, selected);
    // Without the name of an encoding the text is taken as it is; with "UTF-8" it would be
    // converted.
    constexpr int kOptions = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
                             XML_PARSE_IGNORE_ENC | XML_PARSE_COMPACT | XML_PARSE_NOCDATA;
    XmlDocPtr document =
        parse.Whole(xmlCtxtReadIO(parser.get(), BoundedParse::Read, nullptr,
                                  static_cast<BoundedParse*>(&parse), nullptr, nullptr, kOptions));
    parse.Rethrow();
    return document;
}
