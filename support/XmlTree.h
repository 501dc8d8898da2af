#pragma once

#include <libxml/tree.h>

#include <string_view>

/// Whether a node is an element of that name, in no namespace.
inline bool IsElement(const xmlNode* node, std::string_view name) {
    // Most elements that a search meets are others, which their first letter tells.
    return node->type == XML_ELEMENT_NODE && !node->ns && !name.empty() &&
           static_cast<char>(*node->name) == name.front() &&
           name == reinterpret_cast<const char*>(node->name);
}

/// The node that follows in document order; null after the last one.
inline xmlNode* NextInDocument(xmlNode* node) {
    if (node->type == XML_ELEMENT_NODE && node->children) {
        return node->children;
    }
    while (node && !node->next) {
        node = node->parent;
    }
    return node ? node->next : nullptr;
}
