#include <korx/Gk_String.h>
#include <korx/KORXString.h>

#include <cctype>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "internal/ByteText.h"

namespace {

constexpr std::string_view kNothing = "";

// The bytes find() and reverseFind() look for: c, or the UTF-8 form of c read as Latin-1 when
// c is from 0x80 and that form takes more than one byte.
std::string needleOf(char c) {
    const auto byte = static_cast<unsigned char>(c);
    const int rune = byte >= 0x80 ? MapPageCodeToUnicodeRune(1, byte) : -1;
    if (rune <= 0)
        return std::string(1, c);
    unsigned char form[4];
    const int n = emitUtf8(static_cast<unsigned int>(rune), form);
    return std::string(reinterpret_cast<const char*>(form), static_cast<size_t>(n));
}

char lowerCase(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool sameLetter(char a, char b) { return lowerCase(a) == lowerCase(b); }

// The view's bytes up to its count, unmeasured; an offset outside the buffer sees nothing.
std::string_view bytesOf(const Gk_ROString& view) {
    const int n = view.len();
    if (view.offsetVal() < 0 || n <= 0)
        return kNothing;
    return {static_cast<const char*>(view), static_cast<size_t>(n)};
}

// The bytes a C string reader sees from the view's start: up to the first 0 byte, never past
// the count.
std::string_view textOf(const Gk_ROString& view) {
    return korx::detail::TextUpToZero(bytesOf(view));
}

// Matches a path against a pattern of literal bytes, "?", "*", "[...]" sets and "\\" escapes.
// Both end at their first 0 byte or their count.
//
// A "*" tries the rest of the pattern at every later text position where it could start.
// Once that rest reaches a later "*", the earlier one is never tried again: the bytes between
// two stars take a fixed number of text bytes, so any other way on from the earlier "*" meets
// the later one further along the text, where the later one can only try positions it is
// already trying. Only the latest "*" keeps its loop, and a loop that runs out ends the match.
// The answers are those of the plain recursion, in time proportional to the text times the
// pattern bytes after the latest "*".
class PathPatternMatcher {
public:
    PathPatternMatcher(std::string_view text, std::string_view pattern)
        : m_text(text), m_pattern(pattern) {}

    bool matches();

private:
    // The latest "*", trying the rest of its pattern at its next text position.
    struct StarLoop {
        size_t rest;  // pattern position the rest starts at
        char byte;    // the literal, lower-cased, the text must show there (unless a set)
        size_t next;  // next text position to try
    };

    bool textEnds(size_t t) const { return t == m_text.size() || m_text[t] == '\0'; }
    bool patternEnds(size_t p) const { return p == m_pattern.size() || m_pattern[p] == '\0'; }

    bool walk(size_t p, size_t t);
    bool afterStar(size_t p, size_t t);
    bool nextTry(size_t& t);

    bool singleByteAllowed(size_t t) const;
    bool isLeadingDot(size_t t) const;
    bool setMatches(size_t& p, size_t t) const;
    bool setItem(size_t& i, char& item) const;

    std::string_view m_text;
    std::string_view m_pattern;
    bool m_looping = false;
    StarLoop m_loop{};
};

bool PathPatternMatcher::matches() {
    size_t p = 0;
    size_t t = 0;
    for (;;) {
        if (walk(p, t))
            return true;
        if (!m_looping || !nextTry(t))
            return false;
        p = m_loop.rest;
    }
}

bool PathPatternMatcher::nextTry(size_t& t) {
    const char* from = m_text.data() + m_loop.next;
    const char* end = m_text.data() + m_text.size();
    const char* hit = nullptr;
    if (m_pattern[m_loop.rest] == '[') {
        hit = from < end ? from : nullptr;
    } else if (m_loop.byte >= 'a' && m_loop.byte <= 'z') {
        // A letter and its capital differ in one bit only.
        for (const char* at = from; at < end && hit == nullptr; ++at)
            if ((*at | 0x20) == m_loop.byte)
                hit = at;
    } else if (from < end) {
        const auto n = static_cast<size_t>(end - from);
        hit = static_cast<const char*>(std::memchr(from, m_loop.byte, n));
    }
    if (hit == nullptr)
        return false;
    t = static_cast<size_t>(hit - m_text.data());
    m_loop.next = t + 1;
    return true;
}

// Steps through the pattern from p and the text from t: true when the pattern ends where the
// text allows it; false when a byte fails or a "*" has set its loop up to try positions.
bool PathPatternMatcher::walk(size_t p, size_t t) {
    for (;;) {
        if (patternEnds(p)) {
            // A pattern also matches every path below the ones it names.
            return textEnds(t) || m_text[t] == '/';
        }
        switch (m_pattern[p]) {
        case '?':
            if (!singleByteAllowed(t))
                return false;
            ++p;
            break;
        case '\\':
            // A "\" with nothing after it escapes nothing and matches nothing.
            if (patternEnds(p + 1) || textEnds(t) || !sameLetter(m_pattern[p + 1], m_text[t]))
                return false;
            p += 2;
            break;
        case '[':
            if (!setMatches(p, t))
                return false;
            break;
        case '*':
            return afterStar(p + 1, t);
        default:
            if (textEnds(t) || !sameLetter(m_pattern[p], m_text[t]))
                return false;
            ++p;
            break;
        }
        ++t;
    }
}

bool PathPatternMatcher::afterStar(size_t p, size_t t) {
    // Each "?" or "*" right after a "*" takes one byte that is not '/'; the "?" needs one.
    for (; !patternEnds(p) && (m_pattern[p] == '?' || m_pattern[p] == '*'); ++p) {
        if (textEnds(t)) {
            if (m_pattern[p] == '?')
                return false;
            continue;
        }
        if (m_text[t] == '/')
            return false;
        ++t;
    }
    // A "*" that ends the pattern takes the rest of the text, '/' included.
    if (patternEnds(p))
        return true;
    size_t rest = p;
    if (m_pattern[p] == '\\') {
        if (patternEnds(p + 1))
            return false;
        // The rest is tried from the escaped byte itself: callers rely on "*\x" meaning "*x".
        rest = p + 1;
    }
    if (textEnds(t))
        return false;
    if (!m_looping) {
        // From here on the text is known by its length.
        m_text = korx::detail::TextUpToZero(m_text);
        m_looping = true;
    }
    m_loop = StarLoop{rest, lowerCase(m_pattern[rest]), t};
    return false;
}

bool PathPatternMatcher::isLeadingDot(size_t t) const {
    return m_text[t] == '.' && (t == 0 || m_text[t - 1] == '/');
}

bool PathPatternMatcher::singleByteAllowed(size_t t) const {
    return !textEnds(t) && m_text[t] != '/' && !isLeadingDot(t);
}

// The set starting at p matched against text byte t; on success p moves past its "]".
bool PathPatternMatcher::setMatches(size_t& p, size_t t) const {
    if (textEnds(t) || isLeadingDot(t))
        return false;
    const auto byte = static_cast<unsigned char>(lowerCase(m_text[t]));
    size_t i = p + 1;
    const bool negated = !patternEnds(i) && (m_pattern[i] == '!' || m_pattern[i] == '^');
    if (negated)
        ++i;
    bool found = false;
    // A "]" first in the set is an item; a "-" first or last is literal.
    for (bool first = true;; first = false) {
        if (patternEnds(i))
            return false;
        if (m_pattern[i] == ']' && !first)
            break;
        char low = 0;
        if (!setItem(i, low))
            return false;
        char high = low;
        const bool isRange = !patternEnds(i) && m_pattern[i] == '-' && !patternEnds(i + 1) &&
                             m_pattern[i + 1] != ']';
        if (isRange && !setItem(++i, high))
            return false;
        found = found || (static_cast<unsigned char>(lowerCase(low)) <= byte &&
                          byte <= static_cast<unsigned char>(lowerCase(high)));
    }
    p = i + 1;
    return found != negated;
}

// One byte of a set at i ("\x" is x); false at the end of the pattern or for a '/'.
bool PathPatternMatcher::setItem(size_t& i, char& item) const {
    if (m_pattern[i] == '\\' && patternEnds(++i))
        return false;
    item = m_pattern[i++];
    return item != '/';
}

}  // namespace

Gk_ROString::Gk_ROString() : m_offset(0) {}

Gk_ROString::Gk_ROString(const char* s) : m_buffer(Gk_String(s).m_buffer), m_offset(0) {}

Gk_ROString::Gk_ROString(const char* s, int n) : m_buffer(Gk_String(s, n).m_buffer), m_offset(0) {}

Gk_ROString::Gk_ROString(const char* s, bool fromLocale) : m_offset(0) {
    SetContent(s, fromLocale);
}

Gk_ROString::Gk_ROString(const KORXDynamicArray<char>& buffer) : m_buffer(buffer), m_offset(0) {}

void Gk_ROString::SetContent(const char* s, bool fromLocale) {
    m_buffer = Gk_String(s, fromLocale).m_buffer;
}

Gk_ROString::operator const char*() const {
    if (m_offset < 0 || m_offset >= m_buffer.size())
        return kNothing.data();
    return m_buffer.getArray() + m_offset;
}

int Gk_ROString::find(char c) const {
    const std::string_view text = textOf(*this);
    if (c == '\0') {
        // Found where the text's terminator is, as strchr finds it.
        return static_cast<int>(text.size()) < len() ? static_cast<int>(text.size()) : -1;
    }
    const size_t at = text.find(needleOf(c));
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

int Gk_ROString::find(const Gk_ROString& s) const {
    const std::string_view text = textOf(*this);
    const std::string_view needle = textOf(s);
    const size_t at = text.find(needle);
    if (at == std::string_view::npos)
        return len();
    // Measured from s's start, not this view's: callers pass a view of the same buffer.
    const auto hit = reinterpret_cast<intptr_t>(text.data() + at);
    const auto base = reinterpret_cast<intptr_t>(s.m_buffer.getArray());
    return static_cast<int>(hit - base - s.m_offset);
}

int Gk_ROString::reverseFind(char c, int skip) const {
    if (len() < 2 || m_offset < 0)
        return -1;
    const std::string needle = needleOf(c);
    const int n = static_cast<int>(needle.size());
    int from = len() - n - skip;
    if (from < 0)
        return -1;
    if (from > len() - n)
        from = len() - n;  // a negative skip never looks past the end
    const char* view = m_buffer.getArray() + m_offset;
    for (int p = from; p >= 0; --p)
        if (std::memcmp(view + p, needle.data(), static_cast<size_t>(n)) == 0)
            return m_offset + p;
    return -1;
}

int Gk_ROString::matchPathString(const Gk_ROString& prefix) const {
    const std::string_view path = textOf(*this);
    const std::string_view head = textOf(prefix);
    const bool pathRooted = !path.empty() && path[0] == '/';
    if (!head.empty() && head[0] == '/')
        return pathRooted ? 1 : 0;
    if (pathRooted)
        return -1;
    size_t i = 0;
    while (i < head.size() && i < path.size() && path[i] == head[i])
        ++i;
    if (i < head.size())
        return -1;
    if (i == path.size())
        return static_cast<int>(i);
    return path[i] == '/' ? static_cast<int>(i) + 1 : -1;
}

bool Gk_ROString::matchPathPattern(const Gk_ROString& pattern) const {
    return PathPatternMatcher(bytesOf(*this), bytesOf(pattern)).matches();
}

bool operator==(const Gk_ROString& a, const Gk_ROString& b) { return textOf(a) == textOf(b); }

bool operator<(const Gk_ROString& a, const Gk_ROString& b) { return textOf(a) < textOf(b); }

void Gk_RWString::toLower() {
    char* bytes = m_buffer.getArray();
    for (int i = m_offset < 0 ? 0 : m_offset; i < m_buffer.size(); ++i)
        bytes[i] = static_cast<char>(std::tolower(static_cast<unsigned char>(bytes[i])));
}
