#include <korx/KORXDynamicArray.h>

#include <climits>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

constexpr float kGrowthFactor = 1.5f;

bool isValid(const KORXArrayHeader* header) {
    return header != nullptr && header->check == header->data;
}

// capacity x elementSize in bytes; false when it does not fit a size_t.
bool blockBytes(int capacity, int elementSize, size_t& bytes) {
    const auto slots = static_cast<size_t>(capacity);
    const auto size = static_cast<size_t>(elementSize);
    if (size != 0 && slots > SIZE_MAX / size)
        return false;
    bytes = slots * size;
    return true;
}

char* slotAddress(const KORXArrayHeader* header, int index) {
    return static_cast<char*>(header->data) +
           static_cast<size_t>(index) * static_cast<size_t>(header->elementSize);
}

size_t bytesOf(const KORXArrayHeader* header, int elements) {
    return static_cast<size_t>(elements) * static_cast<size_t>(header->elementSize);
}

// Whether p points into the header's block.
bool insideBlock(const KORXArrayHeader* header, const void* p) {
    const auto address = reinterpret_cast<uintptr_t>(p);
    const auto first = reinterpret_cast<uintptr_t>(header->data);
    return address >= first && address < first + bytesOf(header, header->capacity);
}

// The capacity one growth step gives (factor x capacity + 1); false past INT_MAX.
bool grownCapacity(const KORXArrayHeader* header, int capacity, int& grown) {
    const double next = static_cast<double>(header->factor) * capacity + 1.0;
    if (next > static_cast<double>(INT_MAX))
        return false;
    grown = static_cast<int>(next);
    return true;
}

// Moves the block to capacity slots; false, header untouched, when that can't be had. realloc
// keeps the whole old block; the slots beyond it start zeroed, except for the first
// filledBytes of the block, which the caller fills next.
bool moveBlock(KORXArrayHeader* header, int capacity, size_t filledBytes) {
    size_t newBytes = 0;
    if (!blockBytes(capacity, header->elementSize, newBytes))
        return false;
    const size_t oldBytes = bytesOf(header, header->capacity);
    void* data = std::realloc(header->data, newBytes);
    if (data == nullptr)
        return false;
    const size_t zeroFrom = filledBytes > oldBytes ? filledBytes : oldBytes;
    std::memset(static_cast<char*>(data) + zeroFrom, 0, newBytes - zeroFrom);
    header->data = data;
    header->check = data;
    header->capacity = capacity;
    return true;
}

// The bytes of an element to store. An element that lives inside the header's own block is
// copied aside first, because growing or shifting the block would move it under our feet.
class ElementBytes {
public:
    ElementBytes(const KORXArrayHeader* header, const void* element) : m_bytes(element) {
        if (!insideBlock(header, element))
            return;
        m_copy = std::malloc(static_cast<size_t>(header->elementSize));
        if (m_copy != nullptr)
            std::memcpy(m_copy, element, static_cast<size_t>(header->elementSize));
        m_bytes = m_copy;
    }
    ElementBytes(const ElementBytes&) = delete;
    ElementBytes& operator=(const ElementBytes&) = delete;
    ~ElementBytes() { std::free(m_copy); }

    /// Null when the element had to be copied aside and memory was short.
    const void* get() const { return m_bytes; }

private:
    const void* m_bytes;
    void* m_copy = nullptr;
};

int appendSlot(KORXArrayHeader*& header, const void* element) {
    if (header->count >= header->capacity && korxArrayRealloc(header) == 0)
        return 0;
    std::memcpy(slotAddress(header, header->count), element,
                static_cast<size_t>(header->elementSize));
    ++header->count;
    return 1;
}

}  // namespace

KORXArrayHeader* korxArrayAllocate(int capacity, int elementSize) {
    size_t bytes = 0;
    if (capacity < 1 || elementSize < 1 || !blockBytes(capacity, elementSize, bytes))
        return nullptr;
    auto* header = static_cast<KORXArrayHeader*>(std::malloc(sizeof(KORXArrayHeader)));
    if (header == nullptr)
        return nullptr;
    void* data = std::calloc(static_cast<size_t>(capacity), static_cast<size_t>(elementSize));
    if (data == nullptr) {
        std::free(header);
        return nullptr;
    }
    header->check = data;
    header->capacity = capacity;
    header->count = 0;
    header->elementSize = elementSize;
    header->factor = kGrowthFactor;
    header->shareCount = 0;
    header->data = data;
    return header;
}

