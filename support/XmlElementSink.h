#pragma once

struct _xmlNode;

/// Receives elements of a document while it is read.
class XmlElementSink {
public:
    virtual ~XmlElementSink() = default;

    /// An element that is complete. It is freed when this returns.
    virtual void Add(_xmlNode* element) = 0;
};
