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
    std::array<std::size_t, 16> m_near;  // NOLINT(*-member-init): written before it is read
    std::vector<std::size_t> m_far;
};

// The place of the first bracket at or behind `at`, or the text's size.
std::size_t NextBracket(std::string_view text, std::size_t at) {
    while (at < text.size() && text[at] != '{' && text[at] != '}') ++at;
    return at;
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

// The value of a reference, or null when it stays as it is. The text would have `size` bytes besides the value.
const CStringA* VariableManager::valueOf(std::string_view name, std::size_t size) const noexcept {
    const Variable* variable = m_index.Find(name);
    const bool fits = variable && size + variable->value().view().size() <= kResolveLimit;
    return fits ? &variable->value() : nullptr;
}

// Closes the reference whose "{" stands at `open` of the expansion: its value takes its place, or a "}" completes
// it. `rest` bytes of the text are still to come.
void VariableManager::closeReference(std::size_t open, std::size_t rest, std::string& expanded) const {
    if (const CStringA* value = valueOf(std::string_view(expanded).substr(open + 1), open + rest)) {
        expanded.resize(open);
        expanded.append(value->view());
    } else {
        expanded += '}';
    }
}

bool VariableManager::resolveHere(CStringA& text) const {
    const std::string_view in = text.view();
    if (!HasReference(in)) return false;
    std::string expanded;
    expanded.reserve(in.size() + in.size() / 2);
    OffsetStack open;
    for (std::size_t at = 0;;) {
        const std::size_t bracket = NextBracket(in, at);
        expanded.append(in.data() + at, bracket - at);
        at = bracket + 1;
        if (bracket == in.size()) break;
        if (in[bracket] == '}') {
            if (open.empty()) break;  // a "}" outside any reference ends the text
            closeReference(open.pop(), in.size() - bracket, expanded);
            continue;
        }
        // A reference with no other inside needs no place on the stack.
        const std::size_t end = NextBracket(in, at);
        const bool simple = end < in.size() && in[end] == '}';
        const CStringA* value =
            simple ? valueOf(in.substr(at, end - at), expanded.size() + in.size() - end) : nullptr;
        if (value) {
            expanded.append(value->view());
        } else {
            if (!simple) open.push(expanded.size());
            expanded.append(in.data() + bracket, end - bracket);
            if (simple) expanded += '}';
        }
        at = simple ? end + 1 : end;
    }
    while (!open.empty()) closeReference(open.pop(), 0, expanded);
    text = std::move(expanded);
    return true;
}
