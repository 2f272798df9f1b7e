// LinkedNodes.h
//
// The node chain behind KORXList and KORXMap: a head, a tail that only appending sets, and a
// count, held by the container and edited here. Removals find a node's predecessor by walking
// from the head rather than trusting the previous links. Internal: not installed.
#ifndef KORX_INTERNAL_LINKEDNODES_H
#define KORX_INTERNAL_LINKEDNODES_H

#include <cstdint>

namespace korx::detail {

/// Node: an aggregate with value, next and previous (and anything before them).
template <class Node> class LinkedNodes {
public:
    LinkedNodes(Node*& head, Node*& tail, int32_t& count)
        : m_head(head), m_tail(tail), m_count(count) {}

    // Only the head node is released, its fields zeroed first: owners pop their elements
    // first, and callers rely on the other nodes staying untouched.
    void releaseHead() {
        if (m_head == nullptr)
            return;
        *m_head = Node{};
        delete m_head;
    }

    void clear() {
        releaseHead();
        m_head = nullptr;
        m_tail = nullptr;
        m_count = 0;
    }

    void pushBack(Node* node) {
        if (m_head == nullptr)
            m_head = node;
        if (m_tail != nullptr) {
            m_tail->next = node;
            node->previous = m_tail;
        }
        m_tail = node;
        ++m_count;
    }

    // The tail stays as it is, even on an empty chain: callers rely on a chain filled only at
    // the front having no tail.
    void pushFront(Node* node) {
        node->next = m_head;
        if (m_head != nullptr)
            m_head->previous = node;
        m_head = node;
        ++m_count;
    }

    void popFront() {
        if (m_head != nullptr)
            erase(m_head);
    }

    void popBack() {
        Node* last = m_tail;
        if (last == nullptr)
            return;
        if (last == m_head) {
            unlinkHead();
            m_tail = nullptr;
        } else {
            // A tail appended after front pushes is not linked to the head: it has no
            // predecessor, and the chain is left without a tail.
            Node* before = predecessorOf(last);
            if (before != nullptr)
                before->next = last->next;
            m_tail = before;
        }
        release(last);
    }

    /// Nothing for null, or for a node neither reachable from the head nor the tail.
    void erase(Node* node) {
        if (node == nullptr)
            return;
        if (node == m_head) {
            unlinkHead();
        } else {
            Node* before = predecessorOf(node);
            if (before == nullptr && node != m_tail)
                return;
            if (before != nullptr)
                linkAfter(before, node->next);
            if (node == m_tail)
                m_tail = before;
        }
        release(node);
    }

    /// Collapses every run of adjacent nodes with equal values to its first node.
    void unique() {
        Node* node = m_head;
        while (node != nullptr && node->next != nullptr) {
            Node* following = node->next;
            if (following->value != node->value) {
                node = following;
                continue;
            }
            // Drop the duplicate and compare the same node with its new successor.
            linkAfter(node, following->next);
            if (following == m_tail)
                m_tail = node;
            release(following);
        }
    }

    /// The first node from the head that match accepts, or null.
    template <class Match> Node* first(Match match) const {
        Node* node = m_head;
        while (node != nullptr && !match(*node))
            node = node->next;
        return node;
    }

private:
    void unlinkHead() {
        m_head = m_head->next;
        if (m_head != nullptr)
            m_head->previous = nullptr;
        else
            m_tail = nullptr;
    }

    static void linkAfter(Node* before, Node* next) {
        before->next = next;
        if (next != nullptr)
            next->previous = before;
    }

    void release(Node* node) {
        delete node;
        --m_count;
    }

    Node* predecessorOf(const Node* node) const {
        return first([node](const Node& n) { return n.next == node; });
    }

    Node*& m_head;
    Node*& m_tail;
    int32_t& m_count;
};

}  // namespace korx::detail

#endif
