// CMap: the application framework's hashed table. Positions stay valid while other entries come and go; the
// walk goes in the order in which the keys were first set. Thread: a value type without shared state.
#pragma once

#include <cstddef>
#include <functional>
#include <unordered_map>
#include <utility>

#include "brindle/framework/list.h"
#include "brindle/framework/string_a.h"

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE>
class CMap {
  public:
    // A key with its value, as the walk shows them.
    struct CPair {
        const KEY key;
        VALUE value;
    };

    CMap() = default;
    CMap(const CMap&) = delete;
    CMap& operator=(const CMap&) = delete;

    std::ptrdiff_t GetCount() const noexcept { return m_pairs.GetCount(); }
    std::ptrdiff_t GetSize() const noexcept { return m_pairs.GetCount(); }
    bool IsEmpty() const noexcept { return m_pairs.IsEmpty(); }

    // False, and `value` unchanged, when there is no such key.
    bool Lookup(ARG_KEY key, VALUE& value) const {
        const CPair* const pair = PLookup(key);
        if (pair) value = pair->value;
        return pair != nullptr;
    }
    // The entry, or null. Valid until the entry is removed.
    const CPair* PLookup(ARG_KEY key) const {
        const auto found = m_positions.find(key);
        return found == m_positions.end() ? nullptr : &m_pairs.GetAt(found->second);
    }
    CPair* PLookup(ARG_KEY key) { return const_cast<CPair*>(std::as_const(*this).PLookup(key)); }

    // The value of that key; a new entry holds a value-initialised one.
    VALUE& operator[](ARG_KEY key) {
        if (CPair* const pair = PLookup(key)) return pair->value;
        const POSITION position = m_pairs.AddTail(CPair{KEY(key), VALUE()});
        try {
            m_positions.emplace(key, position);
        } catch (...) {
            m_pairs.RemoveAt(position);
            throw;
        }
        return m_pairs.GetAt(position).value;
    }
    void SetAt(ARG_KEY key, ARG_VALUE value) { (*this)[key] = value; }

    bool RemoveKey(ARG_KEY key) {  // false when there was none
        const auto found = m_positions.find(key);
        if (found == m_positions.end()) return false;
        const POSITION position = found->second;
        m_positions.erase(found);  // first: `key` may refer to the entry's own
        m_pairs.RemoveAt(position);
        return true;
    }
    // Positions are invalid afterwards.
    void RemoveAll() {
        m_positions.clear();
        m_pairs.RemoveAll();
    }

    // The walk: null behind the last entry. Setting and removing other entries does not disturb it.
    POSITION GetStartPosition() const noexcept { return m_pairs.GetHeadPosition(); }
    void GetNextAssoc(POSITION& position, KEY& key, VALUE& value) const {
        const CPair& pair = m_pairs.GetNext(position);
        key = pair.key;
        value = pair.value;
    }
    const CPair* PGetFirstAssoc() const { return IsEmpty() ? nullptr : &m_pairs.GetAt(GetStartPosition()); }

  private:
    CList<CPair> m_pairs;
    std::unordered_map<KEY, POSITION> m_positions;
};

using CMapStringToString = CMap<CStringA, const CStringA&, CStringA, const CStringA&>;
