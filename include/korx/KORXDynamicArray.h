// KORXDynamicArray.h
//
// The growable array every container of the library rests on. KORXArrayHeader and the
// korxArray functions keep an untyped block of fixed-size elements and move them as raw bytes;
// KORXDynamicArray<T> is a one-pointer handle over a header that constructs, copies and destroys
// typed elements. Copies of a handle share one header (no copy-on-write); copy() is the only
// deep copy. Functions taking a header first check it: a null header, or one whose validity
// word differs from its data pointer, makes them fail (0 or null) without touching anything.
//
// Elements are relocated with memcpy when the block grows, so T must survive a byte copy to a
// new address (no pointers into itself).
//
// KORXMemoryBoundAllocate / KORXMemoryBoundFree: guarded blocks for finding memory overwrites.
#ifndef KORX_KORXDYNAMICARRAY_H
#define KORX_KORXDYNAMICARRAY_H

#include <korx/KORXExport.h>

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

struct KORX_API KORXArrayHeader {
    void* check;          // validity word: equals data while the header is valid
    int32_t capacity;     // element slots in the data block
    int32_t count;        // slots in use
    int32_t elementSize;  // bytes per element
    float factor;         // growth factor, always 1.5
    int32_t shareCount;   // holders besides the first
    void* data;           // capacity x elementSize bytes
};

/// Null when capacity < 1, elementSize < 1 or memory is short. The block is zero-filled.
KORX_API KORXArrayHeader* korxArrayAllocate(int capacity, int elementSize);
/// Appends elementSize bytes from element, growing first when full. 1 or 0.
KORX_API int korxArrayAdd(KORXArrayHeader*& header, void* element);
/// Appends n elements from items (which may lie in the array's own block) with at most one
/// move of the block; the capacity ends where n korxArrayAdd calls would leave it. 1, or 0
/// with nothing changed.
KORX_API int korxArrayAddItems(KORXArrayHeader*& header, const void* items, int n);
/// Inserts before index; index >= count appends. A negative index is refused (0).
KORX_API int korxArrayInsertAt(KORXArrayHeader*& header, int index, void* element);
/// Removes slot index (0 <= index < count); the vacated last slot keeps its bytes.
KORX_API int korxArrayRemoveAt(KORXArrayHeader*& header, int index);
KORX_API int korxArraySetAt(KORXArrayHeader*& header, int index, void* element);
/// Grows destination by source's count, filled with copies of destination's own leading
/// elements (source's bytes are never read). 0 for differing element sizes.
KORX_API int korxArrayAppend(KORXArrayHeader*& destination, KORXArrayHeader* source);
KORX_API int korxArrayCheck(KORXArrayHeader*& header);
/// Count to 0; capacity and bytes kept.
KORX_API int korxArrayClear(KORXArrayHeader*& header);
KORX_API int korxArrayCount(KORXArrayHeader* header);
/// Shares the header (share count + 1) and returns it.
KORX_API KORXArrayHeader* korxArrayCopy(KORXArrayHeader* header);
/// Drops one share; the last holder frees the header and gets its pointer nulled.
KORX_API void korxArrayFree(KORXArrayHeader*& header);
/// Grows capacity to truncate(1.5 x capacity + 1); the new slots are zero.
KORX_API int korxArrayRealloc(KORXArrayHeader*& header);

/// size bytes between two 16-byte guards; null above 4 GiB - 1 or when memory is short.
KORX_API void* KORXMemoryBoundAllocate(size_t size);
/// Checks both guards, reports damage on standard output, frees the block in any case.
KORX_API void KORXMemoryBoundFree(void* p);
/// Bytes currently held in guarded blocks, and the largest such total seen.
KORX_API size_t KORXMemoryBoundGetTotal();
KORX_API size_t KORXMemoryBoundGetPeak();

/// Tag for a registry with static storage: the handle is constant-initialised to a null
/// header, so registrations made by other static initialisers before its own turn are kept.
struct KORXStaticRegistryTag {};
constexpr KORXStaticRegistryTag korxStaticRegistry{};

