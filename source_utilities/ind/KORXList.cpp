#include <korx/KORXContainers.h>

#include "internal/LinkedNodes.h"

using Node = KORXList::KORXListNode;
using Chain = korx::detail::LinkedNodes<Node>;

KORXList::KORXList() : m_head(nullptr), m_tail(nullptr), m_count(0) {}

KORXList::KORXList(const KORXList& other)
    : m_head(other.m_head), m_tail(other.m_tail), m_count(other.m_count) {}

KORXList& KORXList::operator=(const KORXList& other) {
    m_head = other.m_head;
    m_tail = other.m_tail;
    m_count = other.m_count;
    return *this;
}

KORXList::~KORXList() { Chain(m_head, m_tail, m_count).releaseHead(); }

void KORXList::Clear() { Chain(m_head, m_tail, m_count).clear(); }

void KORXList::PushBack(void* value) {
    Chain(m_head, m_tail, m_count).pushBack(new Node{value, nullptr, nullptr});
}

void KORXList::PushFront(void* value) {
    Chain(m_head, m_tail, m_count).pushFront(new Node{value, nullptr, nullptr});
}

void KORXList::PopFront() { Chain(m_head, m_tail, m_count).popFront(); }

void KORXList::PopBack() { Chain(m_head, m_tail, m_count).popBack(); }

void* KORXList::GetFront() const { return m_head != nullptr ? m_head->value : nullptr; }

void* KORXList::GetTop() const { return m_tail != nullptr ? m_tail->value : nullptr; }

KORXList::KORXListIterator KORXList::Find(void* value) {
    return Chain(m_head, m_tail, m_count).first([value](const Node& n) { return n.value == value; });
}

void KORXList::Erase(const KORXListIterator& position) {
    Chain(m_head, m_tail, m_count).erase(position.GetNode());
}

void KORXList::Remove(void* const& value) { Erase(Find(value)); }

void KORXList::Unique() { Chain(m_head, m_tail, m_count).unique(); }
