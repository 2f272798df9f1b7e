#include <korx/Gk_String.h>
#include <korx/KORXString.h>

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "internal/Unicode.h"

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

bool isAscii(std::string_view text) {
    for (const char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

bool isValidUtf8(std::string_view text) {
    if (isAscii(text))
        return true;
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const int n = static_cast<int>(text.size());
    int pos = 0;
    while (pos < n) {
        if (Utf8Next(bytes, n, pos) == korx::detail::kInvalid)
            return false;
    }
    return true;
}

void appendUtf8(Gk_String& out, unsigned int cp) {
    unsigned char bytes[4];
    const int n = emitUtf8(cp, bytes);
    for (int i = 0; i < n; ++i)
        out.append(static_cast<char>(bytes[i]));
}

// The text read in the C runtime's multibyte locale; false when the locale can't read it or
// reads it as nothing.
bool appendFromLocale(Gk_String& out, const char* s) {
    const size_t count = vnt_mbstowcs(nullptr, s, 0);
    if (count == static_cast<size_t>(-1) || count == 0)
        return false;
    std::unique_ptr<wchar_t[]> wide(new wchar_t[count + 1]);
    vnt_mbstowcs(wide.get(), s, count + 1);
    const int n = static_cast<int>(count);
    int pos = 0;
    while (pos < n)
        appendUtf8(out, wcharNext(wide.get(), n, pos));
    return true;
}

void appendLatin1(Gk_String& out, std::string_view text) {
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80)
            out.append(c);
        else
            appendUtf8(out, byte);
    }
}

// The text of s as UTF-8, without a terminator.
void appendAsUtf8(Gk_String& out, const char* s, bool fromLocale) {
    const std::string_view text(s);
    if (!fromLocale && isValidUtf8(text)) {
        out.append2(s);
        return;
    }
    if (appendFromLocale(out, s))
        return;
    if (fromLocale && isValidUtf8(text)) {
        out.append2(s);
        return;
    }
    appendLatin1(out, text);
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

Gk_String::Gk_String(const char* s, bool fromLocale) { SetContent(s, fromLocale); }

void Gk_String::SetContent(const char* s, bool fromLocale) {
    if (s != nullptr && m_buffer.holds(s)) {
        // The conversion writes over the text it reads: read it from a stable copy.
        const std::string stable(s);
        SetContent(stable.c_str(), fromLocale);
        return;
    }
    m_buffer.clear();
    if (s != nullptr)
        appendAsUtf8(*this, s, fromLocale);
    m_buffer.add('\0');
}

Gk_String::operator char*() const {
    if (m_buffer.size() == 0)
        return nullptr;
    // Copies share the buffer, so a const string hands out its bytes as a plain pointer.
    return const_cast<char*>(m_buffer.getArray());
}

int Gk_String::dataLen() const {
    const int count = len();
    if (count > 0 && m_buffer[count - 1] == '\0')
        return count - 1;
    return count;
}

void Gk_String::clear() { m_buffer.clear(); }

void Gk_String::append(const char* s) {
    if (s == nullptr) {
        dropTerminator();
        m_buffer.add('\0');
        return;
    }
    // Measured first: s may be this string's own text, whose terminator goes next. Its bytes
    // stay in the block when the count drops, so s is copied with its own terminator.
    const int n = static_cast<int>(std::strlen(s));
    dropTerminator();
    appendBytes(s, n + 1);
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

void Gk_String::append(const Gk_ROString& view) {
    // A view of this very buffer keeps its bytes in the block, where appendBytes copes with
    // them.
    const int n = view.len();
    append(n, n > 0 ? const_cast<char*>(static_cast<const char*>(view)) : nullptr);
}

void Gk_String::append(const Gk_String& other) {
    // Measured first: other may share this buffer, whose terminator goes next. Its bytes
    // stay in the block, and appendBytes copes with a source inside it.
    const int n = other.len();
    const char* bytes = other;
    dropTerminator();
    appendBytes(bytes, n);
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

Gk_RWString Gk_String::dataStr() const {
    if (len() == 0)
        return Gk_RWString();
    return Gk_RWString(m_buffer);
}

Gk_RWString Gk_String::rwString() { return dataStr(); }

void Gk_String::appendBytes(const char* bytes, int n) {
    if (n > 0)
        m_buffer.addItems(bytes, n);
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

void Gk_String::keepFirst(int n) {
    KORXArrayHeader* header = m_buffer.getHeader();
    if (header != nullptr && n >= 0 && n < header->count) {
        header->count = n;  // bytes need no destruction
        return;
    }
    m_buffer.resize(n);
}

bool operator==(const Gk_String& a, const Gk_String& b) {
    const bool aEmpty = a.len() == 0;
    const bool bEmpty = b.len() == 0;
    if (aEmpty || bEmpty)
        return aEmpty && bEmpty;
    return compareTexts(a, b) == 0;
}

bool operator<(const Gk_String& a, const Gk_String& b) { return compareTexts(a, b) < 0; }
