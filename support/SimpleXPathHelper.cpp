#include "support/SimpleXPathHelper.h"

#include "support/XmlTree.h"

#include <libxml/xmlerror.h>
#include <libxml/xpath.h>

#include <algorithm>

namespace {

using std::string_view;

bool IsNameCharacter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z') ||
           (character >= '0' && character <= '9') || character == '_' || character == '-';
}

/// Whether a path is "Name" or "Name/Name": nothing but element names, each a child of the one
/// before.
bool IsChildPath(string_view path) {
    bool atName = true;
    for (const char character : path) {
        const bool nameStarts =
            IsNameCharacter(character) && character != '-' && (character < '0' || character > '9');
        if (atName ? !nameStarts : character != '/' && !IsNameCharacter(character)) {
            return false;
        }
        atName = character == '/';
    }
    return !atName;
}

using Visit = CSimpleXPathHelper::Visit;

/// Visits what a child path selects, in document order, until a visit returns true; tells whether
/// one did.
bool VisitChildren(const xmlNode* node, string_view path, const Visit& visit) {
    const string_view name = path.substr(0, path.find('/'));
    const bool last = name.size() == path.size();
    for (xmlNode* child = node->children; child; child = child->next) {
        if (IsElement(child, name) &&
            (last ? visit(child) : VisitChildren(child, path.substr(name.size() + 1), visit))) {
            return true;
        }
    }
    return false;
}

void VisitAll(xmlNode* root, string_view name, const Visit& visit) {
    for (xmlNode* node = root; node; node = NextInDocument(node)) {
        if (IsElement(node, name) && visit(node)) {
            return;
        }
    }
}

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

CSimpleXPathHelper::CSimpleXPathHelper(_xmlDoc* document) : m_document(document) {}

CSimpleXPathHelper::~CSimpleXPathHelper() = default;

_xmlNode* CSimpleXPathHelper::DoXPath(const char* path, _xmlNode* context) {
    xmlNode* first = nullptr;
    Select(path, context, [&first](xmlNode* found) {
        first = found;
        return true;
    });
    return first;
}

void CSimpleXPathHelper::DoXPath(const char* path, std::vector<_xmlNode*>& out, _xmlNode* context) {
    Select(path, context, [&out](xmlNode* found) {
        out.push_back(found);
        return false;
    });
}

void CSimpleXPathHelper::Select(const char* path, _xmlNode* context, const Visit& visit) {
    if (!m_document || !path) {
        return;
    }
    // A document is the node above its root element.
    auto* const top = reinterpret_cast<xmlNode*>(m_document);
    const string_view text = path;
    const string_view fromTop = text.substr(text.starts_with('/') ? 1 : 0);
    const string_view anywhere = text.substr(text.starts_with("//") ? 2 : 0);
    if (IsChildPath(fromTop)) {
        VisitChildren(context && fromTop == text ? context : top, fromTop, visit);
    } else if (IsChildPath(anywhere) && anywhere.find('/') == string_view::npos) {
        VisitAll(xmlDocGetRootElement(m_document), anywhere, visit);
    } else {
        Evaluate(path, context ? context : top, visit);
    }
}

void CSimpleXPathHelper::Evaluate(const char* expression, _xmlNode* node, const Visit& visit) {
    if (!m_context) {
        m_context.reset(xmlXPathNewContext(m_document));
    }
    if (!m_context) {
        return;
    }
    m_context->error = Ignore;
    m_context->node = node;
    const Silence silence;
    const std::unique_ptr<xmlXPathObject, XPathObjectDeleter> result(
        xmlXPathEvalExpression(reinterpret_cast<const xmlChar*>(expression), m_context.get()));
    if (!result || result->type != XPATH_NODESET || !result->nodesetval) {
        return;
    }
    const xmlNodeSet& nodes = *result->nodesetval;
    for (int i = 0; i < nodes.nodeNr; ++i) {
        // Namespace nodes live in the node set only, and would be gone with it.
        if (nodes.nodeTab[i]->type != XML_NAMESPACE_DECL && visit(nodes.nodeTab[i])) {
            return;
        }
    }
}
