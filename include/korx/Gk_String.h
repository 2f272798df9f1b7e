// Gk_String.h
//
// Gk_String is the byte string of the older parts of the library (options, units, file
// elements, string streams): a growable byte buffer holding UTF-8 text that is normally
// followed by one 0 byte. The terminator is part of the count: len() counts it, dataLen()
// does not. A default-constructed string has count 0 and no terminator.
//
// The one member is a KORXDynamicArray<char>, so copies share the buffer (a change made
// through one copy shows through all of them); copy() is the only deep copy. Indexing is
// unchecked. The append family differs on purpose in how it treats the terminator: see each.
//
// Gk_ROString and Gk_RWString are views onto such a buffer from an offset, with searching and
// the path matching of file-element names; Gk_RWString also lower-cases in place. Searches
// and matches read a view up to its first 0 byte and never past its count.
#ifndef KORX_GK_STRING_H
#define KORX_GK_STRING_H

#include <korx/KORXDynamicArray.h>
#include <korx/KORXExport.h>

#include <cstdint>

class Gk_ROString;
class Gk_RWString;

class KORX_API Gk_String {
public:
    /// Count 0, no terminator.
    Gk_String();
    /// The bytes of s and its terminator; a null s gives a single 0 byte.
    Gk_String(const char* s);
    /// Exactly n bytes of s, no terminator added. A null s or n < 1 gives count 0.
    Gk_String(const char* s, int n);
    /// The text of s as UTF-8 and a 0 byte; a null s gives a single 0 byte. Valid UTF-8 is
    /// kept unless fromLocale; other text is read in the C runtime's multibyte locale, and
    /// failing that as Latin-1.
    Gk_String(const char* s, bool fromLocale);

    /// Empties the buffer and converts s as the constructor does.
    void SetContent(const char* s, bool fromLocale);

    /// The first byte, or null when the count is 0.
    operator char*() const;
    /// No bounds check.
    char& operator[](int i) { return m_buffer[i]; }
    const char& operator[](int i) const { return m_buffer[i]; }

    /// The count, terminator included.
    int len() const { return m_buffer.size(); }
    /// The count less the terminator when the last byte is 0.
    int dataLen() const;
    /// Count 0: no terminator remains.
    void clear();

    /// Drops a trailing 0 byte, appends the bytes of s, then a 0 byte.
    void append(const char* s);
    /// Appends the bytes of s, nothing else.
    void append2(const char* s);
    /// Appends c, nothing else.
    void append(char c);
    /// Appends n bytes of s, keeping one terminator at the end.
    void append(int n, char* s);
    /// Appends the text of the view, keeping one terminator at the end.
    void append(const Gk_ROString& view);
    /// Appends the bytes of other, keeping one terminator at the end.
    void append(const Gk_String& other);

    /// When n < len(): keeps bytes 0 .. n (n + 1 of them) and appends a 0 byte.
    void chop(int n);
    /// When len() < n: pads the text with spaces to n - 1 bytes and terminates it (the last
    /// byte is dropped first, terminator or not); otherwise chop(n).
    void ensure(int n);
    /// Remove n bytes from the end (the terminator counts) or from the front; at most len().
    void shrinkEnd(int n);
    void shrinkFront(int n);
    /// Every pair of adjacent apostrophes becomes one, pairs formed from the right.
    void sqeezeQuotes();

    /// At most n bytes from start, terminated; an empty text when start >= len().
    Gk_String subset(int start, int n) const;
    /// A new, unshared string with the same bytes.
    Gk_String copy() const;
    /// A view sharing this buffer at offset 0; a fresh empty view when the count is 0.
    Gk_RWString dataStr() const;
    Gk_RWString rwString();

private:
    friend class Gk_ROString;

    void appendBytes(const char* bytes, int n);
    void dropTerminator();
    void terminate();
    void keepFirst(int n);

    KORXDynamicArray<char> m_buffer;
};

/// Two count 0 strings are equal, a count 0 string and another are not; otherwise the texts
/// compare as strcmp, the end of a buffer without terminator counting as one.
KORX_API bool operator==(const Gk_String& a, const Gk_String& b);
/// strcmp order of the texts; a count 0 string orders as an empty text.
KORX_API bool operator<(const Gk_String& a, const Gk_String& b);

class KORX_API Gk_ROString {
public:
    /// Count 0, offset 0.
    Gk_ROString();
    /// The bytes of s and its terminator.
    Gk_ROString(const char* s);
    /// Exactly n bytes of s, no terminator added.
    Gk_ROString(const char* s, int n);
    /// The bytes of Gk_String(s, fromLocale), terminator included.
    Gk_ROString(const char* s, bool fromLocale);
    /// Shares buffer, offset 0.
    Gk_ROString(const KORXDynamicArray<char>& buffer);

    void SetContent(const char* s, bool fromLocale);

    /// The byte at the offset; an empty text when the offset is at or past the count.
    operator const char*() const;
    /// The byte at offset + i; no check.
    char operator[](int i) const { return m_buffer[m_offset + i]; }
    /// Count less offset.
    int len() const { return m_buffer.size() - m_offset; }

    void setoffset(int n) { m_offset = n; }
    /// Advances the offset by n.
    void offset(int n) { m_offset += n; }
    int offsetVal() const { return m_offset; }

    /// Position of c in the view, or -1. A byte from 0x80 is read as Latin-1 and its UTF-8
    /// form is searched.
    int find(char c) const;
    /// Where s occurs in this view, measured from s's own start (its buffer and offset): the
    /// position is only meaningful when s shares this buffer. len() when s does not occur.
    int find(const Gk_ROString& s) const;
    /// The last occurrence of c (or of its UTF-8 form when c is Latin-1 from 0x80) at least
    /// skip bytes before the end, measured from the start of the buffer; -1 when none or when
    /// the view holds fewer than 2 bytes.
    int reverseFind(char c, int skip = 0) const;

    /// Where the next path component begins once prefix's components are consumed; -1 when
    /// prefix is not a leading run of whole components. A rooted prefix gives 1 for any
    /// rooted path and 0 for a relative one.
    int matchPathString(const Gk_ROString& prefix) const;
    /// Whether this path matches the pattern (?, *, [...], \ escapes, without regard to
    /// case), or lies below a path that does.
    bool matchPathPattern(const Gk_ROString& pattern) const;

protected:
    KORXDynamicArray<char> m_buffer;
    int32_t m_offset;
};

/// strcmp of the two views.
KORX_API bool operator==(const Gk_ROString& a, const Gk_ROString& b);
KORX_API bool operator<(const Gk_ROString& a, const Gk_ROString& b);

class KORX_API Gk_RWString : public Gk_ROString {
public:
    using Gk_ROString::Gk_ROString;
    Gk_RWString() = default;

    /// The byte at offset + i; no check.
    char& operator[](int i) { return m_buffer[m_offset + i]; }
    char operator[](int i) const { return Gk_ROString::operator[](i); }

    /// The C runtime's tolower on every byte of the view, in place.
    void toLower();
};

#endif
