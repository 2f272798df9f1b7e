#include <korx/Gk_String.h>
#include <korx/KORXString.h>

#include "internal/Platform.h"
#include "internal/Trace.h"
#include "internal/Unicode.h"

#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cstring>
#include <cwctype>
#include <memory>

using korx::detail::kInvalid;
using korx::detail::kReplacement;

namespace {

// ---- Wide buffers -------------------------------------------------------------------------
//
// Every buffer made here ends in kPadding 0 units: the terminator and seven more. Two 64-bit
// words read from a position at or before the terminator therefore stay inside the allocation
// and read only written units, which lets the scans below go eight units at a time.

constexpr int kPadding = 8;

KORXWChar* newUnits(int units) { return new KORXWChar[static_cast<size_t>(units) + kPadding]; }

void terminate(KORXWChar* buffer, int length) {
    for (int i = 0; i < kPadding; ++i)
        buffer[length + i] = 0;
}

template <class Unit> int unitCount(const Unit* text) {
    int n = 0;
    while (text[n] != 0)
        ++n;
    return n;
}

uint64_t loadWord(const void* p) {
    uint64_t word;
    std::memcpy(&word, p, sizeof word);
    return word;
}

constexpr uint64_t kByteHighBits = 0x8080808080808080ull;
constexpr uint64_t kUnitAboveAscii = 0xFF80FF80FF80FF80ull;
constexpr uint64_t kUnitOnes = 0x0001000100010001ull;
constexpr uint64_t kUnitHighBits = 0x8000800080008000ull;

// A loaded word with its bytes in text order from the low end.
uint64_t bytesInTextOrder(uint64_t word) {
    if (korx::detail::kLowByteFirst)
        return word;
    uint64_t swapped = 0;
    for (int i = 0; i < 8; ++i)
        swapped |= (word >> (8 * i) & 0xFF) << (56 - 8 * i);
    return swapped;
}

// The top bit of each zero lane is set (lanes above a zero lane may be set too).
uint64_t zeroLanes(uint64_t word) { return (word - kUnitOnes) & ~word & kUnitHighBits; }

// The length of a padded buffer.
int bufferLength(const KORXWChar* buffer) {
    int n = 0;
    while ((zeroLanes(loadWord(buffer + n)) | zeroLanes(loadWord(buffer + n + 4))) == 0)
        n += 8;
    while (buffer[n] != 0)
        ++n;
    return n;
}

KORXWChar* copyOf(const KORXWChar* text, int n) {
    KORXWChar* buffer = newUnits(n);
    std::memcpy(buffer, text, static_cast<size_t>(n) * sizeof(KORXWChar));
    terminate(buffer, n);
    return buffer;
}

KORXWChar* copyOfBuffer(const KORXWChar* buffer) {
    return buffer != nullptr ? copyOf(buffer, bufferLength(buffer)) : nullptr;
}

char* copyOfBytes(const char* bytes) {
    const size_t n = std::strlen(bytes);
    char* copy = new char[n + 1];
    std::memcpy(copy, bytes, n + 1);
    return copy;
}

// ---- UTF-8 to UTF-16 ----------------------------------------------------------------------

// The block is a local copy, so the compiler knows out cannot overlap it and widens it in
// vector registers.
void widenAscii16(const unsigned char (&block)[16], KORXWChar* out) {
    for (int i = 0; i < 16; ++i)
        out[i] = block[i];
}

// Leading ASCII bytes of 16 bytes that are not all ASCII.
int leadingAsciiBytes(uint64_t first, uint64_t second) {
    const uint64_t high = bytesInTextOrder(first) & kByteHighBits;
    if (high != 0)
        return korx::detail::LowestSetBit(high) >> 3;
    return 8 + (korx::detail::LowestSetBit(bytesInTextOrder(second) & kByteHighBits) >> 3);
}

bool isContinuation(uint32_t byte) { return (byte & 0xC0) == 0x80; }

// A complete 4-byte sequence for U+10000 .. U+10FFFF at p.
bool isSupplementary(const unsigned char* p, const unsigned char* end) {
    if (end - p < 4 || (p[0] & 0xF8) != 0xF0 || !isContinuation(p[1]) || !isContinuation(p[2]) ||
        !isContinuation(p[3]))
        return false;
    const uint32_t plane = (p[0] & 0x07u) << 2 | (p[1] & 0x30u) >> 4;
    return plane >= 1 && plane <= 16;
}

// Exactly what the one-code-point decoder and emitUtf16 write, from p on; p and out advance.
void decodeOne(const unsigned char* bytes, int n, const unsigned char*& p, KORXWChar*& out) {
    int pos = static_cast<int>(p - bytes);
    uint32_t cp = korx::detail::DecodeUtf8(bytes, n, pos);
    if (cp == kInvalid)
        cp = kReplacement;
    out += korx::detail::EncodeUtf16(cp, out);
    p = bytes + pos;
}

// Decodes n bytes into a new buffer of n units (UTF-8 never needs more units than bytes).
// ASCII goes 16 bytes at a time: a block that is not all ASCII is widened whole all the same
// and only its leading ASCII bytes are kept (the rest is written over next; out never passes
// the input position, so there is room). Complete 2- and 3-byte sequences have a short path;
// 4-byte and malformed ones go through the one-code-point decoder. The result is exactly what
// a Utf8Next and emitUtf16 loop writes. A 0 byte or an overlong zero becomes a 0 unit, which
// ends the text as a terminator would.
KORXWChar* decodeUtf8(const unsigned char* bytes, int n) {
    KORXWChar* const buffer = newUnits(n);
    KORXWChar* out = buffer;
    const unsigned char* p = bytes;
    const unsigned char* const end = bytes + n;
    while (end - p >= 16) {
        const uint64_t first = loadWord(p);
        const uint64_t second = loadWord(p + 8);
        unsigned char block[16];
        std::memcpy(block, p, sizeof block);
        widenAscii16(block, out);
        if (((first | second) & kByteHighBits) == 0) {
            p += 16;
            out += 16;
            continue;
        }
        const int ascii = leadingAsciiBytes(first, second);
        p += ascii;
        out += ascii;
        while (end - p >= 3 && *p >= 0x80) {
            const uint32_t b0 = p[0];
            const uint32_t b1 = p[1];
            const uint32_t b2 = p[2];
            if ((b0 & 0xF0) == 0xE0 && isContinuation(b1) && isContinuation(b2)) {
                const uint32_t cp = (b0 & 0x0F) << 12 | (b1 & 0x3F) << 6 | (b2 & 0x3F);
                *out++ = static_cast<KORXWChar>(korx::detail::IsSurrogate(cp) ? kReplacement : cp);
                p += 3;
            } else if ((b0 & 0xE0) == 0xC0 && isContinuation(b1)) {
                *out++ = static_cast<KORXWChar>((b0 & 0x1F) << 6 | (b1 & 0x3F));
                p += 2;
            } else if (isSupplementary(p, end)) {
                const uint32_t cp = (b0 & 0x07) << 18 | (b1 & 0x3F) << 12 | (b2 & 0x3F) << 6 |
                                    (p[3] & 0x3F);
                out[0] = static_cast<KORXWChar>(0xD800 + ((cp - 0x10000) >> 10));
                out[1] = static_cast<KORXWChar>(0xDC00 + ((cp - 0x10000) & 0x3FF));
                out += 2;
                p += 4;
            } else {
                decodeOne(bytes, n, p, out);
            }
        }
    }
    while (p < end)
        decodeOne(bytes, n, p, out);
    terminate(buffer, static_cast<int>(out - buffer));
    return buffer;
}

// A C string is read through a byte string of its own, as every text entering the library from
// the byte side is.
KORXWChar* decodeUtf8(const char* text) {
    if (text == nullptr)
        return nullptr;
    const Gk_String bytes(text);
    return decodeUtf8(reinterpret_cast<const unsigned char*>(static_cast<char*>(bytes)),
                      bytes.dataLen());
}

// ---- UTF-16 to UTF-8 ----------------------------------------------------------------------

bool isNonCharacter(uint32_t unit) { return unit >= 0xFDD0 && (unit <= 0xFDEF || unit >= 0xFFFE); }

// Units 0 .. n - 1, all ASCII, as bytes; returns n. A plain loop, which compilers vectorise.
int narrowAscii(const KORXWChar* units, int n, char* out) {
    for (int i = 0; i < n; ++i)
        out[i] = static_cast<char>(units[i]);
    return n;
}

// 16 ASCII units as bytes. The block is a local copy, so the compiler knows out cannot overlap
// it and narrows it in vector registers.
void narrowAscii16(const KORXWChar* units, unsigned char* out) {
    KORXWChar block[16];
    std::memcpy(block, units, sizeof block);
    for (int i = 0; i < 16; ++i)
        out[i] = static_cast<unsigned char>(block[i]);
}

// One unit outside the surrogate range, as emitUtf8 writes it.
unsigned char* encodeBmp(uint32_t unit, unsigned char* out) {
    if (unit < 0x80) {
        *out = static_cast<unsigned char>(unit);
        return out + 1;
    }
    if (unit < 0x800) {
        out[0] = static_cast<unsigned char>(0xC0 | unit >> 6);
        out[1] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
        return out + 2;
    }
    if (isNonCharacter(unit))
        unit = kReplacement;
    out[0] = static_cast<unsigned char>(0xE0 | unit >> 12);
    out[1] = static_cast<unsigned char>(0x80 | ((unit >> 6) & 0x3F));
    out[2] = static_cast<unsigned char>(0x80 | (unit & 0x3F));
    return out + 3;
}

// A loaded word with its four units in text order from the low end.
uint64_t unitsInTextOrder(uint64_t word) {
    if (korx::detail::kLowByteFirst)
        return word;
    return word << 48 | (word << 16 & 0x0000FFFF00000000ull) | (word >> 16 & 0xFFFF0000ull) |
           word >> 48;
}

// The top bit of each unit from 0xD800 up.
uint64_t unitsFromD800(uint64_t word) {
    return ((word & 0x7FFF7FFF7FFF7FFFull) + 0x2800280028002800ull) & word & kUnitHighBits;
}

// The top bit of each unit the grouped encoding below cannot write: the surrogates, and the
// units of the two groups that hold the noncharacters, U+FDC0 .. U+FDFF and U+FFC0 .. U+FFFF.
uint64_t unitsNeedingCare(uint64_t word) {
    constexpr uint64_t kLow15 = 0x7FFF7FFF7FFF7FFFull;
    const uint64_t surrogate = (word & 0xF800F800F800F800ull) ^ 0xD800D800D800D800ull;
    const uint64_t nonCharacterGroup = ~word & 0xFDC0FDC0FDC0FDC0ull;
    // The top bit of each non-zero unit: adding 0x7FFF to the low 15 bits carries into it.
    const uint64_t notSurrogate = ((surrogate & kLow15) + kLow15) | surrogate;
    const uint64_t notInGroup = ((nonCharacterGroup & kLow15) + kLow15) | nonCharacterGroup;
    return ~(notSurrogate & notInGroup) & kUnitHighBits;
}

// The UTF-8 form of a unit u that is no surrogate and no noncharacter is, in 32-bit
// arithmetic, base[g] + u x multiplier[g] with g = u >> 6: its bytes in text order from the
// low end, then zero bytes, of which size[g] count. Within each group of 64 units the lead
// bytes are fixed and the low 6 bits of the unit go into the last byte only, which the
// multiplier (1, 0x100 or 0x10000) puts in place; base takes back what u's upper bits add.
// Written with one 4-byte store and no branch, text that changes between ASCII, Latin and CJK
// every few units goes at a steady pace, where a branch per kind of unit would keep
// mispredicting. (The entries of the surrogate groups are meaningless and never used.)
struct Utf8Groups {
    uint32_t base[1024];
    uint32_t multiplier[1024];
    unsigned char size[1024];
};

constexpr Utf8Groups makeUtf8Groups() {
    Utf8Groups groups{};
    for (uint32_t group = 0; group < 1024; ++group) {
        const uint32_t first = group << 6;
        uint32_t lead = first;
        uint32_t multiplier = 1;
        unsigned char size = 1;
        if (first >= 0x800) {
            lead = (0xE0 | first >> 12) | (0x80 | (first >> 6 & 0x3F)) << 8 | 0x80u << 16;
            multiplier = 0x10000;
            size = 3;
        } else if (first >= 0x80) {
            lead = (0xC0 | first >> 6) | 0x80u << 8;
            multiplier = 0x100;
            size = 2;
        }
        groups.base[group] = lead - first * multiplier;
        groups.multiplier[group] = multiplier;
        groups.size[group] = size;
    }
    return groups;
}

constexpr Utf8Groups kUtf8Groups = makeUtf8Groups();

// Stores the four bytes of word, the one in its low 8 bits first.
void storeInTextOrder(unsigned char* out, uint32_t word) {
    if (!korx::detail::kLowByteFirst)
        word = word << 24 | (word << 8 & 0xFF0000u) | (word >> 8 & 0xFF00u) | word >> 24;
    std::memcpy(out, &word, sizeof word);
}

// A unit that is no surrogate and no noncharacter; writes 4 bytes, of which 1 to 3 count.
unsigned char* encodeGrouped(uint32_t unit, unsigned char* out) {
    const uint32_t group = unit >> 6;
    storeInTextOrder(out, kUtf8Groups.base[group] + unit * kUtf8Groups.multiplier[group]);
    return out + kUtf8Groups.size[group];
}

struct Step {
    int units;
    int bytes;
};

// The code point starting at a unit that needs care, read as wcharNext reads it (units[1] is
// readable); writes 4 bytes, of which step.bytes count.
Step encodeWithCare(const KORXWChar* units, unsigned char* out) {
    uint32_t unit = units[0];
    if (unit >= 0xE000) {
        if (isNonCharacter(unit))
            unit = kReplacement;
        return {1, static_cast<int>(encodeGrouped(unit, out) - out)};
    }
    const uint32_t next = units[1];
    if (!korx::detail::IsHighSurrogate(unit) || !korx::detail::IsLowSurrogate(next))
        return {1, static_cast<int>(encodeGrouped(kReplacement, out) - out)};  // unpaired
    const uint32_t cp = 0x10000 + ((unit & 0x3FF) << 10) + (next & 0x3FF);
    storeInTextOrder(out, (0xF0 | cp >> 18) | (0x80 | (cp >> 12 & 0x3F)) << 8 |
                              (0x80 | (cp >> 6 & 0x3F)) << 16 | (0x80 | (cp & 0x3F)) << 24);
    return {2, 4};
}

// Writes units pos .. end - 1 as UTF-8 and returns the bytes written; invalid units become
// U+FFFD, or with loneSurrogateFails a lone surrogate makes it stop and return -1. As
// wcharNext does, a high surrogate at end - 1 takes the low surrogate at end with it.
//
// While at least 16 units remain: 16 ASCII units at once, else eight units all through the
// grouped encoding unless one of them needs care; then the units before it go that way, and
// its code point on its own. Every unit accounts for at least one byte of the output, and of
// the byte form's count, so there the 4- and 16-byte stores stay inside it; what they write
// past a code point's own bytes is written over by the next ones. The last units go one at a
// time.
int encodeUtf8(const KORXWChar* units, int pos, int end, char* out,
               bool loneSurrogateFails = false) {
    const KORXWChar* p = units + pos;
    const KORXWChar* const last = units + end;
    unsigned char* q = reinterpret_cast<unsigned char*>(out);
    while (last - p >= 16) {
        const uint64_t first = loadWord(p);
        const uint64_t second = loadWord(p + 4);
        if (((first | second | loadWord(p + 8) | loadWord(p + 12)) & kUnitAboveAscii) == 0) {
            narrowAscii16(p, q);
            p += 16;
            q += 16;
            continue;
        }
        // Most text has no unit from 0xD800, and then needs no closer look.
        if ((unitsFromD800(first) | unitsFromD800(second)) != 0) {
            const uint64_t careFirst = unitsNeedingCare(first);
            const uint64_t careSecond = unitsNeedingCare(second);
            if ((careFirst | careSecond) != 0) {
                const int plain =
                    careFirst != 0
                        ? korx::detail::LowestSetBit(unitsInTextOrder(careFirst)) >> 4
                        : 4 + (korx::detail::LowestSetBit(unitsInTextOrder(careSecond)) >> 4);
                for (int i = 0; i < plain; ++i)
                    q = encodeGrouped(p[i], q);
                const Step step = encodeWithCare(p + plain, q);
                if (loneSurrogateFails && step.units == 1 && korx::detail::IsSurrogate(p[plain]))
                    return -1;
                p += plain + step.units;
                q += step.bytes;
                continue;
            }
        }
        for (int i = 0; i < 8; ++i)
            q = encodeGrouped(p[i], q);
        p += 8;
    }
    while (p < last) {
        for (auto count = last - p; count > 0 && !korx::detail::IsSurrogate(*p); --count)
            q = encodeBmp(*p++, q);
        if (p == last)
            break;
        int i = static_cast<int>(p - units);
        uint32_t cp = korx::detail::DecodeUtf16(units, end, i);
        if (cp == kInvalid) {
            if (loneSurrogateFails)
                return -1;
            cp = kReplacement;
        }
        q += korx::detail::EncodeUtf8(cp, q);
        p = units + i;
    }
    return static_cast<int>(q - reinterpret_cast<unsigned char*>(out));
}

// Utf8Length over units from .. to - 1 of a terminated text: every unit counts 1, 2 or 3 bytes
// and a surrogate 2, so a pair counts 4. With kCheckPairs, unpaired is set unless each high
// surrogate is followed by a low one (units[to] is read) and each low one after units[from]
// preceded by a high one. Blocks of up to 8192 units keep the sums in 16 bits, which compilers
// vectorise eight units at a time.
constexpr int kCountBlock = 8192;  // 3 x 8192 fits in 16 bits

struct Count {
    unsigned int bytes;
    unsigned int unpaired;  // non-zero when not valid
};

template <bool kCheckPairs> Count countUtf8(const KORXWChar* units, int from, int to) {
    Count count = {0, 0};
    for (int i = from; i < to; i += kCountBlock) {
        const int m = std::min(to - i, kCountBlock);
        uint16_t blockBytes = 0;
        uint16_t blockUnpaired = 0;
        for (int k = i; k < i + m; ++k) {
            const uint16_t unit = units[k];
            const bool surrogate = (unit & 0xF800) == 0xD800;
            blockBytes += static_cast<uint16_t>(1 + (unit >= 0x80) + (unit >= 0x800) - surrogate);
            if (kCheckPairs) {
                const uint16_t next = units[k + 1];  // at most the terminator
                const bool high = (unit & 0xFC00) == 0xD800;
                const bool nextLow = (next & 0xFC00) == 0xDC00;
                blockUnpaired |= static_cast<uint16_t>(high != nextLow);
            }
        }
        count.bytes += blockBytes;
        count.unpaired |= blockUnpaired;
    }
    return count;
}

struct Measure {
    int units;
    int bytes;
};

// The units of a padded buffer and the bytes of its UTF-8 form. The terminator scan goes eight
// units at a time (reading up to a 0 unit is all the padding allows) and notes whether any unit
// is above ASCII; only then does a second pass count. Equal counts mean ASCII text. With
// kCheckPairs the bytes are Utf8Length's, -1 for a lone surrogate; without, a lone surrogate
// counts as half a pair, and the encoder, which looks at every surrogate anyway, finds it.
// (Counting each block of the scan while it is in the cache was no faster on texts of tens of
// megabytes, which the last-level cache holds, and the block bound slowed the scan.)
template <bool kCheckPairs> Measure measureBuffer(const KORXWChar* buffer) {
    uint64_t seen = 0;
    int n = 0;
    for (;;) {
        const uint64_t first = loadWord(buffer + n);
        const uint64_t second = loadWord(buffer + n + 4);
        if ((zeroLanes(first) | zeroLanes(second)) != 0)
            break;
        seen |= first | second;
        n += 8;
    }
    for (; buffer[n] != 0; ++n)
        seen |= buffer[n];
    if ((seen & kUnitAboveAscii) == 0)
        return {n, n};
    const Count count = countUtf8<kCheckPairs>(buffer, 0, n);
    const bool lone =
        kCheckPairs && (count.unpaired != 0 || korx::detail::IsLowSurrogate(buffer[0]));
    return {n, lone ? -1 : static_cast<int>(count.bytes)};
}

// ---- Units and the C runtime --------------------------------------------------------------

// The C runtime sees each unit on its own, widened to wchar_t; surrogates pass unchanged.
KORXWChar lowerUnit(KORXWChar unit) {
    if (korx::detail::IsSurrogate(unit))
        return unit;
    return static_cast<KORXWChar>(std::towlower(static_cast<wint_t>(unit)));
}

KORXWChar upperUnit(KORXWChar unit) {
    if (korx::detail::IsSurrogate(unit))
        return unit;
    return static_cast<KORXWChar>(std::towupper(static_cast<wint_t>(unit)));
}

bool isSpaceUnit(KORXWChar unit) {
    return !korx::detail::IsSurrogate(unit) && std::iswspace(static_cast<wint_t>(unit)) != 0;
}

// The order of two texts of which at least one has no buffer: none sorts first.
int orderOfMissing(const KORXWChar* a, const KORXWChar* b) {
    if (a == nullptr && b == nullptr)
        return 0;
    return a == nullptr ? -1 : 1;
}

bool matchesAt(const KORXWChar* text, int at, const KORXWChar* s, int m) {
    return std::memcmp(text + at, s, static_cast<size_t>(m) * sizeof(KORXWChar)) == 0;
}

unsigned int low32(const void* p) {
    return static_cast<unsigned int>(reinterpret_cast<uintptr_t>(p));
}

// ---- Formatting ---------------------------------------------------------------------------

constexpr int kLocalFormatSize = 1024;

KORXWChar* formatted(int bufferSize, const char* format, va_list args) {
    char local[kLocalFormatSize] = {};
    std::unique_ptr<char[]> heap;
    char* buffer = local;
    if (bufferSize > kLocalFormatSize) {
        heap.reset(new char[static_cast<size_t>(bufferSize)]());
        buffer = heap.get();
    }
    const size_t size = bufferSize > 0 ? static_cast<size_t>(bufferSize) : 0;
    const int written = korx::detail::FormatV(buffer, size, format, args);
    // Cut text keeps the bytes that fit: callers get a bounded text, never an error.
    const int length = written >= 0 ? written : std::max(bufferSize - 1, 0);
    // A formatted 0 byte ends the text.
    const void* zero = std::memchr(buffer, 0, static_cast<size_t>(length));
    const int n =
        zero != nullptr ? static_cast<int>(static_cast<const char*>(zero) - buffer) : length;
    return decodeUtf8(reinterpret_cast<const unsigned char*>(buffer), n);
}

#if KORX_WCHAR_IS_UTF32
KORXWChar* fromUtf32(const wchar_t* text, int n) {
    int units = 0;
    KORXWChar pair[2];
    for (int i = 0; i < n; ++i)
        units += korx::detail::EncodeUtf32AsUtf16(static_cast<uint32_t>(text[i]), pair);
    KORXWChar* buffer = newUnits(units);
    int w = 0;
    for (int i = 0; i < n; ++i)
        w += korx::detail::EncodeUtf32AsUtf16(static_cast<uint32_t>(text[i]), buffer + w);
    terminate(buffer, w);
    return buffer;
}
#endif

}  // namespace

