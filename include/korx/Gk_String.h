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
#ifndef KORX_GK_STRING_H
#define KORX_GK_STRING_H

#include <korx/KORXDynamicArray.h>
#include <korx/KORXExport.h>

class KORX_API Gk_String {
public:
    /// Count 0, no terminator.
    Gk_String();
    /// The bytes of s and its terminator; a null s gives a single 0 byte.
    Gk_String(const char* s);
    /// Exactly n bytes of s, no terminator added. A null s or n < 1 gives count 0.
    Gk_String(const char* s, int n);

    /// The first byte, or null when the count is 0.
    operator char*() const;
    /// No bounds check.
    char& operator[](int i) { return m_buffer[i]; }
    const char& operator[](int i) const { return m_buffer[i]; }

    /// The count, terminator included.
    int len() const;
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

private:
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

#endif
