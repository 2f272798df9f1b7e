// KORXContainers.h
//
// Four small untyped containers for the places where a template is not wanted. None of them
// owns the objects its pointers designate.
//
// KORXList is a doubly linked list of void*; KORXMap is the same list with an integer key on
// every node (it is not hashed: it keeps insertion order, and keys need not be unique). Both
// are shallow: a copy shares the nodes of the original. Clear() and the destructor release the
// head node only, so an owner that needs the memory back pops the elements first. PushFront
// never sets the tail: a list filled only at the front has no tail, and the tail operations
// (GetTop, PopBack) then see nothing. Their iterators hold one node pointer each
// (KORXLinkIterator); the end is the null node.
//
// KORXStack keeps void* on a growable array (KORXDynamicArray.h); copies share the array.
//
// KORXStringArray owns an array of heap C strings (new[]). Its copy is a borrowed, read-only
// view of the original's strings: changing a borrowed array stops the process with SIGSEGV.
#ifndef KORX_KORXCONTAINERS_H
#define KORX_KORXCONTAINERS_H

#include <korx/KORXDynamicArray.h>
#include <korx/KORXExport.h>

#include <cstdint>

/// One node pointer stepping along the next links, or the previous ones when Backward; the
/// end is the null node. Self is the iterator class built on it.
template <class Node, class Self, bool Backward = false> class KORXLinkIterator {
public:
    KORXLinkIterator(Node* node = nullptr) : m_node(node) {}

    /// The node's value.
    auto& operator*() const { return m_node->value; }
    Self& operator++() {
        m_node = Backward ? m_node->previous : m_node->next;
        return static_cast<Self&>(*this);
    }
    Node* GetNode() const { return m_node; }

    friend bool operator==(const Self& a, const Self& b) { return a.GetNode() == b.GetNode(); }
    friend bool operator!=(const Self& a, const Self& b) { return a.GetNode() != b.GetNode(); }

private:
    Node* m_node;
};

class KORX_API KORXList {
public:
    struct KORXListNode {
        void* value;
        KORXListNode* next;
        KORXListNode* previous;

        class KORXListIterator : public KORXLinkIterator<KORXListNode, KORXListIterator> {
        public:
            using KORXLinkIterator::KORXLinkIterator;
        };

        class KORXConstListIterator
            : public KORXLinkIterator<const KORXListNode, KORXConstListIterator> {
        public:
            using KORXLinkIterator::KORXLinkIterator;
            KORXConstListIterator(const KORXListIterator& it)
                : KORXLinkIterator(it.GetNode()) {}
        };

        class KORXReverseListIterator
            : public KORXLinkIterator<KORXListNode, KORXReverseListIterator, true> {
        public:
            using KORXLinkIterator::KORXLinkIterator;
        };
    };

    using KORXListIterator = KORXListNode::KORXListIterator;
    using KORXConstListIterator = KORXListNode::KORXConstListIterator;
    using KORXReverseListIterator = KORXListNode::KORXReverseListIterator;

    KORXList();
    /// Shares the other's nodes; nothing is duplicated.
    KORXList(const KORXList& other);
    KORXList& operator=(const KORXList& other);
    /// Releases the head node only.
    virtual ~KORXList();

    /// Releases the head node only, then leaves the list empty.
    void Clear();

    void PushBack(void* value);
    void Push(void* value) { PushBack(value); }
    void Append(void* value) { PushBack(value); }
    /// Does not set the tail.
    void PushFront(void* value);
    /// Nothing on an empty list.
    void PopFront();
    /// Nothing when there is no tail.
    void PopBack();
    void Pop() { PopBack(); }

    /// Null when empty.
    void* GetFront() const;
    /// Null when there is no tail.
    void* GetTop() const;
    void* GetBack() const { return GetTop(); }

    /// The first node from the head holding value, or the end.
    KORXListIterator Find(void* value);
    /// Nothing for the end.
    void Erase(const KORXListIterator& position);
    /// The first occurrence only.
    void Remove(void* const& value);
    /// Collapses every run of adjacent equal values to one node.
    void Unique();

    bool IsEmpty() const { return m_head == nullptr; }
    int GetSize() const { return m_count; }

    KORXListIterator Begin() { return KORXListIterator(m_head); }
    KORXListIterator End() { return KORXListIterator(); }
    KORXConstListIterator Begin() const { return KORXConstListIterator(m_head); }
    KORXConstListIterator End() const { return KORXConstListIterator(); }
    KORXReverseListIterator ReverseBegin() { return KORXReverseListIterator(m_tail); }
    KORXReverseListIterator ReverseEnd() { return KORXReverseListIterator(); }

private:
    KORXListNode* m_head;
    KORXListNode* m_tail;
    int32_t m_count;
};

class KORX_API KORXMap {
public:
    struct KORXMapNode {
        int32_t key;
        void* value;
        KORXMapNode* next;
        KORXMapNode* previous;

