#include "support/BoundedParse.h"

#include "support/Limits.h"

#include <libxml/SAX2.h>

#include <algorithm>
#include <utility>

namespace {

/// For an end tag that closes nothing, libxml2's HTML parser goes through all open elements. So
/// many of them take as long as the message for one fault.
constexpr std::uint64_t kElementsPerFault = 16;

void StartDocument(void* context) {
    auto& parser = *static_cast<xmlParserCtxt*>(context);
    // Nobody looks an element up by its id, and to keep many of them takes libxml2 long.
    parser.loadsubset |= XML_SKIP_IDS;
    // Otherwise the HTML parser would guess.
    parser.charset = XML_CHAR_ENCODING_UTF8;
    xmlSAX2StartDocument(context);
}

} // namespace

BoundedParse::BoundedParse(xmlParserCtxt& parser, std::string_view text)
    : m_parser(parser), m_text(text) {
    m_parser._private = this;
    xmlSAXHandler& handlers = *m_parser.sax;
    handlers.startDocument = StartDocument;
    handlers.comment = nullptr;
    handlers.processingInstruction = nullptr;
    handlers.serror = [](void* context, xmlError* fault) {
        Of(context).OnFault(*fault);
    };
    // Without this mark, which libxml2 leaves out for HTML, serror is not called.
    handlers.initialized = XML_SAX2_MAGIC;
}

BoundedParse& BoundedParse::Of(void* context) {
    return *static_cast<BoundedParse*>(static_cast<xmlParserCtxt*>(context)->_private);
}

int BoundedParse::Read(void* parse, char* target, int capacity) {
    return static_cast<BoundedParse*>(parse)->ReadOn(target, capacity);
}

bool BoundedParse::Enter(std::size_t attributes) {
    CompareAttributes(attributes);
    if (!IsWithinLimits()) {
        End();
    }
    return !m_hasEnded;
}

void BoundedParse::End() {
    m_hasEnded = true;
}

XmlDocPtr BoundedParse::Whole(xmlDoc* document) const {
    XmlDocPtr owned(document);
    const bool whole = !m_hasEnded && m_parser.disableSAX == 0 && IsWithinLimits();
    return whole ? std::move(owned) : nullptr;
}

void BoundedParse::CompareAttributes(std::uint64_t count) {
    m_attributePairs += count * count / 2;
}

std::string_view BoundedParse::Unread() const {
    const auto buffered = static_cast<std::size_t>(m_parser.input->end - m_parser.input->cur);
    return m_text.substr(m_handedOut - buffered);
}

void BoundedParse::Skip(std::size_t count) {
    const auto buffered = static_cast<std::size_t>(m_parser.input->end - m_parser.input->cur);
    m_parser.input->cur += std::min(count, buffered);
    m_handedOut += count - std::min(count, buffered);
}

void BoundedParse::OnFault(const xmlError& fault) {
    ++m_faults;
    const auto mostAttributes = static_cast<std::uint64_t>(m_parser.maxatts) / 4;
    switch (fault.code) {
    case XML_ERR_TAG_NAME_MISMATCH:
        m_faults += static_cast<std::uint64_t>(m_parser.nameNr) / kElementsPerFault;
        break;
    // An attribute that is dropped has been compared as well.
    case XML_ERR_ATTRIBUTE_REDEFINED: m_attributePairs += mostAttributes; break;
    // A second <html> or <body> is no element of its own, but its attributes are compared.
    case XML_HTML_STRUCURE_ERROR: CompareAttributes(mostAttributes); break;
    default: break;
    }
    if (!IsWithinLimits()) {
        End();
    }
}

int BoundedParse::ReadOn(char* target, int capacity) {
    if (m_hasEnded || !IsWithinLimits()) {
        End();
        return -1;
    }
    const std::size_t count = m_text.copy(target, static_cast<std::size_t>(capacity), m_handedOut);
    m_handedOut += count;
    m_declarations += m_parser.inSubset != 0 ? count : 0;
    return static_cast<int>(count);
}

bool BoundedParse::IsWithinLimits() const {
    using namespace Limits;
    // Within a tag nothing but the room for its attributes tells how many there are: it is doubled
    // when it is full. An attribute takes two places in HTML and five otherwise.
    const auto attributes = static_cast<std::uint64_t>(m_parser.maxatts / (m_parser.html ? 4 : 10));
    const std::uint64_t pairs = std::max(m_attributePairs, attributes * attributes / 2);
    return pairs <= kFreeAttributePairs + kAttributePairsPerByte * m_handedOut &&
           m_faults <= kFreeFaults + m_handedOut / kBytesPerFault &&
           m_declarations <= kLongestDeclarations && m_parser.nsNr / 2 <= kMostNamespaces &&
           xmlDictSize(m_parser.dict) <= kMostNames;
}
