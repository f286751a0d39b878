// See xml_dom_libxml2_copy.h. Tests: xml_dom_test.cpp. A loop, since a built tree may have any depth; nodes are
// linked before they are filled, so that what there is of a copy when memory runs out goes with its top node.
#include "brindle/platform/linux/xml_dom_libxml2_copy.h"

#include <string>
#include <utility>
#include <vector>

#include "brindle/platform/linux/xml_dom_libxml2_markup.h"
#include "brindle/platform/linux/xml_dom_libxml2_tree.h"
#include "brindle/platform/xml_dom_text.h"

namespace brindle {
namespace {

class Copier {
  public:
    Copier(xmlDoc* document, const XmlReplacements& replacements)
        : m_document(document), m_replacements(replacements) {}

    xmlNode* Copy(xmlNode* parent, const xmlNode* source) {
        xmlNode* const top = AppendElement(parent, source, OutsideNamespaces(source));
        xmlNode* above = top;  // the copy of the parent of what comes next
        for (const xmlNode* node = source; node;) {
            if (node->type == XML_ELEMENT_NODE && node->children) {
                node = node->children;
            } else {
                while (node != source && !node->next) {
                    node = node->parent;
                    if (node != source) above = LeaveScope(above);
                }
                if (node == source) break;
                node = node->next;
            }
            if (node->type != XML_ELEMENT_NODE) {
                AppendLeaf(above, node);
                continue;
            }
            xmlNode* const element = AppendElement(above, node, {});
            above = node->children ? element : LeaveScope(element);
        }
        return top;
    }

  private:
    xmlNode* AppendElement(xmlNode* parent, const xmlNode* source, const std::vector<const xmlNs*>& outside) {
        xmlNode* const element = Allocated(xmlNewDocNode(m_document, nullptr, source->name, nullptr));
        Link(parent, element);
        m_scopes.push_back(m_namespaces.size());
        for (const xmlNs* ns : outside) Declare(element, ns);
        for (const xmlNs* ns = source->nsDef; ns; ns = ns->next) Declare(element, ns);
        element->ns = Counterpart(element, source->ns);
        for (const xmlAttr* attribute = source->properties; attribute; attribute = attribute->next)
            AppendAttribute(element, attribute);
        return element;
    }

    // Forgets what the element declares; its parent.
    xmlNode* LeaveScope(const xmlNode* element) {
        m_namespaces.resize(m_scopes.back());
        m_scopes.pop_back();
        return element->parent;
    }

    void AppendAttribute(xmlNode* element, const xmlAttr* source) {
        xmlAttr* const attribute = Allocated(xmlNewDocProp(m_document, source->name, nullptr));
        attribute->parent = element;
        attribute->prev = m_lastAttribute && m_lastAttribute->parent == element ? m_lastAttribute : nullptr;
        (attribute->prev ? attribute->prev->next : element->properties) = attribute;
        m_lastAttribute = attribute;
        attribute->ns = Counterpart(element, source->ns);
        Link(reinterpret_cast<xmlNode*>(attribute),
             Allocated(
                 xmlNewDocText(m_document, Replaced(ValueOf(source, m_value), XmlTextKind::kAttribute))));
    }

    void AppendLeaf(xmlNode* parent, const xmlNode* source) {
        xmlNode* leaf = nullptr;
        if (source->type == XML_TEXT_NODE) {
            leaf = xmlNewDocText(m_document, Replaced(Chars(source->content), XmlTextKind::kText));
        } else if (source->type == XML_CDATA_SECTION_NODE) {
            const xmlChar* text = Replaced(Chars(source->content), XmlTextKind::kText);
            const bool safe = xmlStrstr(text, Chars("]]>")) == nullptr;
            leaf =
                safe ? xmlNewCDataBlock(m_document, text, xmlStrlen(text)) : xmlNewDocText(m_document, text);
        } else if (source->type == XML_COMMENT_NODE) {
            leaf = xmlNewDocComment(m_document, Replaced(Chars(source->content), XmlTextKind::kVerbatim));
        } else if (source->type == XML_PI_NODE) {
            leaf = xmlNewDocPI(m_document, source->name, source->content);
        } else {
            return;
        }
        Link(parent, Allocated(leaf));
    }

    // A text that ends with a zero byte, where it lies or as it becomes; valid until the next call.
    const xmlChar* Replaced(std::string_view text, XmlTextKind kind) {
        const bool changed = ReplaceXmlText(text, kind, m_replacements, m_changed);
        return Chars(changed ? m_changed.c_str() : text.data());
    }

    void Declare(xmlNode* element, const xmlNs* ns) {
        m_namespaces.emplace_back(ns, Allocated(xmlNewNs(element, ns->href, ns->prefix)));
    }

    // What a namespace of the source is in the copy.
    xmlNs* Counterpart(xmlNode* element, const xmlNs* ns) {
        if (!ns) return nullptr;
        for (const auto& [original, copy] : m_namespaces)
            if (original == ns) return copy;
        return xmlSearchNs(m_document, element, ns->prefix);  // "xml", which nothing declares
    }

    xmlDoc* m_document;
    const XmlReplacements& m_replacements;
    std::vector<std::pair<const xmlNs*, xmlNs*>> m_namespaces;  // in scope
    std::vector<std::size_t> m_scopes;                          // how many were when each open element began
    xmlAttr* m_lastAttribute = nullptr;
    std::string m_value;
    std::string m_changed;
};

}  // namespace

xmlNode* AppendCopyByLibxml2(xmlDoc* document, xmlNode* parent, const xmlNode* source,
                             const XmlReplacements& replacements) {
    xmlNode* const before = parent->last;
    try {
        return Copier(document, replacements).Copy(parent, source);
    } catch (...) {
        if (xmlNode* part = parent->last; part != before) {
            xmlUnlinkNode(part);
            xmlFreeNode(part);
        }
        throw;
    }
}

}  // namespace brindle