// ---- Shared constants ---------------------------------------------------------------------
//
// Each constant is a KORXString made by a constexpr constructor inside a union whose destructor
// does nothing: it is constant-initialised (ready before any static initialiser runs) and never
// destroyed (still readable from any at-exit destructor). Its byte form is set from the start,
// so reading it never writes. A function-local static would not do: it is destroyed at exit,
// possibly before a later-destroyed reader.

union KORXStringConstant {
    KORXString value;

    constexpr KORXStringConstant(const KORXWChar* wide, const char* bytes)
        : value(KORXString::StaticTextTag{}, wide, bytes) {}
    ~KORXStringConstant() {}
};

#if defined(__clang__)
#define KORX_CONSTANT_INIT [[clang::require_constant_initialization]]
#else
#define KORX_CONSTANT_INIT
#endif

namespace {

// Padded as every wide buffer is: kPadding 0 units after the text (the rest of each array).
constexpr KORXWChar kYesText[3 + kPadding] = {'Y', 'e', 's'};
constexpr KORXWChar kNoText[2 + kPadding] = {'N', 'o'};
constexpr KORXWChar kTrueText[4 + kPadding] = {'T', 'r', 'u', 'e'};
constexpr KORXWChar kFalseText[5 + kPadding] = {'F', 'a', 'l', 's', 'e'};
constexpr KORXWChar kOnText[2 + kPadding] = {'O', 'n'};
constexpr KORXWChar kOffText[3 + kPadding] = {'O', 'f', 'f'};

KORX_CONSTANT_INIT KORXStringConstant g_yes(kYesText, "Yes");
KORX_CONSTANT_INIT KORXStringConstant g_no(kNoText, "No");
KORX_CONSTANT_INIT KORXStringConstant g_true(kTrueText, "True");
KORX_CONSTANT_INIT KORXStringConstant g_false(kFalseText, "False");
KORX_CONSTANT_INIT KORXStringConstant g_on(kOnText, "On");
KORX_CONSTANT_INIT KORXStringConstant g_off(kOffText, "Off");

}  // namespace

