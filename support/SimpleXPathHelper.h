#pragma once

#include <memory>
#include <vector>

struct _xmlDoc;
struct _xmlNode;
struct _xmlXPathContext;

/// Evaluates XPath expressions against one document, which it does not own and which must outlive
/// it. An expression that is wrong selects nothing.
class CSimpleXPathHelper {
public:
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

    std::unique_ptr<_xmlXPathContext, ContextDeleter> m_context;
};
