// See xml_dom_fake.h.
#include "brindle/platform/fake/xml_dom_fake.h"

#include <set>
#include <utility>

#include "brindle/platform/fake/xml_dom_fake_tree.h"
#include "brindle/platform/xml_dom_text.h"

namespace brindle {
namespace {

using Kind = FakeXmlNode::Kind;

FakeXmlNode* In(XmlNode* node) {
    return reinterpret_cast<FakeXmlNode*>(node);
}
XmlNode* Out(FakeXmlNode* node) {
    return reinterpret_cast<XmlNode*>(node);
}

std::string_view AfterColon(std::string_view name) {
    return name.substr(name.rfind(':') + 1);
}

// The node behind this one in document order, below `top`; `ended` is told each element that is left.
template <class Ended>
FakeXmlNode* Next(FakeXmlNode* node, FakeXmlNode* top, Ended ended) {
    if (!node->children.empty()) return node->children.front();
    while (node != top) {
        const auto& siblings = node->parent->children;
        if (node->index + 1 < siblings.size()) return siblings[node->index + 1];
        node = node->parent;
        ended(node);
    }
    return nullptr;
}
FakeXmlNode* Next(FakeXmlNode* node, FakeXmlNode* top) {
    return Next(node, top, [](FakeXmlNode*) {});
}

bool AppendStartTag(const FakeXmlNode& element, std::string& markup) {
    markup += '<';
    bool good = AppendXmlText(element.name, XmlTextKind::kVerbatim, markup);
    for (const auto& attribute : element.attributes) {
        markup += ' ';
        good = good && AppendXmlText(attribute.name, XmlTextKind::kVerbatim, markup);
        markup += "=\"";
        good = good && AppendXmlText(attribute.value, XmlTextKind::kAttribute, markup);
        markup += '"';
    }
    markup += element.children.empty() ? "/>" : ">";
    return good;
}

bool AppendLeaf(const FakeXmlNode& node, std::string& markup) {
    const auto wrapped = [&](const std::string& before, const char* after) {
        markup += before;
        const bool good = AppendXmlText(node.value, XmlTextKind::kVerbatim, markup);
        markup += after;
        return good;
    };
    switch (node.kind) {
        case Kind::kText:
            return AppendXmlText(node.value, XmlTextKind::kText, markup);
        case Kind::kCData:
            return wrapped("<![CDATA[", "]]>");
        case Kind::kComment:
            return wrapped("<!--", "-->");
        default:
            return wrapped("<?" + node.name + (node.value.empty() ? "" : " "), "?>");
    }
}

Result AppendTree(FakeXmlNode* top, std::string& utf8) {
    std::string markup;
    bool good = true;
    const auto endTag = [&](FakeXmlNode* element) {
        if (element->kind == Kind::kElement) markup += "</" + element->name + ">";
    };
    for (FakeXmlNode* node = top; node && good; node = Next(node, top, endTag)) {
        if (node->kind == Kind::kElement)
            good = AppendStartTag(*node, markup);
        else if (node->kind != Kind::kDocument)
            good = AppendLeaf(*node, markup);
    }
    if (!good) return Result::Error(ErrorCode::kInvalidArgument, "a character that XML cannot hold");
    utf8 += markup;
    return {};
}

// The next step of a plain path, "" at its end.
std::string_view TakeStep(std::string_view& path) {
    const std::string_view step = path.substr(0, path.find('/'));
    path.remove_prefix(std::min(step.size() + 1, path.size()));
    return step;
}

FakeXmlNode* FindChild(FakeXmlNode* parent, std::string_view name) {
    for (FakeXmlNode* child : parent->children)
        if (child->kind == Kind::kElement && (child->name == name || name == "*")) return child;
    return nullptr;
}

class FakeXmlDocument final : public XmlDocument {
  public:
    explicit FakeXmlDocument(std::shared_ptr<FakeXmlDom::Faults> faults)
        : m_faults(std::move(faults)), m_tree(std::make_unique<FakeXmlTree>()) {}

