// VariableIndex: the names of a scope side by side in their order, so that finding one touches little memory. It
// points into the scope's own map, which owns the variables. Defined here in full: resolve spends its time in it.
// Thread: the scope's.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "brindle/framework/export.h"
#include "brindle/variables/variable.h"

namespace brindle {

class BRINDLE_API VariableIndex {
  public:
    // The variable of exactly that name, or null.
    const Variable* Find(std::string_view name) const noexcept {
        const std::uint64_t start = StartOf(name);
        const std::size_t at = LowerBound(start, name);
        if (at == m_entries.size() || m_entries[at].start != start || !IsName(m_entries[at], name))
            return nullptr;
        return m_entries[at].variable;
    }
    // Takes the memory for one more, so that the next Insert cannot fail.
    void MakeRoom() {
        if (m_entries.size() == m_entries.capacity()) m_entries.reserve(2 * m_entries.size() + 8);
    }
    // Adds a variable whose name is not there yet.
    void Insert(const Variable& variable) {
        const std::string_view name = variable.name().view();
        const std::uint64_t start = StartOf(name);
        m_entries.insert(m_entries.begin() + static_cast<std::ptrdiff_t>(LowerBound(start, name)),
                         {start, &variable});
    }
    // Removes a name that is there.
    void Erase(std::string_view name) noexcept {
        m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(LowerBound(StartOf(name), name)));
    }
    void Clear() noexcept { m_entries.clear(); }
    // Adds a variable whose name is greater than all others.
    void Append(const Variable& variable) {
        m_entries.push_back({StartOf(variable.name().view()), &variable});
    }

  private:
    struct Entry {
        std::uint64_t start;
        const Variable* variable;
    };

    // The first eight bytes as a number. Of two names with different starts, the one with the smaller start is the
    // smaller name; equal starts decide nothing.
    static std::uint64_t StartOf(std::string_view name) noexcept {
        constexpr std::size_t kBytes = sizeof(std::uint64_t);
        const std::size_t count = std::min(name.size(), kBytes);
        std::uint64_t start = 0;
        for (std::size_t i = 0; i < count; ++i) start = (start << 8) | static_cast<unsigned char>(name[i]);
        return count == 0 ? 0 : start << (8 * (kBytes - count));
    }

    // For an entry with the same start.
    static bool IsName(const Entry& entry, std::string_view name) noexcept {
        const std::string_view own = entry.variable->name().view();
        return own.size() == name.size() && (name.size() <= sizeof entry.start || own == name);
    }

    // The first place whose name is not smaller.
    std::size_t LowerBound(std::uint64_t start, std::string_view name) const noexcept {
        std::size_t first = 0;
        for (std::size_t count = m_entries.size(); count > 0;) {
            const std::size_t half = count / 2;
            if (m_entries[first + half].start < start) first += count - half;
            count = half;
        }
        // Names that share their start, a few at most as a rule, are told apart in full.
        if (first == m_entries.size() || m_entries[first].start != start || IsName(m_entries[first], name))
            return first;
        const auto smaller = [start](const Entry& entry, std::string_view wanted) {
            return entry.start == start && entry.variable->name().view() < wanted;
        };
        const auto begin = m_entries.begin() + static_cast<std::ptrdiff_t>(first);
        return static_cast<std::size_t>(std::lower_bound(begin, m_entries.end(), name, smaller) -
                                        m_entries.begin());
    }

    std::vector<Entry> m_entries;
};

}  // namespace brindle
