#include <korx/Gk_String.h>

#include <cstdint>
#include <cstring>
#include <string>

namespace {

constexpr char kApostrophe = '\'';
constexpr char kSpace = ' ';

// strcmp over the bytes of each buffer. The end of a buffer that has no terminator reads as
// one, so an unterminated string is never read past its count.
int compareTexts(const Gk_String& a, const Gk_String& b) {
    const int na = a.len();
    const int nb = b.len();
    for (int i = 0;; ++i) {
        const auto ca = static_cast<unsigned char>(i < na ? a[i] : 0);
        const auto cb = static_cast<unsigned char>(i < nb ? b[i] : 0);
        if (ca != cb)
            return ca < cb ? -1 : 1;
        if (ca == 0)
            return 0;
    }
}

int clampToRange(int value, int low, int high) {
    return value < low ? low : (value > high ? high : value);
}

}  // namespace

Gk_String::Gk_String() = default;

Gk_String::Gk_String(const char* s) {
    if (s == nullptr) {
        m_buffer.add('\0');
        return;
    }
    appendBytes(s, static_cast<int>(std::strlen(s)) + 1);
}

Gk_String::Gk_String(const char* s, int n) {
    if (s != nullptr && n > 0)
        appendBytes(s, n);
}

Gk_String::operator char*() const {
    if (m_buffer.size() == 0)
        return nullptr;
    // Copies share the buffer, so a const string hands out its bytes as a plain pointer.
    return const_cast<char*>(m_buffer.getArray());
}

int Gk_String::len() const { return m_buffer.size(); }

int Gk_String::dataLen() const {
    const int count = len();
    if (count > 0 && m_buffer[count - 1] == '\0')
        return count - 1;
    return count;
}

void Gk_String::clear() { m_buffer.clear(); }

void Gk_String::append(const char* s) {
    // Measured first: s may be this string's own text, whose terminator goes next.
    const int n = s != nullptr ? static_cast<int>(std::strlen(s)) : 0;
    dropTerminator();
    appendBytes(s, n);
    m_buffer.add('\0');
}

void Gk_String::append2(const char* s) {
    if (s != nullptr)
        appendBytes(s, static_cast<int>(std::strlen(s)));
}

void Gk_String::append(char c) { m_buffer.add(c); }

void Gk_String::append(int n, char* s) {
    dropTerminator();
    if (s != nullptr && n > 0)
        appendBytes(s, n);
    terminate();
}

void Gk_String::append(const Gk_String& other) {
    // Appending a string to itself (or to a copy sharing its buffer) reads a stable copy.
    const Gk_String source = (other.m_buffer == m_buffer) ? other.copy() : other;
    dropTerminator();
    appendBytes(source, source.len());
    terminate();
}

void Gk_String::chop(int n) {
    const int count = len();
    if (n >= count)
        return;
    // Keeps n + 1 bytes, one more than the argument: callers rely on it.
    keepFirst((n < -1 ? -1 : n) + 1);
    m_buffer.add('\0');
}

void Gk_String::ensure(int n) {
    if (len() >= n) {
        chop(n);
        return;
    }
    // The last byte goes whether or not it is a terminator: callers rely on it.
    if (len() > 0)
        keepFirst(len() - 1);
    while (len() < n - 1)
        m_buffer.add(kSpace);
    m_buffer.add('\0');
}

void Gk_String::shrinkEnd(int n) {
    if (n <= 0)
        return;
    keepFirst(len() - clampToRange(n, 0, len()));
}

void Gk_String::shrinkFront(int n) {
    if (n <= 0)
        return;
    const int removed = clampToRange(n, 0, len());
    const int kept = len() - removed;
    char* bytes = m_buffer.getArray();
    std::memmove(bytes, bytes + removed, static_cast<size_t>(kept));
    keepFirst(kept);
}

void Gk_String::sqeezeQuotes() {
    // From the right, the left apostrophe of each pair goes; the scan resumes left of the
    // pair, so three apostrophes become two.
    for (int i = len() - 1; i >= 1; --i) {
        if (m_buffer[i] == kApostrophe && m_buffer[i - 1] == kApostrophe) {
            m_buffer.removeAt(i - 1);
            --i;
        }
    }
}

Gk_String Gk_String::subset(int start, int n) const {
    // A negative start reads from the first byte rather than before the buffer.
    const int from = start < 0 ? 0 : start;
    const int available = len() - from;
    const int take = clampToRange(n, 0, available < 0 ? 0 : available);
    Gk_String result;
    result.append(take, take > 0 ? static_cast<char*>(*this) + from : nullptr);
    return result;
}

Gk_String Gk_String::copy() const {
    Gk_String result;
    result.m_buffer = m_buffer.copy();
    return result;
}

void Gk_String::appendBytes(const char* bytes, int n) {
    const char* first = m_buffer.getArray();
    const KORXArrayHeader* header = m_buffer.getHeader();
    const auto at = reinterpret_cast<uintptr_t>(bytes);
    const auto begin = reinterpret_cast<uintptr_t>(first);
    const bool insideOwnBlock =
        first != nullptr && at >= begin && at < begin + static_cast<uintptr_t>(header->capacity);
    if (insideOwnBlock) {
        // Growing moves the block: take the bytes out of it first.
        const std::string stable(bytes, static_cast<size_t>(n));
        appendBytes(stable.data(), n);
        return;
    }
    for (int i = 0; i < n; ++i)
        m_buffer.add(bytes[i]);
}

void Gk_String::dropTerminator() {
    const int count = len();
    if (count > 0 && m_buffer[count - 1] == '\0')
        keepFirst(count - 1);
}

void Gk_String::terminate() {
    const int count = len();
    if (count == 0 || m_buffer[count - 1] != '\0')
        m_buffer.add('\0');
}

void Gk_String::keepFirst(int n) { m_buffer.resize(n); }

bool operator==(const Gk_String& a, const Gk_String& b) {
    const bool aEmpty = a.len() == 0;
    const bool bEmpty = b.len() == 0;
    if (aEmpty || bEmpty)
        return aEmpty && bEmpty;
    return compareTexts(a, b) == 0;
}

bool operator<(const Gk_String& a, const Gk_String& b) { return compareTexts(a, b) < 0; }