KORX_CONSTANT_INIT const KORXString& KORX_YES = g_yes.value;
KORX_CONSTANT_INIT const KORXString& KORX_NO = g_no.value;
KORX_CONSTANT_INIT const KORXString& KORX_TRUE = g_true.value;
KORX_CONSTANT_INIT const KORXString& KORX_FALSE = g_false.value;
KORX_CONSTANT_INIT const KORXString& KORX_ON = g_on.value;
KORX_CONSTANT_INIT const KORXString& KORX_OFF = g_off.value;

// ---- Construction and conversion ----------------------------------------------------------

KORXString::KORXString() : m_wideBuffer(nullptr), m_byteForm(nullptr) {}

KORXString::KORXString(const KORXWChar* text)
    : m_wideBuffer(text != nullptr ? copyOf(text, unitCount(text)) : nullptr), m_byteForm(nullptr) {
}

KORXString::KORXString(const char* text) : m_wideBuffer(decodeUtf8(text)), m_byteForm(nullptr) {}

KORXString::KORXString(const unsigned char* text)
    : m_wideBuffer(decodeUtf8(reinterpret_cast<const char*>(text))), m_byteForm(nullptr) {}

KORXString::KORXString(KORXWChar unit) : m_wideBuffer(newUnits(1)), m_byteForm(nullptr) {
    m_wideBuffer[0] = unit;
    terminate(m_wideBuffer, 1);
}

