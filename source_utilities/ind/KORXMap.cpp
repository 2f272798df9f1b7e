#include <korx/KORXContainers.h>

#include "internal/LinkedNodes.h"

using Node = KORXMap::KORXMapNode;
using Chain = korx::detail::LinkedNodes<Node>;

namespace {

// Keys are kept in 32 bits; a key given as long is compared in the same width.
int32_t storedKey(long key) { return static_cast<int32_t>(key); }

}  // namespace

KORXMap::KORXMap() : m_head(nullptr), m_tail(nullptr), m_count(0) {}

KORXMap::KORXMap(const KORXMap& other)
    : m_head(other.m_head), m_tail(other.m_tail), m_count(other.m_count) {}

KORXMap& KORXMap::operator=(const KORXMap& other) {
    m_head = other.m_head;
    m_tail = other.m_tail;
    m_count = other.m_count;
    return *this;
}

KORXMap::~KORXMap() { Chain(m_head, m_tail, m_count).releaseHead(); }

void KORXMap::Clear() { Chain(m_head, m_tail, m_count).clear(); }

void KORXMap::PushBack(long key, void* value) {
    Chain(m_head, m_tail, m_count).pushBack(new Node{storedKey(key), value, nullptr, nullptr});
}

void KORXMap::PushFront(long key, void* value) {
    Chain(m_head, m_tail, m_count).pushFront(new Node{storedKey(key), value, nullptr, nullptr});
}

void KORXMap::PopFront() { Chain(m_head, m_tail, m_count).popFront(); }

void KORXMap::PopBack() { Chain(m_head, m_tail, m_count).popBack(); }

void* KORXMap::GetFront() const { return m_head != nullptr ? m_head->value : nullptr; }

long KORXMap::GetFrontKey() const { return m_head != nullptr ? m_head->key : 0; }

void* KORXMap::GetTop() const { return m_tail != nullptr ? m_tail->value : nullptr; }

long KORXMap::GetTopKey() const { return m_tail != nullptr ? m_tail->key : 0; }

KORXMap::KORXMapIterator KORXMap::Find(void* const& value) {
    return Chain(m_head, m_tail, m_count).first([value](const Node& n) { return n.value == value; });
}

KORXMap::KORXMapIterator KORXMap::FindByKey(long key) {
    return Chain(m_head, m_tail, m_count).first([key](const Node& n) {
        return n.key == storedKey(key);
    });
}

// From the tail back, so the last node with the key wins, unlike FindByKey: callers rely on
// both. A map without a tail finds nothing.
void* KORXMap::GetValueByKey(long key) const {
    for (const Node* node = m_tail; node != nullptr; node = node->previous) {
        if (node->key == storedKey(key))
            return node->value;
        if (node == m_head)
            break;
    }
    return nullptr;
}

void KORXMap::Erase(const KORXMapIterator& position) {
    Chain(m_head, m_tail, m_count).erase(position.GetNode());
}

void KORXMap::Remove(void* const& value) { Erase(Find(value)); }

void KORXMap::RemoveByKey(long key) { Erase(FindByKey(key)); }

// Values are compared, keys are not: a duplicate goes whatever its key.
void KORXMap::Unique() { Chain(m_head, m_tail, m_count).unique(); }
