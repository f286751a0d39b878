// SlowResolve: reference expansion written down as it is explained, as a tree of nodes and a recursion over it.
// The oracle of the resolve tests and of the fuzz target; only for texts nested less than a few thousand deep.
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace brindle::testing {

using SlowScope = std::map<std::string, std::string>;

class SlowResolve {
  public:
    // Scopes from the innermost outwards. The result is what VariableManager::resolve of the innermost returns.
    static bool Run(std::string& text, const std::vector<SlowScope>& scopes) {
        bool first = true;
        bool result = false;
        for (const SlowScope& scope : scopes) {
            const bool found = RunOne(text, scope);
            if (first) result = found;
            first = false;
            if (!found) break;
        }
        return result;
    }

  private:
    struct Node {
        bool isReference = false;
        std::string text;  // a literal's text, or the beginning of a reference's name
        Node* parent = nullptr;
        std::vector<std::unique_ptr<Node>> children;

        Node& Add(bool reference) {
            children.push_back(std::make_unique<Node>());
            children.back()->isReference = reference;
            children.back()->parent = this;
            return *children.back();
        }
    };

    static bool RunOne(std::string& text, const SlowScope& scope) {
        const auto open = text.find('{');
        if (open == std::string::npos || text.find('}', open) == std::string::npos) return false;
        Node root;
        if (!Parse(text, root)) return false;
        std::string expanded;
        for (const auto& child : root.children) expanded += Expand(*child, scope);
        text = expanded;
        return true;
    }

    // True when a "{" was seen.
    static bool Parse(const std::string& text, Node& root) {
        Node* current = &root;
        Node* run = nullptr;  // where characters go; null: to a new literal
        bool seen = false;
        for (const char c : text) {
            if (c == '{') {
                current = &current->Add(true);
                run = current;
                seen = true;
            } else if (c == '}') {
                if (current == &root) break;
                current = current->parent;
                run = nullptr;
            } else {
                if (!run) run = &current->Add(false);
                run->text += c;
            }
        }
        return seen;
    }

    static std::string Expand(const Node& node, const SlowScope& scope) {
        if (!node.isReference) return node.text;
        std::string name = node.text;
        for (const auto& child : node.children) name += Expand(*child, scope);
        const auto found = scope.find(name);
        return found == scope.end() ? "{" + name + "}" : found->second;
    }
};

}  // namespace brindle::testing