    Result Parse(std::string_view bytes, XmlInput input, XmlPositions positions) override {
        m_tree = std::make_unique<FakeXmlTree>();
        if (m_faults->parse) return Result::Error(ErrorCode::kFailed, "the fake was told to fail");
        if (input == XmlInput::kFile && bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
        auto parsed = std::make_unique<FakeXmlTree>();
        Result result = ParseFakeXml(bytes, positions == XmlPositions::kRecord, *parsed);
        if (result.ok()) m_tree = std::move(parsed);
        return result;
    }

    XmlNode* SelectSingle(const char* xpath) override {
        std::string_view path = xpath ? xpath : "";
        FakeXmlNode* node = &m_tree->top();
        if (path.starts_with("//")) {
            while (node && (node->kind != Kind::kElement || node->name != path.substr(2)))
                node = Next(node, &m_tree->top());
            return Out(node);
        }
        if (path.ends_with("/")) return nullptr;
        if (path.starts_with("/")) path.remove_prefix(1);
        while (node && !path.empty()) node = FindChild(node, TakeStep(path));
        return node && node->kind == Kind::kElement ? Out(node) : nullptr;
    }

    XmlChildren Children(XmlNode* element) override {
        const auto& children = In(element)->children;
        if (children.empty()) return {};
        return {Out(children.front()), Out(children.front()), Out(children.back())};
    }

    XmlNode* NextElement(XmlChildren& list) override {
        while (FakeXmlNode* node = In(list.next)) {
            list.next = list.next == list.last ? nullptr : Out(node->parent->children[node->index + 1]);
            if (node->kind == Kind::kElement) return Out(node);
        }
        return nullptr;
    }

    XmlNode* NextElement(XmlChildren& list, std::string_view localName) override {
        XmlNode* element = NextElement(list);
        while (element && LocalName(element) != localName) element = NextElement(list);
        return element;
    }

    std::string_view LocalName(XmlNode* element) override { return AfterColon(In(element)->name); }

    bool FindAttribute(XmlNode* element, std::string_view name, std::string&,
                       std::string_view& value) override {
        for (const auto& attribute : In(element)->attributes) {
            if (attribute.name != name) continue;
            value = attribute.value;
            return true;
        }
        return false;
    }

    void VisitAttributes(XmlNode* element, const XmlAttributeVisitor& visit) override {
        for (const bool declarations : {true, false}) {
            for (const auto& [name, value] : In(element)->attributes) {
                const bool declares = name == "xmlns" || name.starts_with("xmlns:");
                if (declares != declarations) continue;
                const std::string_view local = AfterColon(name);
                const std::string_view before = std::string_view(name).substr(0, name.size() - local.size());
                visit({before.substr(0, before.rfind(':')), local, value});
            }
        }
    }

    std::string Text(XmlNode* element) override {
        std::string text;
        for (FakeXmlNode* node = In(element); node; node = Next(node, In(element)))
            if (node->kind == Kind::kText || node->kind == Kind::kCData) text += node->value;
        return text;
    }

    XmlPosition Position(XmlNode* element) override {
        const FakeXmlNode* node = In(element);
        while (node && node->place.line == 0) node = node->parent;
        return node ? node->place : XmlPosition{};
    }

    XmlNode* AppendElement(XmlNode* parent, const char* name) override {
        return name && *name ? Out(&Append(parent, Kind::kElement, name, "")) : nullptr;
    }
    bool AppendText(XmlNode* parent, const char* text) override {
        Append(parent, Kind::kText, "", text);
        return true;
    }
    bool AppendComment(XmlNode* parent, const char* text) override {
        Append(parent, Kind::kComment, "", text);
        return true;
    }
    bool AppendInstruction(XmlNode* parent, const char* target, const char* data) override {
        if (!target || !*target) return false;
        if (std::string_view(target) == "xml") {
            if (parent || m_tree->hasDeclaration || !m_tree->top().children.empty()) return false;
            m_tree->hasDeclaration = true;
        } else {
            Append(parent, Kind::kInstruction, target, data);
        }
        return true;
    }

    bool SetAttribute(XmlNode* element, const char* name, const char* value) override {
        if (!name || !*name) return false;
        for (auto& attribute : In(element)->attributes) {
            if (attribute.name != name) continue;
            attribute.value = value ? value : "";
            return true;
        }
        In(element)->attributes.push_back({name, value ? value : ""});
        return true;
    }

    XmlNode* AppendCopy(XmlNode* parent, XmlDocument& source, XmlNode* element,
                        const XmlReplacements& replacements) override {
        if (!dynamic_cast<FakeXmlDocument*>(&source)) return nullptr;
        FakeXmlNode* const top = In(element);
        FakeXmlNode* const copy = &AppendNodeCopy(parent ? *In(parent) : m_tree->top(), *top, replacements);
        FakeXmlNode* above = copy;
        DeclareOutside(*top, *copy);
        const auto ended = [&](FakeXmlNode* left) {
            if (left != top) above = above->parent;
        };
        for (FakeXmlNode* node = Next(top, top, ended); node; node = Next(node, top, ended)) {
            FakeXmlNode& made = AppendNodeCopy(*above, *node, replacements);
            if (!node->children.empty()) above = &made;
        }
        return Out(copy);
    }

    Result Markup(XmlNode* element, std::string& utf8) override {
        if (m_faults->markup) return Result::Error(ErrorCode::kFailed, "the fake was told to fail");
        std::string markup;
        Result result = AppendTree(In(element), markup);
        if (result.ok()) utf8 = std::move(markup);
        return result;
    }

    Result DocumentMarkup(std::string& utf8) override {
        if (m_faults->documentMarkup) return Result::Error(ErrorCode::kFailed, "the fake was told to fail");
        std::string markup = m_tree->hasDeclaration ? "<?xml version=\"1.0\"?>" : "";
        Result result = AppendTree(&m_tree->top(), markup);
        if (result.ok()) utf8 = std::move(markup);
        return result;
    }

  private:
    FakeXmlNode& AppendNodeCopy(FakeXmlNode& parent, const FakeXmlNode& node,
                                const XmlReplacements& replacements) {
        const auto kind = node.kind == Kind::kComment ? XmlTextKind::kVerbatim : XmlTextKind::kText;
        std::string value = node.value;
        if (node.kind != Kind::kInstruction) ReplaceXmlText(node.value, kind, replacements, value);
        const bool section = node.kind == Kind::kCData && value.find("]]>") == std::string::npos;
        FakeXmlNode& copy =
            m_tree->Append(parent, node.kind == Kind::kCData && !section ? Kind::kText : node.kind, node.name,
                           std::move(value));
        copy.attributes = node.attributes;
        for (auto& attribute : copy.attributes)
            if (!attribute.name.starts_with("xmlns"))
                ReplaceXmlText(attribute.value, XmlTextKind::kAttribute, replacements, attribute.value);
        return copy;
    }

    // Declares in the copy what the elements around `top` declare and something in it uses.
    static void DeclareOutside(FakeXmlNode& top, FakeXmlNode& copy) {
        std::set<std::string> used;
        for (FakeXmlNode* node = &top; node; node = Next(node, &top)) {
            used.insert("xmlns" + Prefix(node->name));
            for (const auto& attribute : node->attributes)
                if (!Prefix(attribute.name).empty()) used.insert("xmlns" + Prefix(attribute.name));
        }
        for (const auto& attribute : top.attributes) used.erase(attribute.name);
        for (const FakeXmlNode* outer = top.parent; outer; outer = outer->parent)
            for (const auto& attribute : outer->attributes)
                if (used.erase(attribute.name) > 0)
                    copy.attributes.insert(copy.attributes.begin(), attribute);
    }
    // ":p" of "p:name", "" of a name without a prefix.
    static std::string Prefix(const std::string& name) {
        const std::size_t colon = name.find(':');
        return colon == std::string::npos ? std::string() : ":" + name.substr(0, colon);
    }

    FakeXmlNode& Append(XmlNode* parent, Kind kind, const char* name, const char* value) {
        return m_tree->Append(parent ? *In(parent) : m_tree->top(), kind, name, value ? value : "");
    }

    std::shared_ptr<FakeXmlDom::Faults> m_faults;
    std::unique_ptr<FakeXmlTree> m_tree;
};

}  // namespace

std::shared_ptr<XmlDocument> FakeXmlDom::CreateDocument() {
    if (m_faults->create) return nullptr;
    return std::make_shared<FakeXmlDocument>(m_faults);
}

}  // namespace brindle
