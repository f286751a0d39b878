// SortedTexts: texts by name in the byte order of the names, all in one piece of memory. Names compare byte by byte
// and case counts. Thread: a value type without shared state.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "brindle/framework/string_a.h"

namespace brindle {

// A copy is deep. A new name set takes time in proportion to the names there are. Many are better appended and then
// sorted once; between the two nothing else may be called.
class SortedTexts {
  public:
    // One text and its name.
    struct Entry {
        CStringA name;
        CStringA value;
    };

    // Null when there is none of that name; valid until the next change.
    const CStringA* Find(std::string_view name) const noexcept {
        const auto place = std::lower_bound(m_entries.begin(), m_entries.end(), name, Before());
        return place == m_entries.end() || place->name.view() != name ? nullptr : &place->value;
    }
    // Adds a text or replaces the one of that name. Changes nothing when memory runs out.
    void Set(const CStringA& name, const CStringA& value) {
        const auto place = std::lower_bound(m_entries.begin(), m_entries.end(), name.view(), Before());
        Entry entry{name, value};
        if (place == m_entries.end() || place->name.view() != name.view())
            m_entries.insert(place, std::move(entry));
        else
            place->value = std::move(entry.value);
    }
    void Append(const CStringA& name, const CStringA& value) {
        Entry& entry = m_entries.emplace_back();
        entry.name = name;
        entry.value = value;
    }
    void Reserve(std::size_t count) { m_entries.reserve(count); }
    // Of several with one name the last remains.
    void Sort() {
        const auto isOutOfOrder = [](const Entry& a, const Entry& b) {
            return a.name.view() >= b.name.view();
        };
        if (std::adjacent_find(m_entries.begin(), m_entries.end(), isOutOfOrder) == m_entries.end()) return;
        std::stable_sort(m_entries.begin(), m_entries.end(), Before());
        const auto isSame = [](const Entry& a, const Entry& b) { return a.name.view() == b.name.view(); };
        const auto firstLast = std::unique(m_entries.rbegin(), m_entries.rend(), isSame);
        m_entries.erase(m_entries.begin(), firstLast.base());
    }

    const std::vector<Entry>& Entries() const noexcept { return m_entries; }
    bool IsEmpty() const noexcept { return m_entries.empty(); }

  private:
    struct Before {
        bool operator()(const Entry& a, const Entry& b) const noexcept {
            return a.name.view() < b.name.view();
        }
        bool operator()(const Entry& a, std::string_view b) const noexcept { return a.name.view() < b; }
    };

    std::vector<Entry> m_entries;
};

}  // namespace brindle
