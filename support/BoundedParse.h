#pragma once

#include "brevint/XmlDocPtr.h"

#include <libxml/parser.h>

#include <cstddef>
#include <cstdint>
#include <string_view>

/// A text on its way through one of libxml2's parsers, strict or HTML. Hands the parser the text
/// bit by bit, and ends the parse where it would take time or memory out of proportion to the text:
/// the limits are those of support/Limits.h. There is no document then.
class BoundedParse {
public:
    /// Sets up the handlers that both parsers have in common. The parser and the text must outlive
    /// the parse; the text is UTF-8 whatever it says of itself.
    BoundedParse(xmlParserCtxt& parser, std::string_view text);
    BoundedParse(const BoundedParse&) = delete;
    BoundedParse& operator=(const BoundedParse&) = delete;
    virtual ~BoundedParse() = default;

    /// The parse that a handler is called for.
    static BoundedParse& Of(void* context);
    /// What xmlCtxtReadIO and htmlCtxtReadIO read with, from a pointer to the parse.
    static int Read(void* parse, char* target, int capacity);

    /// Counts an element, before it becomes part of the document. False if the parse has ended.
    bool Enter(std::size_t attributes);
    ///@{
    /// What the parser comes to. True if it does not become part of the document. An element in a
    /// namespace has an empty name.
    virtual bool TakeBegin(std::string_view) { return false; }
    virtual bool TakeText(std::string_view) { return false; }
    virtual bool TakeEnd() { return false; }
    ///@}
    /// Ends the parse: the parser gets no more of the text, and comes to its end with the few
    /// thousand bytes that it has. Unlike xmlStopParser this may be called from every handler.
    void End();
    /// What the parser made of the text; null if it stopped before the end, here or for lack of
    /// memory: what it had read until then would pass for a document.
    XmlDocPtr Whole(xmlDoc* document) const;

    /// What the parser has not looked at yet.
    std::string_view Unread() const;
    /// Makes the parser go on so many bytes later.
    void Skip(std::size_t count);

protected:
    xmlParserCtxt& Parser() const { return m_parser; }
    bool HasEnded() const { return m_hasEnded; }
    /// Takes note of a fault in the text.
    virtual void OnFault(const xmlError& fault);

private:
    int ReadOn(char* target, int capacity);
    bool IsWithinLimits() const;
    void CompareAttributes(std::uint64_t count);

    xmlParserCtxt& m_parser;
    const std::string_view m_text;
    std::size_t m_handedOut = 0;
    std::size_t m_declarations = 0;
    std::uint64_t m_attributePairs = 0;
    std::uint64_t m_faults = 0;
    bool m_hasEnded = false;
};