int korxArrayRealloc(KORXArrayHeader*& header) {
    int capacity = 0;
    if (!isValid(header) || !grownCapacity(header, header->capacity, capacity))
        return 0;
    return moveBlock(header, capacity, 0) ? 1 : 0;
}

int korxArrayAddItems(KORXArrayHeader*& header, const void* items, int n) {
    if (!isValid(header) || n < 0 || (n > 0 && items == nullptr))
        return 0;
    if (n == 0)
        return 1;
    const long long needed = static_cast<long long>(header->count) + n;
    if (needed > INT_MAX)
        return 0;
    int capacity = header->capacity;
    while (capacity < needed)
        if (!grownCapacity(header, capacity, capacity))
            return 0;
    const size_t added = bytesOf(header, n);
    if (capacity != header->capacity) {
        // Items from the block itself move with it.
        const bool inside = insideBlock(header, items);
        const size_t offset = inside ? static_cast<size_t>(static_cast<const char*>(items) -
                                                           static_cast<const char*>(header->data))
                                     : 0;
        if (!moveBlock(header, capacity, bytesOf(header, header->count) + added))
            return 0;
        if (inside)
            items = static_cast<const char*>(header->data) + offset;
    }
    std::memmove(slotAddress(header, header->count), items, added);
    header->count += n;
    return 1;
}

int korxArrayAdd(KORXArrayHeader*& header, void* element) {
    if (!isValid(header))
        return 0;
    const ElementBytes bytes(header, element);
    if (bytes.get() == nullptr)
        return 0;
    return appendSlot(header, bytes.get());
}

int korxArrayInsertAt(KORXArrayHeader*& header, int index, void* element) {
    // A negative index would shift bytes before the block: refused.
    if (!isValid(header) || index < 0)
        return 0;
    const ElementBytes bytes(header, element);
    if (bytes.get() == nullptr)
        return 0;
    if (index >= header->count)
        return appendSlot(header, bytes.get());
    // Grows one slot earlier than an append would; callers rely on the capacities this gives.
    if (header->count >= header->capacity - 1 && korxArrayRealloc(header) == 0)
        return 0;
    std::memmove(slotAddress(header, index + 1), slotAddress(header, index),
                 bytesOf(header, header->count - index));
    std::memcpy(slotAddress(header, index), bytes.get(), bytesOf(header, 1));
    ++header->count;
    return 1;
}

int korxArrayRemoveAt(KORXArrayHeader*& header, int index) {
    if (!isValid(header) || index < 0 || index >= header->count)
        return 0;
    std::memmove(slotAddress(header, index), slotAddress(header, index + 1),
                 bytesOf(header, header->count - index - 1));
    --header->count;
    return 1;
}

int korxArraySetAt(KORXArrayHeader*& header, int index, void* element) {
    if (!isValid(header) || index < 0 || index >= header->count)
        return 0;
    std::memmove(slotAddress(header, index), element, bytesOf(header, 1));
    return 1;
}

int korxArrayAppend(KORXArrayHeader*& destination, KORXArrayHeader* source) {
    if (!isValid(destination) || !isValid(source) ||
        destination->elementSize != source->elementSize)
        return 0;
    const int added = source->count;
    const long long needed = static_cast<long long>(destination->count) + added;
    if (needed > INT_MAX)
        return 0;
    while (destination->capacity < needed) {
        if (korxArrayRealloc(destination) == 0)
            return 0;
    }
    // The bytes come from the start of the destination's own block, not from source: the
    // destination's leading elements are repeated at its end. Callers rely on this.
    std::memmove(slotAddress(destination, destination->count), destination->data,
                 bytesOf(destination, added));
    destination->count += added;
    return 1;
}

int korxArrayCheck(KORXArrayHeader*& header) { return isValid(header) ? 1 : 0; }

int korxArrayClear(KORXArrayHeader*& header) {
    if (!isValid(header))
        return 0;
    header->count = 0;
    return 1;
}

int korxArrayCount(KORXArrayHeader* header) { return isValid(header) ? header->count : 0; }

KORXArrayHeader* korxArrayCopy(KORXArrayHeader* header) {
    if (isValid(header))
        ++header->shareCount;
    return header;
}

void korxArrayFree(KORXArrayHeader*& header) {
    if (!isValid(header))
        return;
    if (header->shareCount > 0) {
        --header->shareCount;
        return;
    }
    header->check = nullptr;
    std::free(header->data);
    std::free(header);
    header = nullptr;
}