KORXString::KORXString(int bufferSize, const char* format, ...)
    : m_wideBuffer(nullptr), m_byteForm(nullptr) {
    if (format == nullptr)
        return;
    va_list args;
    va_start(args, format);
    m_wideBuffer = formatted(bufferSize, format, args);
    va_end(args);
}

#if KORX_WCHAR_IS_UTF32
KORXString::KORXString(const wchar_t* text)
    : m_wideBuffer(text != nullptr ? fromUtf32(text, unitCount(text)) : nullptr),
      m_byteForm(nullptr) {}
#endif

KORXString::KORXString(const KORXString& other)
    : m_wideBuffer(copyOfBuffer(other.m_wideBuffer)), m_byteForm(nullptr) {}

KORXString::KORXString(KORXString&& other) noexcept
    : m_wideBuffer(other.m_wideBuffer), m_byteForm(other.m_byteForm) {
    other.m_wideBuffer = nullptr;
    other.m_byteForm = nullptr;
}

KORXString& KORXString::operator=(const KORXString& other) {
    if (this == &other)
        return *this;
    KORXWChar* wide = copyOfBuffer(other.m_wideBuffer);
    if (m_byteForm != nullptr) {
        // Only a string that had a byte form takes the source's; others stay without one.
        char* bytes = other.m_byteForm != nullptr ? copyOfBytes(other.m_byteForm) : nullptr;
        delete[] m_byteForm;
        m_byteForm = bytes;
    }
    delete[] m_wideBuffer;
    m_wideBuffer = wide;
    return *this;
}

