#include "support/SimpleXPathHelper.h"

#include <libxml/xmlerror.h>
#include <libxml/xpath.h>

namespace {

struct XPathObjectDeleter {
    void operator()(xmlXPathObject* object) const noexcept { xmlXPathFreeObject(object); }
};

void Ignore(void*, xmlError*) {}
void IgnoreText(void*, const char*, ...) {}

/// Silences what libxml2 says past a context's own handler, for this thread and this evaluation.
class Silence {
public:
    Silence() : m_function(xmlGenericError), m_context(xmlGenericErrorContext) {
        xmlSetGenericErrorFunc(nullptr, IgnoreText);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { xmlSetGenericErrorFunc(m_context, m_function); }

private:
    xmlGenericErrorFunc m_function;
    void* m_context;
};

} // namespace

void CSimpleXPathHelper::ContextDeleter::operator()(xmlXPathContext* context) const noexcept {
    xmlXPathFreeContext(context);
}

CSimpleXPathHelper::CSimpleXPathHelper(_xmlDoc* document)
    : m_context(document ? xmlXPathNewContext(document) : nullptr) {
    if (m_context) {
        m_context->error = Ignore;
    }
}

CSimpleXPathHelper::~CSimpleXPathHelper() = default;

_xmlNode* CSimpleXPathHelper::DoXPath(const char* path, _xmlNode* context) {
    std::vector<_xmlNode*> nodes;
    DoXPath(path, nodes, context);
    return nodes.empty() ? nullptr : nodes.front();
}

void CSimpleXPathHelper::DoXPath(const char* path, std::vector<_xmlNode*>& out, _xmlNode* context) {
    if (!m_context) {
        return;
    }
    m_context->node = context ? context : reinterpret_cast<xmlNode*>(m_context->doc);
    const auto* expression = reinterpret_cast<const xmlChar*>(path);
    const Silence silence;
    const std::unique_ptr<xmlXPathObject, XPathObjectDeleter> result(
        xmlXPathEvalExpression(expression, m_context.get()));
    if (!result || result->type != XPATH_NODESET || !result->nodesetval) {
        return;
    }
    const xmlNodeSet& nodes = *result->nodesetval;
    for (int i = 0; i < nodes.nodeNr; ++i) {
        // Namespace nodes live in the node set only, and would be gone with it.
        if (nodes.nodeTab[i]->type != XML_NAMESPACE_DECL) {
            out.push_back(nodes.nodeTab[i]);
        }
    }
}
