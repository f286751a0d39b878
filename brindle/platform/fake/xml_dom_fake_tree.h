// The fake XML DOM's tree and its parser.
#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/framework/result.h"
#include "brindle/platform/xml_dom.h"

namespace brindle {

struct FakeXmlNode {
    enum class Kind { kDocument, kElement, kText, kCData, kComment, kInstruction };
    struct Attribute {
        std::string name;
        std::string value;
    };

    Kind kind = Kind::kDocument;
    std::string name;   // element, instruction
    std::string value;  // the others, and an instruction's data
    std::vector<Attribute> attributes;
    std::vector<FakeXmlNode*> children;
    FakeXmlNode* parent = nullptr;
    std::size_t index = 0;  // in the parent's children
    XmlPosition place;
};

// Owns its nodes one by one, so that no tree is too deep to be freed.
class FakeXmlTree {
  public:
    FakeXmlNode& top() noexcept { return m_nodes.front(); }
    FakeXmlNode& Append(FakeXmlNode& parent, FakeXmlNode::Kind kind, std::string name, std::string value);

    bool hasDeclaration = false;

  private:
    std::deque<FakeXmlNode> m_nodes{1};
};

// Strict: the first thing that is not as it should be ends the parse.
Result ParseFakeXml(std::string_view utf8, bool recordPlaces, FakeXmlTree& tree);

}  // namespace brindle