KORXString::~KORXString() {
    delete[] m_wideBuffer;
    delete[] m_byteForm;
}

KORXString KORXString::Adopt(KORXWChar* buffer) {
    KORXString result;
    if (buffer[0] == 0)
        delete[] buffer;
    else
        result.m_wideBuffer = buffer;
    return result;
}

KORXString::operator const KORXWChar*() const { return m_wideBuffer; }

KORXString::operator const char*() const {
    if (m_byteForm != nullptr || m_wideBuffer == nullptr)
        return m_byteForm;
    const Measure measure = measureBuffer<false>(m_wideBuffer);
    const int n = measure.units;
    const int length = measure.bytes;
    char* bytes = new char[static_cast<size_t>(length) + 1];
    const int written = length == n ? narrowAscii(m_wideBuffer, n, bytes)
                                    : encodeUtf8(m_wideBuffer, 0, n, bytes, true);
    if (written < 0) {
        // A lone surrogate has no UTF-8 length: the byte form is empty.
        delete[] bytes;
        bytes = new char[1]();
    } else {
        bytes[written] = '\0';
    }
    m_byteForm = bytes;
    return m_byteForm;
}

KORXWChar& KORXString::operator[](int i) { return m_wideBuffer[i]; }

const KORXWChar& KORXString::operator[](int i) const { return m_wideBuffer[i]; }

