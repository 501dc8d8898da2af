#pragma once

#include <string_view>

/// Receives elements of a document while it is read, piece by piece, and in place of the document.
/// What is handed over lives until the call returns.
class XmlElementSink {
public:
    virtual ~XmlElementSink() = default;

    /// An element begins: one of those asked for, or one within it. The name is empty if it stands
    /// in a namespace.
    virtual void Begin(std::string_view name) = 0;
    /// Text of the element that began last and has not ended, or a part of it. CDATA is text.
    virtual void Text(std::string_view text) = 0;
    /// That element ends.
    virtual void End() = 0;
};
