// Unicode.h
//
// The one-code-point UTF-8 and UTF-16 codecs behind the exported Utf8Next, Utf16Next,
// emitUtf8 and emitUtf16, inline so that the string's bulk conversions run them without a call.
// Internal: not installed.
#ifndef KORX_INTERNAL_UNICODE_H
#define KORX_INTERNAL_UNICODE_H

#include <cstdint>

namespace korx::detail {

// Whether a 64-bit word loaded from memory holds its first byte in its low 8 bits.
#if defined(__BYTE_ORDER__) && defined(__ORDER_BIG_ENDIAN__) &&                                    \
    __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
constexpr bool kLowByteFirst = false;
#else
constexpr bool kLowByteFirst = true;
#endif

/// The index of the lowest set bit of a non-zero word.
inline int LowestSetBit(uint64_t word) {
#if defined(__GNUC__)
    return __builtin_ctzll(word);
#else
    static const unsigned char kIndex[64] = {
        0,  1,  2,  53, 3,  7,  54, 27, 4,  38, 41, 8,  34, 55, 48, 28, 62, 5,  39, 46, 44, 42,
        22, 9,  24, 35, 59, 56, 49, 18, 29, 11, 63, 52, 6,  26, 37, 40, 33, 47, 61, 45, 43, 21,
        23, 58, 17, 10, 51, 25, 36, 32, 60, 20, 57, 16, 50, 31, 19, 15, 30, 14, 13, 12};
    return kIndex[((word & (~word + 1)) * 0x022FDD63CC95386Dull) >> 58];
#endif
}

constexpr uint32_t kInvalid = 0xFFFFFFFE;
constexpr uint32_t kReplacement = 0xFFFD;

inline bool IsHighSurrogate(uint32_t u) { return u >= 0xD800 && u <= 0xDBFF; }
inline bool IsLowSurrogate(uint32_t u) { return u >= 0xDC00 && u <= 0xDFFF; }
inline bool IsSurrogate(uint32_t u) { return u >= 0xD800 && u <= 0xDFFF; }

inline uint32_t DecodeUtf8(const unsigned char* bytes, int n, int& pos) {
    if (pos >= n)
        return 0;
    const uint32_t lead = bytes[pos];
    if (lead < 0x80) {
        ++pos;
        return lead;
    }
    int more;
    uint32_t value;
    if ((lead & 0xE0) == 0xC0) {
        more = 1;
        value = lead & 0x1F;
    } else if ((lead & 0xF0) == 0xE0) {
        more = 2;
        value = lead & 0x0F;
    } else if ((lead & 0xF8) == 0xF0) {
        more = 3;
        value = lead & 0x07;
    } else {
        ++pos;  // a stray continuation byte or 0xF8 .. 0xFF
        return kInvalid;
    }
    ++pos;
    for (; more > 0; --more) {
        if (pos >= n)
            return kInvalid;
        const uint32_t next = bytes[pos];
        if ((next & 0xC0) != 0x80)
            return kInvalid;  // not consumed: it may start the next sequence
        ++pos;
        value = (value << 6) | (next & 0x3F);
    }
    // Overlong forms and values above 0x10FFFF pass: readers of old files rely on that leniency.
    return IsSurrogate(value) ? kInvalid : value;
}

// Reads units[n] after a high surrogate at n - 1: callers pass terminated text.
template <class Unit> uint32_t DecodeUtf16(const Unit* units, int n, int& pos) {
    if (pos >= n)
        return 0;
    bool hasHigh = false;
    uint32_t high = 0;
    if (IsHighSurrogate(units[pos])) {
        hasHigh = true;
        high = units[pos] & 0x3FFu;
        ++pos;
    }
    const uint32_t unit = units[pos];
    if (IsLowSurrogate(unit)) {
        ++pos;
        if (!hasHigh)
            return kInvalid;
        return 0x10000 + (high << 10) + (unit & 0x3FF);
    }
    if (hasHigh)
        return kInvalid;
    ++pos;
    return unit;
}

inline bool ReplacedInUtf8(uint32_t cp) {
    return IsSurrogate(cp) || (cp >= 0xFDD0 && cp <= 0xFDEF) || cp == 0xFFFE || cp == 0xFFFF ||
           cp >= 0x110000;
}

/// The bytes EncodeUtf8 writes for cp.
inline int Utf8Size(uint32_t cp) {
    if (cp <= 0x7F)
        return 1;
    if (ReplacedInUtf8(cp))
        return 3;
    if (cp < 0x800)
        return 2;
    return cp > 0xFFFF ? 4 : 3;
}

template <class Byte> int EncodeUtf8(uint32_t cp, Byte* out) {
    if (cp <= 0x7F) {
        out[0] = static_cast<Byte>(cp);
        return 1;
    }
    if (ReplacedInUtf8(cp))
        cp = kReplacement;
    if (cp < 0x800) {
        out[0] = static_cast<Byte>(0xC0 | (cp >> 6));
        out[1] = static_cast<Byte>(0x80 | (cp & 0x3F));
        return 2;
    }
    if (cp <= 0xFFFF) {
        out[0] = static_cast<Byte>(0xE0 | (cp >> 12));
        out[1] = static_cast<Byte>(0x80 | ((cp >> 6) & 0x3F));
        out[2] = static_cast<Byte>(0x80 | (cp & 0x3F));
        return 3;
    }
    out[0] = static_cast<Byte>(0xF0 | (cp >> 18));
    out[1] = static_cast<Byte>(0x80 | ((cp >> 12) & 0x3F));
    out[2] = static_cast<Byte>(0x80 | ((cp >> 6) & 0x3F));
    out[3] = static_cast<Byte>(0x80 | (cp & 0x3F));
    return 4;
}

// Values from 0x110000 wrap into the pair range: emitUtf16 never checks, and callers rely on
// getting exactly the units it always wrote.
template <class Unit> int EncodeUtf16(uint32_t cp, Unit* out) {
    if (cp < 0x10000) {
        out[0] = static_cast<Unit>(cp);
        return 1;
    }
    out[0] = static_cast<Unit>(0xD800 + (((cp - 0x10000) >> 10) & 0x3FF));
    out[1] = static_cast<Unit>(0xDC00 + (cp & 0x3FF));
    return 2;
}

/// One UTF-32 code point as UTF-16 (invalid values become U+FFFD); returns the units written.
template <class Unit> int EncodeUtf32AsUtf16(uint32_t cp, Unit* out) {
    if (IsSurrogate(cp) || cp > 0x10FFFF)
        cp = kReplacement;
    return EncodeUtf16(cp, out);
}

}  // namespace korx::detail

#endif