KORXWChar KORXString::charAt(int i) const {
    if (m_wideBuffer == nullptr || i < 0)
        return 0;
    for (int k = 0; k < i; ++k) {
        if (m_wideBuffer[k] == 0)
            return 0;  // i is past the end
    }
    return m_wideBuffer[i];
}

int KORXString::length() const { return m_wideBuffer != nullptr ? bufferLength(m_wideBuffer) : 0; }

int KORXString::GetLengthInChar() const {
    if (m_wideBuffer == nullptr)
        return 0;
    return measureBuffer<true>(m_wideBuffer).bytes;
}

bool KORXString::hasSpace() const { return m_wideBuffer != nullptr; }

void KORXString::getChars(int begin, int end, KORXWChar* dst, int dstBegin) const {
    if (dstBegin < 0)
        return;  // no terminator before the destination
    dst[dstBegin] = 0;
    const int n = length();
    const int e = std::min(end, n);
    if (n == 0 || begin < 0 || begin >= e)
        return;
    std::memcpy(dst + dstBegin, m_wideBuffer + begin,
                static_cast<size_t>(e - begin) * sizeof(KORXWChar));
    dst[dstBegin + e - begin] = 0;
}

void KORXString::getChars(int begin, int end, char* dst, int dstBegin) const {
    if (dstBegin < 0)
        return;
    dst[dstBegin] = '\0';
    const int n = length();
    const int e = std::min(end, n);
    if (n == 0 || begin < 0 || begin >= e)
        return;
    int start = begin;
    if (korx::detail::IsLowSurrogate(m_wideBuffer[begin])) {
        // Callers rely on never getting half a pair: back up to its high surrogate, or write
        // nothing when there is none.
        if (begin == 0 || !korx::detail::IsHighSurrogate(m_wideBuffer[begin - 1]))
            return;
        start = begin - 1;
    }
    char* out = dst + dstBegin;
    out[encodeUtf8(m_wideBuffer, start, e, out)] = '\0';
}

