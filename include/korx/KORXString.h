// KORXString.h
//
// KORXString is the text type of every interface of the library: UTF-16 code units ending in a
// 0 unit, plus a UTF-8 byte form built on the first request and kept until the string is
// destroyed or assigned. Lengths and positions count UTF-16 units (GetLengthInChar counts the
// bytes of the UTF-8 form); every search answers -1 for "not found". Text is never changed in
// place: each derived string is a new KORXString, and an empty result holds no buffer at all.
// A string that has never held text (the default one) and one holding an allocated but empty
// buffer both read as empty, but compareTo and equals tell them apart.
//
// Beside it: one-code-point UTF-8 and UTF-16 decoders and encoders, length functions, a
// printable byte copy of wide text, single-byte code pages, the C runtime's multibyte
// conversions, and KORXLocale, which switches the numeric locale to "C" around number
// formatting and parsing.
//
// Decoders return the code point, 0 at the end of the input, or KORX_UTF_INVALID for a
// malformed sequence; everything that builds text writes U+FFFD for an invalid sequence.
//
// Where wchar_t is 32 bits, every interface that takes wide text as a pointer also takes
// wchar_t text (UTF-32), converted at the boundary (invalid code points become U+FFFD). Single
// units are taken as KORXWChar only: a BMP wchar_t converts to it implicitly.
//
// Not safe for concurrent use, even for reading: the first conversion to const char* fills the
// cache.
#ifndef KORX_KORXSTRING_H
#define KORX_KORXSTRING_H

#include <korx/KORXExport.h>
#include <korx/KORXWChar.h>

#include <cstddef>

/// What the decoders return for a malformed sequence.
constexpr unsigned int KORX_UTF_INVALID = 0xFFFFFFFE;

class KORX_API KORXString {
public:
    /// Empty: holds no buffer.
    KORXString();
    /// A copy of the units up to the terminator; null gives the empty string.
    KORXString(const KORXWChar* text);
    /// The bytes decoded as UTF-8; null gives the empty string.
    KORXString(const char* text);
    KORXString(const unsigned char* text);
    /// A one-unit string (the unit 0 reads as empty).
    KORXString(KORXWChar unit);
    /// printf-style, bounded to bufferSize - 1 bytes (cut text is kept cut), decoded as UTF-8.
    /// A null format gives the empty string.
    KORXString(int bufferSize, const char* format, ...) KORX_PRINTF_FORMAT(3, 4);
#if KORX_WCHAR_IS_UTF32
    KORXString(const wchar_t* text);
#endif
    /// Copies the wide buffer only; the byte form is built again when asked for.
    KORXString(const KORXString& other);
    /// Takes other's buffers; other is left empty.
    KORXString(KORXString&& other) noexcept;
    /// Replaces the byte form only when this string had one (by the source's, or none).
    KORXString& operator=(const KORXString& other);
    virtual ~KORXString();

    /// Null for the empty string.
    operator const KORXWChar*() const;
    /// The cached UTF-8 form, owned by the string; null for a string without buffer, "" for
    /// a text holding a lone surrogate.
    operator const char*() const;

    /// No bounds check.
    KORXWChar& operator[](int i);
    const KORXWChar& operator[](int i) const;
    /// 0 outside 0 .. length() - 1.
    KORXWChar charAt(int i) const;
    int length() const;
    /// Bytes of the UTF-8 form; -1 when the text holds a lone surrogate.
    int GetLengthInChar() const;
    /// True when a buffer is held, even an empty one.
    bool hasSpace() const;

    /// Writes a terminator at dst[dstBegin] (when dstBegin >= 0), then units begin .. end - 1
    /// (end clamped to length()) when 0 <= begin < end, and terminates them.
    void getChars(int begin, int end, KORXWChar* dst, int dstBegin) const;
    /// The same range as UTF-8. A surrogate pair cut by either end of the range is written
    /// whole, and a range starting on a lone low surrogate writes nothing: dst must hold
    /// 3 x (end - begin) + 3 bytes.
    void getChars(int begin, int end, char* dst, int dstBegin) const;

