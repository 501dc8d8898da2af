#pragma once

#include <functional>
#include <memory>
#include <vector>

struct _xmlDoc;
struct _xmlNode;
struct _xmlXPathContext;

/// Evaluates XPath expressions against one document, which it does not own and which must outlive
/// it. An expression that is wrong, or null, selects nothing.
///
/// Paths of plain names, "Name/Name" and "/Name/Name", and "//Name" are answered by walking the
/// tree: small replies would feel the price of libxml2's evaluation, which everything else gets,
/// and listings of many items would pay it for every item.
class CSimpleXPathHelper {
public:
    /// Sees a node that was selected; true if it has seen enough.
    using Visit = std::function<bool(_xmlNode*)>;

    explicit CSimpleXPathHelper(_xmlDoc* document);
    CSimpleXPathHelper(const CSimpleXPathHelper&) = delete;
    CSimpleXPathHelper& operator=(const CSimpleXPathHelper&) = delete;
    ~CSimpleXPathHelper();

    /// First node selected, in document order, or null. A null context stands for the document.
    _xmlNode* DoXPath(const char* path, _xmlNode* context);
    /// Appends every node selected, in document order.
    void DoXPath(const char* path, std::vector<_xmlNode*>& out, _xmlNode* context);

private:
    struct ContextDeleter {
        void operator()(_xmlXPathContext* context) const noexcept;
    };

    /// Visits what a path selects, in document order.
    void Select(const char* path, _xmlNode* context, const Visit& visit);
    void Evaluate(const char* expression, _xmlNode* node, const Visit& visit);

    _xmlDoc* m_document;
    std::unique_ptr<_xmlXPathContext, ContextDeleter> m_context;
};