void KORXString::dump() const {
    const int n = length();
    korx::detail::TracePrintf("string 0x%x (0x%x): ", low32(this), low32(m_wideBuffer));
    korx::detail::TracePrintf("\"");
    for (int i = 0; i < n; ++i)
        korx::detail::TracePrintf("%c", m_wideBuffer[i] & 0xFF);
    korx::detail::TracePrintf("\"");
    korx::detail::TracePrintf(" (%d chars)", n);
    korx::detail::TracePrintf("\n");
}

// ---- Comparison and search ----------------------------------------------------------------

int KORXString::compareTo(const KORXString& other) const {
    const KORXWChar* a = m_wideBuffer;
    const KORXWChar* b = other.m_wideBuffer;
    if (a == nullptr || b == nullptr)
        return orderOfMissing(a, b);
    for (int i = 0;; ++i) {
        if (a[i] != b[i])
            return a[i] < b[i] ? -1 : 1;
        if (a[i] == 0)
            return 0;
    }
}

int KORXString::compareToIgnoreCase(const KORXString& other) const {
    const KORXWChar* a = m_wideBuffer;
    const KORXWChar* b = other.m_wideBuffer;
    if (a == nullptr || b == nullptr)
        return orderOfMissing(a, b);
    // A side whose lower-cased form is empty (no units) sorts first.
    if (a[0] == 0 || b[0] == 0)
        return a[0] == b[0] ? 0 : (a[0] == 0 ? -1 : 1);
    for (int i = 0;; ++i) {
        const KORXWChar x = lowerUnit(a[i]);
        const KORXWChar y = lowerUnit(b[i]);
        if (x != y)
            return x < y ? -1 : 1;
        if (x == 0)
            return 0;
    }
}

bool KORXString::equals(const KORXString& other) const { return compareTo(other) == 0; }

bool KORXString::equalsIgnoreCase(const KORXString& other) const {
    return compareToIgnoreCase(other) == 0;
}

unsigned int KORXString::hashCode() const {
    unsigned int h = 0;
    if (m_wideBuffer == nullptr)
        return h;
    for (const KORXWChar* p = m_wideBuffer; *p != 0; ++p)
        h = h * 33u + *p;
    return h;
}

int KORXString::indexOf(KORXWChar c) const { return indexOf(c, 0); }

int KORXString::indexOf(KORXWChar c, int from) const {
    const int n = length();
    if (from < 0 || from >= n)
        return -1;
    for (int i = from; i < n; ++i) {
        if (m_wideBuffer[i] == c)
            return i;
    }
    return -1;
}

int KORXString::indexOf(const KORXString& s) const { return indexOf(s, 0); }

int KORXString::indexOf(const KORXString& s, int from) const {
    const int n = length();
    const int m = s.length();
    if (m == 0 || from < 0 || from >= n || from + m > n)
        return -1;
    for (int p = from; p <= n - m; ++p) {
        if (matchesAt(m_wideBuffer, p, s.m_wideBuffer, m))
            return p;
    }
    return -1;
}

int KORXString::lastIndexOf(KORXWChar c) const { return lastIndexOf(c, length() - 1); }

int KORXString::lastIndexOf(KORXWChar c, int from) const {
    const int n = length();
    if (from < 0 || from >= n)
        return -1;
    for (int i = from; i >= 0; --i) {
        if (m_wideBuffer[i] == c)
            return i;
    }
    return -1;
}

int KORXString::lastIndexOf(const KORXString& s) const { return lastIndexOf(s, length() - 1); }

int KORXString::lastIndexOf(const KORXString& s, int from) const {
    const int n = length();
    const int m = s.length();
    if (m == 0 || from < 0 || from >= n)
        return -1;
    for (int p = std::min(from, n - m); p >= 0; --p) {
        if (matchesAt(m_wideBuffer, p, s.m_wideBuffer, m))
            return p;
    }
    return -1;
}

int KORXString::lastIndexOfAfter(KORXWChar c, int after) const {
    const int n = length();
    if (after < 0 || after >= n - 1)
        return -1;
    for (int p = n - 1; p > after; --p) {
        if (m_wideBuffer[p] == c)
            return p;
    }
    return -1;
}

bool KORXString::startsWith(const KORXString& s) const { return startsWith(s, 0); }

