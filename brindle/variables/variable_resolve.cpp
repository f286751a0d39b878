// Reference expansion of VariableManager, in one pass without recursion: the expansion of everything read so
// far stands in one buffer, and a stack remembers where in it the references that are still open begin. Entry
// point: VariableManager::resolve. Tested in variable_resolve_test.cpp, compared with testing/slow_resolve.h
// there and in fuzz/variables_resolve_fuzz.cpp.
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "brindle/variables/variable_manager.h"

namespace {

// A stack of offsets whose first few need no memory of their own.
class OffsetStack {
  public:
    bool empty() const noexcept { return m_size == 0; }
    void push(std::size_t offset) {
        if (m_size < m_near.size()) {
            m_near[m_size] = offset;
        } else {
            m_far.push_back(offset);
        }
        ++m_size;
    }
    std::size_t pop() noexcept {
        --m_size;
        if (m_size < m_near.size()) return m_near[m_size];
        const std::size_t offset = m_far.back();
        m_far.pop_back();
        return offset;
    }

  private:
    std::size_t m_size = 0;
    std::array<std::size_t, 16> m_near;  // NOLINT: written before it is read
    std::vector<std::size_t> m_far;
};

constexpr bool IsBracket(char c) {
    return c == '{' || c == '}';
}

// True when the text has a reference that expansion reaches: a "}" in front of the first "{" would end the text.
bool HasReference(std::string_view text) {
    const std::size_t open = text.find('{');
    const std::size_t close = text.find('}');
    return open != std::string_view::npos && close != std::string_view::npos && open < close;
}

}  // namespace

bool VariableManager::containsVariable(const CStringA& text) {
    const std::size_t open = text.view().find('{');
    return open != std::string_view::npos && text.view().find('}', open) != std::string_view::npos;
}

CStringA VariableManager::encloseInBrackets(const CStringA& name) {
    const std::string_view text = name.view();
    // Kept: one bracket is enough to leave a name alone, also when its partner is missing.
    if (text.empty() || text.front() == '{' || text.back() == '}') return name;
    return "{" + name + "}";
}

bool VariableManager::resolve(CStringA& text) const {
    if (!resolveHere(text)) return false;
    for (const VariableManager* scope = m_parent; scope && scope->resolveHere(text);) scope = scope->m_parent;
    return true;
}

// Closes the reference whose "{" stands at `open`: its value takes its place, or a "}" completes it. `rest` bytes
// of the text are still to come.
void VariableManager::closeReference(std::size_t open, std::size_t rest, std::string& expanded) const {
    const auto found = m_variables.find(std::string_view(expanded).substr(open + 1));
    if (found == m_variables.end() || open + rest + found->second.value().view().size() > kResolveLimit) {
        expanded += '}';
    } else {
        expanded.replace(open, std::string::npos, found->second.value().str());
    }
}

bool VariableManager::resolveHere(CStringA& text) const {
    const std::string_view in = text.view();
    if (!HasReference(in)) return false;
    std::string expanded;
    expanded.reserve(in.size() + in.size() / 2);
    OffsetStack open;
    for (std::size_t i = 0; i < in.size(); ++i) {
        const std::size_t run = i;
        while (i < in.size() && !IsBracket(in[i])) ++i;
        expanded.append(in, run, i - run);
        if (i == in.size()) break;
        if (in[i] == '{') {
            open.push(expanded.size());
            expanded += '{';
        } else if (open.empty()) {
            break;  // a "}" outside any reference ends the text
        } else {
            closeReference(open.pop(), in.size() - i, expanded);
        }
    }
    while (!open.empty()) closeReference(open.pop(), 0, expanded);
    text = std::move(expanded);
    return true;
}
