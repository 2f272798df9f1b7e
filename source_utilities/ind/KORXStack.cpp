#include <korx/KORXContainers.h>

namespace {

constexpr int kInitialCapacity = 10;
constexpr int kElementSize = static_cast<int>(sizeof(void*));

void** slots(KORXArrayHeader* header) { return static_cast<void**>(header->data); }

}  // namespace

KORXStack::KORXStack() : m_header(korxArrayAllocate(kInitialCapacity, kElementSize)) {}

KORXStack::KORXStack(const KORXStack& other) : m_header(korxArrayCopy(other.m_header)) {}

KORXStack& KORXStack::operator=(const KORXStack& other) {
    if (this == &other)
        return *this;
    korxArrayFree(m_header);
    m_header = korxArrayCopy(other.m_header);
    return *this;
}

KORXStack::~KORXStack() {
    korxArrayFree(m_header);
    m_header = nullptr;
}

int KORXStack::Size() const { return korxArrayCount(m_header); }

int KORXStack::Push(void* element) {
    // A null header means the array is not created yet: create it on this first use.
    if (korxArrayAdd(m_header, &element) == 0 && m_header == nullptr) {
        m_header = korxArrayAllocate(kInitialCapacity, kElementSize);
        korxArrayAdd(m_header, &element);
    }
    return Size();
}

void* KORXStack::Pop() {
    const int count = Size();
    if (count == 0)
        return nullptr;
    void* top = slots(m_header)[count - 1];
    korxArrayRemoveAt(m_header, count - 1);
    return top;
}

void* KORXStack::GetTop() const {
    const int count = Size();
    return count == 0 ? nullptr : slots(m_header)[count - 1];
}

bool KORXStack::IsEmpty() const { return Size() == 0; }

void* KORXStack::ElementAt(int i) const { return slots(m_header)[i]; }
