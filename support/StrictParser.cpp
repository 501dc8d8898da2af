#include "support/BoundedParse.h"
#include "support/Limits.h"
#include "support/MarkupParsers.h"
#include "support/XmlElementSink.h"
#include "support/XmlTree.h"

#include <libxml/SAX2.h>
#include <libxml/hash.h>
#include <libxml/parserInternals.h>

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

std::string_view View(const xmlChar* text) {
    return reinterpret_cast<const char*>(text);
}

void StartElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri,
                  int namespaceCount, const xmlChar** namespaces, int attributeCount,
                  int defaultedCount, const xmlChar** attributes) {
    BoundedParse& parse = BoundedParse::Of(context);
    if (static_cast<xmlParserCtxt*>(context)->nameNr >= Limits::kDeepest) {
        parse.End();
    }
    const bool isPlain = !prefix && !uri;
    if (parse.Enter(static_cast<std::size_t>(namespaceCount) +
                    static_cast<std::size_t>(attributeCount)) &&
        !parse.TakeBegin(isPlain ? View(name) : std::string_view())) {
        xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces,
                              attributeCount, defaultedCount, attributes);
    }
}

void EndElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* uri) {
    if (!BoundedParse::Of(context).TakeEnd()) {
        xmlSAX2EndElementNs(context, name, prefix, uri);
    }
}

void Characters(void* context, const xmlChar* text, int length) {
    const std::string_view view(reinterpret_cast<const char*>(text),
                                static_cast<std::size_t>(length));
    if (!BoundedParse::Of(context).TakeText(view)) {
        xmlSAX2Characters(context, text, length);
    }
}

/// An entity of which nobody knows what it stands for has no text.
void Reference(void* context, const xmlChar* name) {
    if (!BoundedParse::Of(context).TakeText({})) {
        xmlSAX2Reference(context, name);
    }
}

class StrictParse final : public BoundedParse {
public:
    StrictParse(xmlParserCtxt& parser, std::string_view text, const SelectedElements* selected);

    /// Throws what the sink has thrown.
    void Rethrow() const;

private:
    void OnFault(const xmlError& fault) override;
    ///@{
    /// True for selected elements, which go to the sink, and for the text between them.
    bool TakeBegin(std::string_view name) override;
    bool TakeText(std::string_view text) override;
    bool TakeEnd() override;
    ///@}
    /// Calls the sink, unless the parse has ended. What the sink throws ends it.
    template <class Event>
    void Tell(Event event);

    const SelectedElements* m_selected;
    bool m_isWithinSelected = false;
    std::size_t m_textLength = 0; ///< Since the last tag, of text that is left out of the document.
    std::exception_ptr m_failure;
};

StrictParse::StrictParse(xmlParserCtxt& parser, std::string_view text,
                         const SelectedElements* selected)
    : BoundedParse(parser, text), m_selected(selected) {
    xmlSAXHandler& handlers = *parser.sax;
    handlers.startElementNs = StartElement;
    if (selected) {
        handlers.endElementNs = EndElement;
        handlers.characters = Characters;
        handlers.ignorableWhitespace = Characters;
        handlers.reference = Reference;
    }
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

bool StrictParse::TakeBegin(std::string_view name) {
    m_textLength = 0;
    if (m_selected && !m_isWithinSelected) {
        m_isWithinSelected = Parser().nameNr == 1 && name == m_selected->element &&
                             IsElement(Parser().node, m_selected->root);
    }
    if (m_isWithinSelected) {
        Tell([&] { m_selected->sink.Begin(name); });
    }
    return m_isWithinSelected;
}

bool StrictParse::TakeText(std::string_view text) {
    // Text between selected elements is left out too: without them it would be one text, which
    // soon is too long for libxml2.
    if (!m_isWithinSelected && Parser().nameNr != 1) {
        return false;
    }
    m_textLength += text.size();
    // libxml2 refuses longer texts in a document; what goes to the sink has the same limit.
    if (m_textLength > XML_MAX_TEXT_LENGTH) {
        End();
    }
    if (m_isWithinSelected) {
        Tell([&] { m_selected->sink.Text(text); });
    }
    return true;
}

bool StrictParse::TakeEnd() {
    m_textLength = 0;
    if (!m_isWithinSelected) {
        return false;
    }
    Tell([&] { m_selected->sink.End(); });
    constexpr int kDepthOfSelected = 2;
    m_isWithinSelected = Parser().nameNr > kDepthOfSelected;
    return true;
}

template <class Event>
void StrictParse::Tell(Event event) {
    if (HasEnded()) {
        return;
    }
    try {
        event();
    } catch (...) {
        m_failure = std::current_exception();
        End();
    }
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