template <class T> class KORXDynamicArray {
public:
    KORXDynamicArray() : m_header(korxArrayAllocate(kDefaultCapacity, kElementSize)) {}

    /// A null header until the first add(): for registries reached during start-up.
    constexpr explicit KORXDynamicArray(KORXStaticRegistryTag) noexcept : m_header(nullptr) {}

    KORXDynamicArray(int n, const T& fill) {
        if (n < 1) {
            m_header = korxArrayAllocate(kDefaultCapacity, kElementSize);
            return;
        }
        m_header = korxArrayAllocate(n, kElementSize);
        for (int i = 0; i < n; ++i)
            add(fill);
    }

    KORXDynamicArray(const KORXDynamicArray& other) : m_header(korxArrayCopy(other.m_header)) {}

    ~KORXDynamicArray() { release(); }

    KORXDynamicArray& operator=(const KORXDynamicArray& other) {
        if (this == &other)
            return *this;
        if (m_header != nullptr)
            release();
        m_header = korxArrayCopy(other.m_header);
        return *this;
    }

    /// Identity: both handles hold the same header.
    bool operator==(const KORXDynamicArray& other) const { return m_header == other.m_header; }
    bool operator!=(const KORXDynamicArray& other) const { return m_header != other.m_header; }

    /// No bounds check.
    T& operator[](int i) { return getArray()[i]; }
    const T& operator[](int i) const { return getArray()[i]; }

    T* getArray() { return m_header ? static_cast<T*>(m_header->data) : nullptr; }
    const T* getArray() const { return m_header ? static_cast<const T*>(m_header->data) : nullptr; }

    /// korxArrayCount of the header, inline.
    int size() const {
        return m_header != nullptr && m_header->check == m_header->data ? m_header->count : 0;
    }
    KORXArrayHeader* getHeader() const { return m_header; }

    /// Whether p points into the array's block (used or free slots): what the array is about
    /// to move or overwrite.
    bool holds(const T* p) const {
        if (m_header == nullptr || m_header->data == nullptr)
            return false;
        const auto address = reinterpret_cast<uintptr_t>(p);
        const auto first = reinterpret_cast<uintptr_t>(m_header->data);
        const auto last = first + static_cast<uintptr_t>(m_header->capacity) * sizeof(T);
        return address >= first && address < last;
    }

    /// The low 32 bits of the header's address, consistent with operator==.
    unsigned int getHash() const {
        return static_cast<unsigned int>(reinterpret_cast<uintptr_t>(m_header));
    }

    void add(const T& element) {
        // A free slot takes the copy directly: the same result as the byte copy followed by
        // the copy construction over it, without leaving the header's hands.
        if (void* slot = freeSlot()) {
            ::new (slot) T(element);
            ++m_header->count;
            return;
        }
        addGrowing(element);
    }

    /// Appends n elements byte for byte, growing at most once: for trivially copyable T.
    void addItems(const T* items, int n) {
        static_assert(std::is_trivially_copyable<T>::value, "addItems copies elements as bytes");
        if (m_header == nullptr)
            m_header = korxArrayAllocate(kDefaultCapacity, kElementSize);
        korxArrayAddItems(m_header, items, n);
    }

    /// As add(const T&), moving the element into a free slot.
    void add(T&& element) {
        if (void* slot = freeSlot()) {
            ::new (slot) T(static_cast<T&&>(element));
            ++m_header->count;
            return;
        }
        addGrowing(element);
    }

    /// Callers keep 0 <= i <= size().
    void insert(int i, const T& element) {
        if (holds(&element)) {
            const T copy(element);
            insert(i, copy);
            return;
        }
        const int before = size();
        if (korxArrayInsertAt(m_header, i, const_cast<T*>(&element)) == 0)
            return;
        constructAt(i < before ? i : before, element);
    }

    /// Adds copies of other's elements in order, re-reading its size at each step.
    void append(const KORXDynamicArray& other) {
        for (int i = 0; i < other.size(); ++i)
            add(other[i]);
    }

    /// The only deep copy: a new, unshared array.
    KORXDynamicArray copy() const {
        KORXDynamicArray result;
        for (int i = 0; i < size(); ++i)
            result.add((*this)[i]);
        return result;
    }

    /// Destroys the elements whatever the share count: the other holders see count 0 too.
    void clear() {
        destroyRange(0, size());
        korxArrayClear(m_header);
    }

    void purge() {
        release();
        m_header = korxArrayAllocate(kDefaultCapacity, kElementSize);
    }

    /// No bounds check.
    bool removeAt(int i) {
        getArray()[i].~T();
        korxArrayRemoveAt(m_header, i);
        return true;
    }

    bool endGrow(int n) {
        for (int k = 0; k < n; ++k)
            add(T());
        return true;
    }

    bool frontGrow(int n) {
        for (int k = 0; k < n; ++k)
            insert(0, T());
        return true;
    }

    /// n must not exceed size().
    bool endShrink(int n) {
        for (int k = 0; k < n; ++k)
            removeAt(size() - 1);
        return true;
    }

    bool frontShrink(int n) {
        for (int k = 0; k < n; ++k)
            removeAt(0);
        return true;
    }

    bool resize(int n) {
        const int d = n - size();
        if (d > 0)
            endGrow(d);
        else if (d < 0)
            endShrink(-d);
        return true;
    }

    void reverse() {
        T* items = getArray();
        for (int i = 0, j = size() - 1; i < j; ++i, --j) {
            T temp(items[j]);
            items[j] = items[i];
            items[i] = temp;
        }
    }

private:
    static constexpr int kDefaultCapacity = 10;

    // The slot after the last element when the block has one free, else null.
    void* freeSlot() const {
        KORXArrayHeader* header = m_header;
        if (header == nullptr || header->check != header->data || header->count >= header->capacity)
            return nullptr;
        return static_cast<T*>(header->data) + header->count;
    }
    static constexpr int kElementSize = static_cast<int>(sizeof(T));

    void addGrowing(const T& element) {
        if (holds(&element)) {
            const T copy(element);
            addGrowing(copy);
            return;
        }
        if (korxArrayAdd(m_header, const_cast<T*>(&element)) == 0) {
            // A null header means the array is not created yet (a registry reached during
            // start-up): create it now and try once more.
            if (m_header != nullptr)
                return;
            m_header = korxArrayAllocate(kDefaultCapacity, kElementSize);
            if (korxArrayAdd(m_header, const_cast<T*>(&element)) == 0)
                return;
        }
        constructAt(size() - 1, element);
    }

    // The slot holds a byte copy; overwrite it with a proper copy construction. Should that
    // throw, the slot is given back so no half-made element is ever destroyed.
    void constructAt(int slot, const T& element) {
        try {
            ::new (static_cast<void*>(getArray() + slot)) T(element);
        } catch (...) {
            korxArrayRemoveAt(m_header, slot);
            throw;
        }
    }

    void destroyRange(int begin, int end) {
        T* items = getArray();
        for (int i = begin; i < end; ++i)
            items[i].~T();
    }

    // The last holder destroys the elements; every holder drops its share.
    void release() {
        if (m_header != nullptr && m_header->shareCount == 0)
            destroyRange(0, size());
        korxArrayFree(m_header);
        m_header = nullptr;
    }

    KORXArrayHeader* m_header;
};

#endif
