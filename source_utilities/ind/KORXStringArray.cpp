#include <korx/KORXContainers.h>

#include <csignal>
#include <cstring>

namespace {

constexpr int32_t kGrowth = 40;
constexpr char kSeparator = '\x1E';  // ASCII record separator
constexpr char kQuote = '"';

// The text between double quotes in a buffer of length + 3 bytes; a null item reads as empty.
char* quoted(const char* item) {
    const size_t length = item != nullptr ? std::strlen(item) : 0;
    char* buffer = new char[length + 3];
    buffer[0] = kQuote;
    if (length > 0)
        std::memcpy(buffer + 1, item, length);
    buffer[length + 1] = kQuote;
    buffer[length + 2] = '\0';
    return buffer;
}

}  // namespace

KORXStringArray::KORXStringArray()
    : m_items(nullptr), m_capacity(0), m_count(0), m_borrowed(false) {}

KORXStringArray::KORXStringArray(const KORXStringArray& other)
    : m_items(other.m_items), m_capacity(other.m_capacity), m_count(other.m_count),
      m_borrowed(true) {}

KORXStringArray::~KORXStringArray() {
    if (m_borrowed)
        return;
    for (int32_t i = 0; i < m_count; ++i)
        delete[] m_items[i];
    delete[] m_items;
}

char* KORXStringArray::operator[](int i) const { return i < m_count ? m_items[i] : nullptr; }

// Changing a borrowed array is a programming error: the process stops at once with an access
// fault, as callers expect. Should a handler ignore the signal, the change is not made.
bool KORXStringArray::stopOnBorrowed() const {
    if (!m_borrowed)
        return false;
    std::raise(SIGSEGV);
    return true;
}

// A fixed step of 40 entries. The old array is zeroed over the used entries before it goes.
void KORXStringArray::grow() {
    const int32_t capacity = m_capacity + kGrowth;
    char** items = new char*[capacity]();
    if (m_count > 0) {
        std::memcpy(items, m_items, sizeof(char*) * static_cast<size_t>(m_count));
        std::memset(m_items, 0, sizeof(char*) * static_cast<size_t>(m_count));
    }
    delete[] m_items;
    m_items = items;
    m_capacity = capacity;
}

void KORXStringArray::Add(char* s) {
    if (stopOnBorrowed())
        return;
    if (m_count >= m_capacity)
        grow();
    m_items[m_count++] = s;
}

void KORXStringArray::Add(const char* s, unsigned len) {
    if (stopOnBorrowed())
        return;
    char* copy = new char[static_cast<size_t>(len) + 1];
    std::strncpy(copy, s, len);
    copy[len] = '\0';
    Add(copy);
}

void KORXStringArray::Clear() {
    if (stopOnBorrowed())
        return;
    for (int32_t i = 0; i < m_count; ++i)
        delete[] m_items[i];
    delete[] m_items;
    m_items = nullptr;
    m_capacity = 0;
    m_count = 0;
}

// The copies are made before out is cleared, so an array may print into itself.
void KORXStringArray::PrintMe(KORXStringArray& out) const {
    const int32_t count = m_count;
    char** items = count > 0 ? new char*[count] : nullptr;
    for (int32_t i = 0; i < count; ++i)
        items[i] = quoted(m_items[i]);

    out.Clear();
    if (out.m_borrowed) {
        for (int32_t i = 0; i < count; ++i)
            delete[] items[i];
        delete[] items;
        return;
    }
    out.m_items = items;
    out.m_capacity = count;
    out.m_count = count;
}

bool KORXStringArray::ReadMe(const char* text) {
    if (stopOnBorrowed())
        return false;
    if (text == nullptr)
        return true;
    const char* p = text;
    for (;;) {
        while (*p == kSeparator)
            ++p;
        if (*p == '\0')
            return true;
        const char* piece = p;
        while (*p != '\0' && *p != kSeparator)
            ++p;
        Add(piece, static_cast<unsigned>(p - piece));
    }
}
