// XmlDom on libxml2 (2.9.14). Parsing, selecting and writing stand in files of their own; here is the tree: a
// document, its nodes by pointer, building. What this backend cannot do: DTD validation, external entities,
// more than the limits of xml_dom.h; each is a failed parse or an empty text, tested in
// xml_dom_libxml2_test.cpp.
#include "brindle/platform/xml_dom.h"

#include <libxml/parser.h>
#include <libxml/tree.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <utility>

#include "brindle/platform/linux/xml_dom_libxml2_attributes.h"
#include "brindle/platform/linux/xml_dom_libxml2_copy.h"
#include "brindle/platform/linux/xml_dom_libxml2_decode.h"
#include "brindle/platform/linux/xml_dom_libxml2_markup.h"
#include "brindle/platform/linux/xml_dom_libxml2_parse.h"
#include "brindle/platform/linux/xml_dom_libxml2_select.h"
#include "brindle/platform/linux/xml_dom_libxml2_tree.h"

namespace brindle {
namespace {

xmlNode* In(XmlNode* node) {
    return reinterpret_cast<xmlNode*>(node);
}
XmlNode* Out(xmlNode* node) {
    return reinterpret_cast<XmlNode*>(node);
}
bool Equals(const xmlChar* text, std::string_view other) {
    const char* chars = Chars(text);
    return std::strncmp(chars, other.data(), other.size()) == 0 && chars[other.size()] == '\0';
}

std::string_view AfterColon(std::string_view name) {
    return name.substr(name.rfind(':') + 1);
}

xmlNs* FindDeclaration(const xmlNode* element, std::string_view name) {
    for (xmlNs* ns = element->nsDef; ns; ns = ns->next) {
        const bool found =
            ns->prefix ? name.starts_with("xmlns:") && Equals(ns->prefix, name.substr(6)) : name == "xmlns";
        if (found) return ns;
    }
    return nullptr;
}

// The declared namespace a prefixed name means at a node, and the name's local part; no namespace and the
// whole name where the prefix is not declared: names are taken as given.
std::pair<xmlNs*, const char*> Resolve(xmlDoc* document, xmlNode* node, const char* name) {
    const char* colon = name ? std::strchr(name, ':') : nullptr;
    if (!colon || node->type != XML_ELEMENT_NODE) return {nullptr, name};
    const std::string prefix(name, colon);
    xmlNs* ns = xmlSearchNs(document, node, Chars(prefix.c_str()));
    return {ns, ns ? colon + 1 : name};
}

class Libxml2Document final : public XmlDocument {
  public:
    Libxml2Document() : m_document(Allocated(xmlNewDoc(Chars("1.0")))) {}
    Libxml2Document(const Libxml2Document&) = delete;
    Libxml2Document& operator=(const Libxml2Document&) = delete;
    ~Libxml2Document() override { xmlFreeDoc(m_document); }

    Result Parse(std::string_view bytes, XmlInput input, XmlPositions positions) override;
    XmlNode* SelectSingle(const char* xpath) override {
        return Out(SelectSingleByLibxml2(m_document, xpath ? xpath : ""));
    }
    XmlChildren Children(XmlNode* element) override {
        const xmlNode* node = In(element);
        return {Out(node->children), Out(node->children), Out(node->last)};
    }
    XmlNode* NextElement(XmlChildren& list) override;
    XmlNode* NextElement(XmlChildren& list, std::string_view localName) override;
    std::string_view LocalName(XmlNode* element) override {
        const xmlNode* node = In(element);
        return node->ns ? Chars(node->name) : AfterColon(Chars(node->name));
    }
    bool FindAttribute(XmlNode* element, std::string_view name, std::string& buffer,
                       std::string_view& value) override;
    void VisitAttributes(XmlNode* element, const XmlAttributeVisitor& visit) override;
    std::string Text(XmlNode* element) override;
    XmlPosition Position(XmlNode* element) override;

