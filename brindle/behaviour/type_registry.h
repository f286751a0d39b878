// What the trigger list and the action list have in common: a registry of types by name, and loading, saving
// and copying their items. Internal. Tests: type_registry_test.cpp runs the same cases on both.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "brindle/behaviour/engine_call.h"
#include "brindle/behaviour/item_list.h"
#include "brindle/behaviour/section.h"
#include "brindle/framework/list.h"
#include "brindle/framework/string_a.h"

namespace brindle {

template <class T>
class TypeRegistry {
  public:
    using Factory = T* (*)(unsigned long);

    void Register(const char* name, Factory factory) { m_entries.push_back({name, factory}); }

    T* Create(const char* name, unsigned long id) const {
        const CStringA wanted(name);
        for (const Entry& entry : m_entries) {
            if (entry.name.GetLength() != wanted.GetLength() || entry.name.CompareNoCase(wanted) != 0)
                continue;
            return entry.factory ? entry.factory(static_cast<std::uint32_t>(id)) : nullptr;
        }
        return nullptr;
    }

    void GetNames(CStringList& names) const {
        names.RemoveAll();
        for (const Entry& entry : m_entries) names.AddTail(entry.name);
    }

  private:
    struct Entry {
        CStringA name;
        Factory factory;
    };
    std::vector<Entry> m_entries;
};

// Appends an item for every child of the next section of that name whose type is registered, in document
// order.
template <class T>
void LoadItems(XMLReader& reader, const char* sectionName, const TypeRegistry<T>& registry,
               ItemList<T>& items) {
    const ReadSection section(reader, sectionName);
    if (!section) return;
    const EngineCall call;
    const ItemWalk<T> watch(items);  // an item may destroy the list that is being loaded
    const std::vector<CStringA> names = reader.GetChildSections();
    for (const CStringA& name : names) {
        std::unique_ptr<T> item(registry.Create(name, 0));
        if (!item) continue;
        const ReadSection child(reader, name);
        if (!child) continue;
        item->Load(reader);
        if (watch.ListGone()) return;
        items.AddTail(item.get());
        static_cast<void>(item.release());  // the list's from now on
    }
}

template <class T>
void SaveItems(XMLWriter& writer, const char* sectionName, const ItemList<T>& items) {
    const WriteSection section(writer, sectionName);
    ItemWalk<T> walk(items);
    while (const T* item = walk.Next()) item->Save(writer);
}

// Appends what each item's Replicate returns, null included; null items give null. A Replicate may change and
// destroy both lists: items that are gone at their turn give nothing, and nothing is appended to a list that is gone.
template <class T>
void AppendReplicas(const ItemList<T>& from, ItemList<T>& to) {
    const EngineCall call;
    const ItemWalk<T> source(from);
    const ItemWalk<T> target(to);
    std::vector<typename ItemList<T>::Item> items;  // a list assigned to itself doubles
    for (POSITION position = from.GetHeadPosition(); position;) items.push_back(from.GetNextItem(position));
    for (const auto& [object, serial] : items) {
        if (source.ListGone() || target.ListGone()) return;
        if (!from.Holds(serial)) continue;
        T* replica = object ? object->Replicate() : nullptr;
        const auto destroy = [](T* item) { DestroyItem(item); };
        std::unique_ptr<T, decltype(destroy)> owned(replica, destroy);
        if (target.ListGone()) return;
        to.AddTail(replica);
        static_cast<void>(owned.release());
    }
}

template <class T>
void DestroyItems(ItemList<T>& items) {
    while (POSITION position = items.GetHeadPosition()) DestroyItem(items.RemoveAt(position));
}

template <class T>
void RemoveAndDestroy(ItemList<T>& items, const T* item) {
    if (!item) return;
    if (POSITION position = items.Find(item)) DestroyItem(items.RemoveAt(position));
}

}  // namespace brindle