bool KORXString::startsWith(const KORXString& s, int from) const {
    const int n = length();
    const int m = s.length();
    // Callers rely on an empty prefix never matching. A negative from never matches either.
    if (n == 0 || m == 0 || from < 0 || from >= n || n - m - from < 0)
        return false;
    return matchesAt(m_wideBuffer, from, s.m_wideBuffer, m);
}

bool KORXString::endsWith(const KORXString& s) const {
    const int n = length();
    const int m = s.length();
    if (n == 0 || m == 0)
        return false;
    // Callers rely on exactly this test; a text one unit longer than this string gives
    // -1 == -1 and so also counts as an ending.
    return lastIndexOf(s, n - 1) == n - m;
}

bool KORXString::endsWith(KORXWChar c) const {
    const int n = length();
    return n > 0 && m_wideBuffer[n - 1] == c;
}

bool KORXString::isWhitespace() const {
    if (m_wideBuffer == nullptr)
        return true;
    for (const KORXWChar* p = m_wideBuffer; *p != 0; ++p) {
        if (!isSpaceUnit(*p))
            return false;
    }
    return true;
}

// ---- Derived strings ----------------------------------------------------------------------

KORXString KORXString::substring(int begin, int end) const {
    const int n = length();
    if (begin < 0 || begin >= n || end < 0 || end > n || end <= begin)
        return KORXString();
    return Adopt(copyOf(m_wideBuffer + begin, end - begin));
}

KORXString KORXString::substring(int begin) const { return substring(begin, length()); }

KORXString KORXString::concat(const KORXString& other) const {
    const int n = length();
    const int m = other.length();
    if (n == 0)
        return m == 0 ? KORXString() : KORXString(other);
    if (m == 0)
        return KORXString(*this);
    KORXWChar* buffer = newUnits(n + m);
    std::memcpy(buffer, m_wideBuffer, static_cast<size_t>(n) * sizeof(KORXWChar));
    std::memcpy(buffer + n, other.m_wideBuffer, static_cast<size_t>(m) * sizeof(KORXWChar));
    terminate(buffer, n + m);
    return Adopt(buffer);
}

KORXString KORXString::operator+(const KORXString& other) const { return concat(other); }

KORXString KORXString::replace(KORXWChar oldUnit, KORXWChar newUnit) const {
    const int n = length();
    if (n == 0)
        return KORXString();
    KORXWChar* buffer = copyOf(m_wideBuffer, n);
    std::replace(buffer, buffer + n, oldUnit, newUnit);
    return Adopt(buffer);
}

KORXString KORXString::toLowerCase() const {
    const int n = length();
    if (n == 0)
        return KORXString();
    KORXWChar* buffer = copyOf(m_wideBuffer, n);
    std::transform(buffer, buffer + n, buffer, lowerUnit);
    return Adopt(buffer);
}

KORXString KORXString::toUpperCase() const {
    const int n = length();
    if (n == 0)
        return KORXString();
    KORXWChar* buffer = copyOf(m_wideBuffer, n);
    std::transform(buffer, buffer + n, buffer, upperUnit);
    return Adopt(buffer);
}

KORXString KORXString::trim() const {
    const int n = length();
    int first = 0;
    while (first < n && isSpaceUnit(m_wideBuffer[first]))
        ++first;
    if (first == n)
        return KORXString();
    int last = n - 1;
    while (isSpaceUnit(m_wideBuffer[last]))
        --last;
    return substring(first, last + 1);
}

KORXString KORXString::valueOf(int value) { return KORXString(kLocalFormatSize, "%d", value); }

KORXString KORXString::valueOf(long value) { return KORXString(kLocalFormatSize, "%ld", value); }

KORXString KORXString::valueOf(float value) {
    return KORXString(kLocalFormatSize, "%f", static_cast<double>(value));
}

KORXString KORXString::valueOf(double value) { return KORXString(kLocalFormatSize, "%f", value); }

KORXString KORXString::valueOf(bool value) { return KORXString(value ? "true" : "false"); }

KORXString KORXString::valueOf(KORXWChar unit) { return KORXString(unit); }

KORXString KORXString::valueOf(const KORXWChar* text) { return KORXString(text); }

KORXString KORXString::valueOf(const KORXWChar* data, int offset, int count) {
    if (data == nullptr || offset < 0 || count <= 0)
        return KORXString();
    const KORXWChar* start = data + offset;
    int n = 0;
    while (n < count && start[n] != 0)  // as wcsncpy: a terminator ends the copy
        ++n;
    return Adopt(copyOf(start, n));
}

#if KORX_WCHAR_IS_UTF32

KORXString KORXString::valueOf(wchar_t c) {
    KORXWChar* buffer = newUnits(2);
    terminate(buffer, korx::detail::EncodeUtf32AsUtf16(static_cast<uint32_t>(c), buffer));
    KORXString result;
    result.m_wideBuffer = buffer;  // a one-unit string even for 0, as KORXString(KORXWChar)
    return result;
}

KORXString KORXString::valueOf(const wchar_t* text) { return KORXString(text); }

KORXString KORXString::valueOf(const wchar_t* data, int offset, int count) {
    if (data == nullptr || offset < 0 || count <= 0)
        return KORXString();
    const wchar_t* start = data + offset;
    int n = 0;
    while (n < count && start[n] != 0)
        ++n;
    return Adopt(fromUtf32(start, n));
}

#endif
