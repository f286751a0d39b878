// CList: the application framework's doubly linked list, with positions that stay valid while other elements
// come and go. Nodes are taken from blocks of `blockSize`, so that neighbours lie close together in memory.
//
// A POSITION names one node of one list; null is "past the end". Using a position after its node was removed
// is a programming error, as it is for any container. Thread: a value type without shared state.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "brindle/framework/string_a.h"

struct __POSITION;
using POSITION = __POSITION*;

template <class TYPE, class ARG_TYPE = const TYPE&>
class CList {
    struct Node {
        Node* next;
        Node* prev;
        alignas(TYPE) unsigned char storage[sizeof(TYPE)];
        TYPE& value() { return *std::launder(reinterpret_cast<TYPE*>(storage)); }
    };

  public:
    explicit CList(std::size_t blockSize = 10) : m_blockSize(blockSize ? blockSize : 10) {}
    CList(const CList&) = delete;
    CList& operator=(const CList&) = delete;
    ~CList() { RemoveAll(); }

    std::ptrdiff_t GetCount() const noexcept { return m_count; }
    std::ptrdiff_t GetSize() const noexcept { return m_count; }
    bool IsEmpty() const noexcept { return m_count == 0; }

    POSITION GetHeadPosition() const noexcept { return ToPosition(m_head); }
    POSITION GetTailPosition() const noexcept { return ToPosition(m_tail); }
    TYPE& GetHead() { return m_head->value(); }
    TYPE& GetTail() { return m_tail->value(); }

    // The element at the position, which moves to the next element (null behind the last one).
    TYPE& GetNext(POSITION& position) { return Step(position, &Node::next); }
    const TYPE& GetNext(POSITION& position) const { return Step(position, &Node::next); }
    TYPE& GetPrev(POSITION& position) { return Step(position, &Node::prev); }
    const TYPE& GetPrev(POSITION& position) const { return Step(position, &Node::prev); }
    TYPE& GetAt(POSITION position) { return ToNode(position)->value(); }
    const TYPE& GetAt(POSITION position) const { return ToNode(position)->value(); }
    void SetAt(POSITION position, ARG_TYPE value) { ToNode(position)->value() = value; }

    POSITION AddHead(ARG_TYPE value) { return Link(nullptr, m_head, value); }
    POSITION AddTail(ARG_TYPE value) { return Link(m_tail, nullptr, value); }
    // A null position inserts at the head (before) or at the tail (after).
    POSITION InsertBefore(POSITION position, ARG_TYPE value) {
        Node* at = ToNode(position);
        return at ? Link(at->prev, at, value) : AddHead(value);
    }
    POSITION InsertAfter(POSITION position, ARG_TYPE value) {
        Node* at = ToNode(position);
        return at ? Link(at, at->next, value) : AddTail(value);
    }

    // The position is invalid afterwards, all others stay.
    void RemoveAt(POSITION position) {
        Node* node = ToNode(position);
        (node->prev ? node->prev->next : m_head) = node->next;
        (node->next ? node->next->prev : m_tail) = node->prev;
        node->value().~TYPE();
        node->next = m_free;
        m_free = node;
        --m_count;
    }
    void RemoveHead() { RemoveAt(GetHeadPosition()); }
    void RemoveTail() { RemoveAt(GetTailPosition()); }
    // Positions of the list are invalid afterwards.
    void RemoveAll() {
        while (m_head) RemoveHead();
        m_free = nullptr;
        m_blocks.clear();
    }

    // The first element equal to value behind `after` (from the head when null), or null.
    POSITION Find(ARG_TYPE value, POSITION after = nullptr) const {
        for (Node* node = after ? ToNode(after)->next : m_head; node; node = node->next)
            if (node->value() == value) return ToPosition(node);
        return nullptr;
    }
    POSITION FindIndex(std::ptrdiff_t index) const {
        if (index < 0 || index >= m_count) return nullptr;
        Node* node = m_head;
        while (index-- > 0) node = node->next;
        return ToPosition(node);
    }

  private:
    static Node* ToNode(POSITION position) { return reinterpret_cast<Node*>(position); }
    static POSITION ToPosition(Node* node) { return reinterpret_cast<POSITION>(node); }
    static TYPE& Step(POSITION& position, Node* Node::*link) {
        Node* node = ToNode(position);
        position = ToPosition(node->*link);
        return node->value();
    }
    Node* Allocate() {
        if (!m_free) {
            m_blocks.push_back(std::make_unique<Node[]>(m_blockSize));
            for (std::size_t i = m_blockSize; i-- > 0;) {
                m_blocks.back()[i].next = m_free;
                m_free = &m_blocks.back()[i];
            }
        }
        return std::exchange(m_free, m_free->next);
    }
    POSITION Link(Node* prev, Node* next, ARG_TYPE value) {
        Node* node = Allocate();
        try {
            ::new (static_cast<void*>(node->storage)) TYPE(value);
        } catch (...) {
            node->next = m_free;
            m_free = node;
            throw;
        }
        node->prev = prev;
        node->next = next;
        (prev ? prev->next : m_head) = node;
        (next ? next->prev : m_tail) = node;
        ++m_count;
        return ToPosition(node);
    }

    Node* m_head = nullptr;
    Node* m_tail = nullptr;
    Node* m_free = nullptr;
    std::ptrdiff_t m_count = 0;
    std::size_t m_blockSize;
    std::vector<std::unique_ptr<Node[]>> m_blocks;
};

using CStringList = CList<CStringA>;