        class KORXMapIterator : public KORXLinkIterator<KORXMapNode, KORXMapIterator> {
        public:
            using KORXLinkIterator::KORXLinkIterator;
            long Key() const { return GetNode()->key; }
        };

        class KORXReverseMapIterator
            : public KORXLinkIterator<KORXMapNode, KORXReverseMapIterator, true> {
        public:
            using KORXLinkIterator::KORXLinkIterator;
            long Key() const { return GetNode()->key; }
        };
    };

    using KORXMapIterator = KORXMapNode::KORXMapIterator;
    using KORXReverseMapIterator = KORXMapNode::KORXReverseMapIterator;

    KORXMap();
    /// Shares the other's nodes; nothing is duplicated.
    KORXMap(const KORXMap& other);
    KORXMap& operator=(const KORXMap& other);
    /// Releases the head node only.
    virtual ~KORXMap();

    /// Releases the head node only, then leaves the map empty.
    void Clear();

    /// Keys are kept in 32 bits.
    void PushBack(long key, void* value);
    void Push(long key, void* value) { PushBack(key, value); }
    void Append(long key, void* value) { PushBack(key, value); }
    /// Does not set the tail.
    void PushFront(long key, void* value);
    void PopFront();
    /// Nothing when there is no tail.
    void PopBack();
    void Pop() { PopBack(); }

    /// Null / 0 when empty.
    void* GetFront() const;
    long GetFrontKey() const;
    /// Null / 0 when there is no tail.
    void* GetTop() const;
    long GetTopKey() const;
    void* GetBack() const { return GetTop(); }
    long GetBackKey() const { return GetTopKey(); }

    /// The first node from the head holding value, or the end.
    KORXMapIterator Find(void* const& value);
    /// The first node from the head with key, or the end.
    KORXMapIterator FindByKey(long key);
    /// The value of the last node with key in list order (searched from the tail back to the
    /// head); null when none or when there is no tail.
    void* GetValueByKey(long key) const;

    /// Nothing for the end.
    void Erase(const KORXMapIterator& position);
    /// The first occurrence only.
    void Remove(void* const& value);
    void RemoveByKey(long key);
    /// Collapses every run of adjacent equal values to one node; keys are not compared.
    void Unique();

    bool IsEmpty() const { return m_head == nullptr; }
    unsigned GetSize() const { return static_cast<unsigned>(m_count); }

    KORXMapIterator Begin() { return KORXMapIterator(m_head); }
    KORXMapIterator End() { return KORXMapIterator(); }
    KORXReverseMapIterator ReverseBegin() { return KORXReverseMapIterator(m_tail); }
    KORXReverseMapIterator ReverseEnd() { return KORXReverseMapIterator(); }

private:
    KORXMapNode* m_head;
    KORXMapNode* m_tail;
    int32_t m_count;
};

class KORX_API KORXStack {
public:
    KORXStack();
    /// Shares the other's array.
    KORXStack(const KORXStack& other);
    KORXStack& operator=(const KORXStack& other);
    // Not virtual although the operations are: the stack is never deleted through a base
    // pointer, and callers rely on its layout staying as it is.
    ~KORXStack();

    virtual int Size() const;
    /// Returns the new count.
    virtual int Push(void* element);
    /// Null when empty.
    virtual void* Pop();
    /// Null when empty.
    virtual void* GetTop() const;
    virtual bool IsEmpty() const;
    /// Element i from the bottom (0 is the first pushed). No bounds check.
    virtual void* ElementAt(int i) const;

private:
    KORXArrayHeader* m_header;
};

class KORX_API KORXStringArray {
public:
    KORXStringArray();
    /// A borrowed, read-only view of other's strings, valid while other keeps them.
    KORXStringArray(const KORXStringArray& other);
    KORXStringArray& operator=(const KORXStringArray&) = delete;
    /// Deletes the strings unless borrowed.
    ~KORXStringArray();

    /// Null when i >= GetCount().
    char* operator[](int i) const;
    int GetCount() const { return m_count; }
    int GetCapacity() const { return m_capacity; }

    /// Appends s itself: the array takes ownership of it (new[]).
    void Add(char* s);
    /// Appends a copy of the first len bytes of s, terminated.
    void Add(const char* s, unsigned len);
    /// Deletes every string and the storage.
    void Clear();

    /// Replaces out's strings with copies of these wrapped in double quotes.
    void PrintMe(KORXStringArray& out) const;
    /// Appends a copy of every non-empty piece of text between 0x1E separators. Always true
    /// unless the array is borrowed.
    bool ReadMe(const char* text);

private:
    bool stopOnBorrowed() const;
    void grow();

    char** m_items;
    int32_t m_capacity;
    int32_t m_count;
    bool m_borrowed;
};

#endif