    /// Trace output: addresses, the low byte of each unit between quotes, the unit count.
    void dump() const;

    /// -1, 0 or 1 on unsigned units. A string without buffer sorts before every other one,
    /// even before one with an allocated empty buffer.
    int compareTo(const KORXString& other) const;
    int compareToIgnoreCase(const KORXString& other) const;
    bool equals(const KORXString& other) const;
    bool equalsIgnoreCase(const KORXString& other) const;
    /// h = h x 33 + unit over all units, in unsigned 32-bit arithmetic.
    unsigned int hashCode() const;

    int indexOf(KORXWChar c) const;
    /// -1 unless 0 <= from < length().
    int indexOf(KORXWChar c, int from) const;
    int indexOf(const KORXString& s) const;
    /// -1 unless 0 <= from < length() and s fits between from and the end.
    int indexOf(const KORXString& s, int from) const;
    int lastIndexOf(KORXWChar c) const;
    /// Scans from down to 0; -1 unless 0 <= from < length().
    int lastIndexOf(KORXWChar c, int from) const;
    int lastIndexOf(const KORXString& s) const;
    int lastIndexOf(const KORXString& s, int from) const;
    /// The last position p with after < p < length() holding c; -1 unless
    /// 0 <= after < length() - 1.
    int lastIndexOfAfter(KORXWChar c, int after) const;
    /// An empty s never matches.
    bool startsWith(const KORXString& s) const;
    bool startsWith(const KORXString& s, int from) const;
    /// lastIndexOf(s, length() - 1) == length() - s.length(); an empty s never matches.
    bool endsWith(const KORXString& s) const;
    bool endsWith(KORXWChar c) const;
    /// True when empty or when every unit is a space of the C runtime.
    bool isWhitespace() const;

    /// Units begin .. end - 1; empty unless 0 <= begin < end <= length().
    KORXString substring(int begin, int end) const;
    KORXString substring(int begin) const;
    KORXString concat(const KORXString& other) const;
    KORXString operator+(const KORXString& other) const;
    KORXString replace(KORXWChar oldUnit, KORXWChar newUnit) const;
    /// The C runtime's towlower / towupper per unit, in the current locale; surrogate units
    /// pass unchanged.
    KORXString toLowerCase() const;
    KORXString toUpperCase() const;
    /// Without the leading and trailing units for which the C runtime's iswspace holds.
    KORXString trim() const;

    static KORXString valueOf(int value);
    static KORXString valueOf(long value);
    /// "%f" in the current C locale: six decimals.
    static KORXString valueOf(float value);
    static KORXString valueOf(double value);
    /// "true" or "false".
    static KORXString valueOf(bool value);
    static KORXString valueOf(KORXWChar unit);
    static KORXString valueOf(const KORXWChar* text);
    /// count units from data + offset; a terminator inside the range ends the text early.
    static KORXString valueOf(const KORXWChar* data, int offset, int count);
#if KORX_WCHAR_IS_UTF32
    /// One code point: one unit, or a surrogate pair above U+FFFF.
    static KORXString valueOf(wchar_t c);
    static KORXString valueOf(const wchar_t* text);
    /// offset and count in wchar_t units.
    static KORXString valueOf(const wchar_t* data, int offset, int count);
#endif

private:
    friend union KORXStringConstant;

    struct StaticTextTag {};

    // For the shared constants only: both forms point to static text that is never freed.
    constexpr KORXString(StaticTextTag, const KORXWChar* wide, const char* bytes) noexcept
        : m_wideBuffer(const_cast<KORXWChar*>(wide)), m_byteForm(const_cast<char*>(bytes)) {}

    // Takes a buffer made by the string's own allocation; an empty text gives no buffer.
    static KORXString Adopt(KORXWChar* buffer);