    XmlNode* AppendElement(XmlNode* parent, const char* name) override;
    bool AppendText(XmlNode* parent, const char* text) override {
        return Append(parent, xmlNewDocText(m_document, Chars(text)));
    }
    bool AppendComment(XmlNode* parent, const char* text) override {
        return Append(parent, xmlNewDocComment(m_document, Chars(text)));
    }
    bool AppendInstruction(XmlNode* parent, const char* target, const char* data) override;
    bool SetAttribute(XmlNode* element, const char* name, const char* value) override;
    XmlNode* AppendCopy(XmlNode* parent, XmlDocument& source, XmlNode* element,
                        const XmlReplacements& replacements) override {
        if (!dynamic_cast<Libxml2Document*>(&source)) return nullptr;
        return Out(AppendCopyByLibxml2(m_document, Parent(parent), In(element), replacements));
    }

    Result Markup(XmlNode* element, std::string& utf8) override;
    Result DocumentMarkup(std::string& utf8) override;

  private:
    xmlNode* Parent(XmlNode* parent) { return parent ? In(parent) : reinterpret_cast<xmlNode*>(m_document); }
    bool Append(XmlNode* parent, xmlNode* node) {
        Link(Parent(parent), Allocated(node));
        return true;
    }

    xmlDoc* m_document;
    AttributeIndex m_attributes;
    bool m_hasDeclaration = false;
    std::vector<XmlPosition> m_positions;
};

Result Libxml2Document::Parse(std::string_view bytes, XmlInput input, XmlPositions positions) {
    xmlDoc* empty = Allocated(xmlNewDoc(Chars("1.0")));
    xmlFreeDoc(std::exchange(m_document, empty));
    m_hasDeclaration = false;
    m_positions.clear();
    m_attributes.Clear();
    if (bytes.size() > kXmlMaxBytes) return Result::Error(ErrorCode::kLimit, "more than 16 MiB of XML");

    std::string buffer;
    std::string_view utf8 = bytes;
    if (input == XmlInput::kFile)
        if (Result result = DecodeXmlFile(bytes, buffer, utf8); !result.ok()) return result;
    xmlDoc* parsed = nullptr;
    Result result = ParseByLibxml2(utf8, positions == XmlPositions::kRecord ? &m_positions : nullptr, parsed);
    if (!parsed) {
        m_positions.clear();
        return result;
    }
    xmlFreeDoc(std::exchange(m_document, parsed));
    m_hasDeclaration = parsed->standalone != -1;  // libxml2: -1 no declaration, -2 one without "standalone"
    return result;
}

XmlNode* Libxml2Document::NextElement(XmlChildren& list) {
    while (xmlNode* node = In(list.next)) {
        list.next = list.next == list.last ? nullptr : Out(node->next);
        if (node->type == XML_ELEMENT_NODE) return Out(node);
    }
    return nullptr;
}

XmlNode* Libxml2Document::NextElement(XmlChildren& list, std::string_view localName) {
    while (XmlNode* element = NextElement(list))
        if (LocalName(element) == localName) return element;
    return nullptr;
}

bool Libxml2Document::FindAttribute(XmlNode* element, std::string_view name, std::string& buffer,
                                    std::string_view& value) {
    if (const xmlAttr* attribute = m_attributes.Find(In(element), name)) {
        value = ValueOf(attribute, buffer);
        return true;
    }
    const xmlNs* declaration = FindDeclaration(In(element), name);
    if (declaration) value = Chars(declaration->href);
    return declaration != nullptr;
}

void Libxml2Document::VisitAttributes(XmlNode* element, const XmlAttributeVisitor& visit) {
    for (const xmlNs* ns = In(element)->nsDef; ns; ns = ns->next)
        visit({ns->prefix ? "xmlns" : "", ns->prefix ? Chars(ns->prefix) : "xmlns", Chars(ns->href)});
    std::string buffer;
    for (const xmlAttr* attribute = In(element)->properties; attribute; attribute = attribute->next) {
        const std::string_view name = Chars(attribute->name);
        const std::string_view local = AfterColon(name);
        const std::string_view undeclared = name.substr(0, name.size() - local.size());
        const std::string_view prefix = attribute->ns && attribute->ns->prefix
                                            ? Chars(attribute->ns->prefix)
                                            : undeclared.substr(0, undeclared.rfind(':'));
        visit({prefix, local, ValueOf(attribute, buffer)});
    }
}

std::string Libxml2Document::Text(XmlNode* element) {
    std::string text;
    const xmlNode* top = In(element);
    const xmlNode* node = top->children;
    while (node) {
        if (node->type == XML_TEXT_NODE || node->type == XML_CDATA_SECTION_NODE) text += Chars(node->content);
        if (node->type == XML_ELEMENT_NODE && node->children) {
            node = node->children;
            continue;
        }
        while (!node->next && node->parent != top) node = node->parent;
        node = node->next;
    }
    return text;
}

XmlPosition Libxml2Document::Position(XmlNode* element) {
    for (const xmlNode* node = In(element); node && node->type == XML_ELEMENT_NODE; node = node->parent) {
        const auto index = reinterpret_cast<std::uintptr_t>(node->_private);
        if (index > 0 && index <= m_positions.size()) return m_positions[index - 1];
    }
    return {};
}

XmlNode* Libxml2Document::AppendElement(XmlNode* parent, const char* name) {
    if (!name || !*name) return nullptr;
    xmlNode* above = Parent(parent);
    const auto [ns, local] = Resolve(m_document, above, name);
    xmlNode* node = Allocated(xmlNewDocNode(m_document, ns, Chars(local), nullptr));
    Link(above, node);
    return Out(node);
}

bool Libxml2Document::AppendInstruction(XmlNode* parent, const char* target, const char* data) {
    if (!target || !*target) return false;
    if (Equals(Chars(target), "xml")) {
        if (parent || m_document->children || m_hasDeclaration) return false;
        m_hasDeclaration = true;
        return true;
    }
    return Append(parent, xmlNewDocPI(m_document, Chars(target), Chars(data)));
}

bool Libxml2Document::SetAttribute(XmlNode* element, const char* name, const char* value) {
    if (!name || !*name) return false;
    xmlNode* node = In(element);
    std::unique_ptr<xmlNode, void (*)(xmlNode*)> text(Allocated(xmlNewDocText(m_document, Chars(value))),
                                                      &xmlFreeNode);
    xmlAttr* attribute = m_attributes.Find(node, name);
    if (!attribute) {
        const auto [ns, local] = Resolve(m_document, node, name);
        attribute = Allocated(m_attributes.Append(node, name, ns, Chars(local)));
    }
    xmlFreeNodeList(attribute->children);
    attribute->children = attribute->last = nullptr;
    Link(reinterpret_cast<xmlNode*>(attribute), text.release());
    return true;
}

Result Libxml2Document::Markup(XmlNode* element, std::string& utf8) {
    std::string markup;
    if (!AppendMarkup(In(element), markup))
        return Result::Error(ErrorCode::kInvalidArgument, "a character that XML cannot hold");
    utf8 = std::move(markup);
    return {};
}

Result Libxml2Document::DocumentMarkup(std::string& utf8) {
    std::string markup = m_hasDeclaration ? "<?xml version=\"1.0\"?>" : "";
    for (const xmlNode* node = m_document->children; node; node = node->next)
        if (!AppendMarkup(node, markup))
            return Result::Error(ErrorCode::kInvalidArgument, "a character that XML cannot hold");
    utf8 = std::move(markup);
    return {};
}

class Libxml2Dom final : public XmlDom {
  public:
    std::shared_ptr<XmlDocument> CreateDocument() override {
        [[maybe_unused]] static const bool initialised = (xmlInitParser(), true);
        return std::make_shared<Libxml2Document>();
    }
};

constinit Libxml2Dom g_dom;

}  // namespace

XmlDom& BackendXmlDom() noexcept {
    return g_dom;
}

}  // namespace brindle
