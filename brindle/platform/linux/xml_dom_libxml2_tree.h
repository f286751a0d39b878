// Small steps on libxml2's trees that its own functions do too slowly or not at all.
#pragma once

#include <libxml/tree.h>

#include <new>
#include <string>
#include <string_view>

namespace brindle {

inline const xmlChar* Chars(const char* text) {
    return reinterpret_cast<const xmlChar*>(text ? text : "");
}
inline const char* Chars(const xmlChar* text) {
    return text ? reinterpret_cast<const char*>(text) : "";
}

template <class Node>
Node* Allocated(Node* node) {
    if (!node) throw std::bad_alloc();
    return node;
}

// libxml2's own appending joins neighbouring texts, which makes a long row of them quadratic.
inline void Link(xmlNode* parent, xmlNode* node) {
    node->parent = parent;
    node->prev = parent->last;
    (parent->last ? parent->last->next : parent->children) = node;
    parent->last = node;
}

// An attribute's text where it lies, or put together in `buffer` when it has several parts; a zero byte behind it.
inline std::string_view ValueOf(const xmlAttr* attribute, std::string& buffer) {
    const xmlNode* part = attribute->children;
    if (!part) return "";
    if (!part->next) return Chars(part->content);
    buffer.clear();
    for (; part; part = part->next) buffer += Chars(part->content);
    return buffer;
}

}  // namespace brindle
