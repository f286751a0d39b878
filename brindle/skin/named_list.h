// NamedList: entries with names, in the order in which they were first added, found by name in logarithmic time
// whatever the names are. Names compare byte by byte and case counts. Thread: a value type without shared state.
#pragma once

#include <cstddef>
#include <map>
#include <string_view>
#include <vector>

#include "brindle/framework/string_a.h"

namespace brindle {

// Names in the order of their bytes, which tables with look-ups by view want.
struct ByteOrder {
    using is_transparent = void;
    bool operator()(const CStringA& a, const CStringA& b) const noexcept { return a.view() < b.view(); }
    bool operator()(const CStringA& a, std::string_view b) const noexcept { return a.view() < b; }
    bool operator()(std::string_view a, const CStringA& b) const noexcept { return a < b.view(); }
};

// A copy is deep. `Value` is default-made for a new name.
template <class Value>
class NamedList {
  public:
    // A name and its value.
    struct Entry {
        CStringA name;
        Value value;
    };

    // Null when there is none of that name; valid until an entry is added.
    const Value* Find(std::string_view name) const noexcept {
        const auto found = m_places.find(name);
        return found == m_places.end() ? nullptr : &m_entries[found->second].value;
    }
    // The one of that name, added at the end when there is none; valid until the next one is added. Changes nothing
    // when memory runs out.
    Value& FindOrAdd(const CStringA& name) {
        const auto [found, isNew] = m_places.try_emplace(name, m_entries.size());
        try {
            if (isNew) m_entries.push_back({name, {}});
        } catch (...) {
            m_places.erase(found);
            throw;
        }
        return m_entries[found->second].value;
    }
    // There is one.
    void RemoveLast() noexcept {
        m_places.erase(m_places.find(m_entries.back().name));
        m_entries.pop_back();
    }
    const std::vector<Entry>& Entries() const noexcept { return m_entries; }
    template <class Visit>
    void ForEachValue(Visit visit) {
        for (Entry& entry : m_entries) visit(entry.value);
    }

  private:
    std::vector<Entry> m_entries;
    std::map<CStringA, std::size_t, ByteOrder> m_places;  // of m_entries
};

}  // namespace brindle