    // The wide buffer ends in eight 0 units (the terminator and seven more), so text can be
    // scanned 64-bit words at a time without passing the end of the allocation.
    KORXWChar* m_wideBuffer;
    mutable char* m_byteForm;
};

// The shared constants are constant-initialised and never destroyed, so a static initialiser
// or an at-exit destructor of any other translation unit may read them at any time.
KORX_API extern const KORXString& KORX_YES;
KORX_API extern const KORXString& KORX_NO;
KORX_API extern const KORXString& KORX_TRUE;
KORX_API extern const KORXString& KORX_FALSE;
KORX_API extern const KORXString& KORX_ON;
KORX_API extern const KORXString& KORX_OFF;

/// Decodes the UTF-8 sequence at pos and moves pos past it. Lenient on purpose: overlong forms
/// and values up to 0x1FFFFF are returned as they are; encoded surrogates are invalid. A bad
/// continuation byte is not consumed; a sequence cut by n leaves pos at n.
KORX_API unsigned int Utf8Next(const unsigned char* bytes, int n, int& pos);
/// Decodes one code point from UTF-16. After a high surrogate at n - 1 it looks at units[n],
/// so the text must be terminated. A lone surrogate is consumed and is invalid; a 0 unit reads
/// as the end.
KORX_API unsigned int Utf16Next(const unsigned short* units, int n, int& pos);
KORX_API unsigned int wcharNext(const KORXWChar* units, int n, int& pos);
#if KORX_WCHAR_IS_UTF32
/// One UTF-32 unit: surrogates and values above 0x10FFFF are invalid.
KORX_API unsigned int wcharNext(const wchar_t* units, int n, int& pos);
#endif

/// Writes 1 to 4 bytes and returns the count. Surrogates, U+FDD0 .. U+FDEF, U+FFFE, U+FFFF and
/// values above 0x10FFFF are written as U+FFFD.
KORX_API int emitUtf8(unsigned int cp, unsigned char* out);
/// Writes 1 unit (below 0x10000, unchecked) or a surrogate pair and returns the count.
KORX_API int emitUtf16(unsigned int cp, unsigned short* out);

/// UTF-8 bytes the text needs, over at most maxUnits units when maxUnits > 0; -1 when it
/// holds a lone surrogate; 0 for null.
KORX_API int Utf8Length(const KORXWChar* text, int maxUnits);
#if KORX_WCHAR_IS_UTF32
KORX_API int Utf8Length(const wchar_t* text, int maxUnits);
#endif
/// UTF-16 units that the first n bytes need, up to a decoded 0; -1 on a malformed sequence.
KORX_API int WcharLength(const unsigned char* bytes, int n);

/// A byte copy of the text in the current C locale (wcstombs), or one byte per unit with "_"
/// for units from 127 when that fails, with a final line feed turned into 13 10. out gets a
/// new[] buffer the caller deletes; not terminated after a line-end fix. Returns the bytes.
KORX_API int WcharToPrintable(const KORXWChar* text, char*& out);
#if KORX_WCHAR_IS_UTF32
/// The text goes to the C runtime as it is.
KORX_API int WcharToPrintable(const wchar_t* text, char*& out);
#endif

/// The Unicode code point of byte code in single-byte code page page (1 .. 15: ISO 8859-n);
/// 0xFFFF when unmappable, -1 for codes outside 32 .. 127 and 160 .. 255.
KORX_API int MapPageCodeToUnicodeRune(int page, int code);

/// mbstowcs and wcstombs of the C runtime, with the platform's wchar_t.
KORX_API size_t vnt_mbstowcs(wchar_t* dst, const char* src, size_t n);
KORX_API size_t vnt_wcstombs(char* dst, const wchar_t* src, size_t n);

/// Switches LC_NUMERIC to "C" and back. There is one save slot: calls do not nest (a second
/// SetNumericC saves "C"), and the slot is process-wide.
class KORX_API KORXLocale {
public:
    static void SetNumericC();
    /// Does nothing when nothing is saved.
    static void RestoreNumeric();
};

#endif
