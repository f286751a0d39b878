// CArray and its usual instances: the application framework's growing arrays, over std::vector.
// Indices are checked only by the caller, except where the comment says otherwise. Thread: a value type without
// shared state.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "brindle/framework/string_a.h"

template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray {
  public:
    std::ptrdiff_t GetSize() const noexcept { return static_cast<std::ptrdiff_t>(m_items.size()); }
    std::ptrdiff_t GetCount() const noexcept { return GetSize(); }
    std::ptrdiff_t GetUpperBound() const noexcept { return GetSize() - 1; }
    bool IsEmpty() const noexcept { return m_items.empty(); }
    // New elements are value-initialised; a negative size empties the array.
    void SetSize(std::ptrdiff_t size) { m_items.resize(size > 0 ? static_cast<std::size_t>(size) : 0); }

    const TYPE& GetAt(std::ptrdiff_t index) const { return m_items[static_cast<std::size_t>(index)]; }
    TYPE& ElementAt(std::ptrdiff_t index) { return m_items[static_cast<std::size_t>(index)]; }
    const TYPE& operator[](std::ptrdiff_t index) const { return GetAt(index); }
    TYPE& operator[](std::ptrdiff_t index) { return ElementAt(index); }
    void SetAt(std::ptrdiff_t index, ARG_TYPE value) { ElementAt(index) = value; }
    // Grows the array when the index lies behind its end.
    void SetAtGrow(std::ptrdiff_t index, ARG_TYPE value) {
        TYPE copy = value;
        if (index >= GetSize()) SetSize(index + 1);
        ElementAt(index) = std::move(copy);
    }

    std::ptrdiff_t Add(ARG_TYPE value) {  // index of the new element
        m_items.push_back(value);
        return GetUpperBound();
    }
    // Puts the value before the index; behind the end the array grows up to it.
    void InsertAt(std::ptrdiff_t index, ARG_TYPE value) {
        if (index >= GetSize()) {
            SetAtGrow(index, value);
            return;
        }
        m_items.insert(m_items.begin() + index, value);
    }
    void RemoveAt(std::ptrdiff_t index, std::ptrdiff_t count = 1) {
        m_items.erase(m_items.begin() + index, m_items.begin() + index + count);
    }
    void RemoveAll() noexcept { m_items.clear(); }
    // Copies of the other's items go to the end; the other may be this array itself.
    void Append(const CArray& other) {
        const std::vector<TYPE> copy = other.m_items;
        m_items.insert(m_items.end(), copy.begin(), copy.end());
    }
    void Copy(const CArray& other) { m_items = other.m_items; }

    auto begin() const noexcept { return m_items.begin(); }
    auto end() const noexcept { return m_items.end(); }

  private:
    std::vector<TYPE> m_items;
};

using CStringArray = CArray<CStringA>;
using CDWordArray = CArray<std::uint32_t>;
