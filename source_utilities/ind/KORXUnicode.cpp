#include <korx/KORXString.h>

#include "internal/Unicode.h"

#include <cstdlib>
#include <cwchar>
#include <memory>

using korx::detail::kInvalid;

namespace {

template <class Unit> int unitCount(const Unit* text) {
    int n = 0;
    while (text[n] != 0)
        ++n;
    return n;
}

int utf8LengthOfUnits(const KORXWChar* text, int n) {
    int bytes = 0;
    int pos = 0;
    while (pos < n) {
        const uint32_t cp = korx::detail::DecodeUtf16(text, n, pos);
        if (cp == 0)
            break;
        if (cp == kInvalid)
            return -1;  // a lone surrogate
        bytes += korx::detail::Utf8Size(cp);
    }
    return bytes;
}

// The C runtime sees each unit on its own, widened to wchar_t.
wchar_t widen(KORXWChar unit) { return static_cast<wchar_t>(unit); }
[[maybe_unused]] wchar_t widen(wchar_t unit) { return unit; }

template <class Unit> size_t toLocaleBytes(const Unit* text, int n, char* out, size_t size) {
    std::unique_ptr<wchar_t[]> wide(new wchar_t[n + 1]);
    for (int i = 0; i < n; ++i)
        wide[i] = widen(text[i]);
    wide[n] = 0;
    return std::wcstombs(out, wide.get(), size);
}

template <class Unit> void copyAsBytes(const Unit* text, int n, char* out) {
    for (int i = 0; i < n; ++i) {
        const auto unit = static_cast<uint32_t>(text[i]);
        out[i] = unit >= 127 ? '_' : static_cast<char>(unit);
    }
}

// A final line feed becomes 13 10 unless it already follows a 13. out has room for one more.
size_t fixLineEnd(char* out, size_t r) {
    if (r == 0)
        return 0;  // nothing before the buffer to look at
    if (out[r - 1] != '\n' || (r > 1 && out[r - 2] == '\r'))
        return r;
    out[r - 1] = '\r';
    out[r] = '\n';
    return r + 1;
}

template <class Unit> int printable(const Unit* text, char*& out) {
    const int n = text != nullptr ? unitCount(text) : 0;
    // One byte more than the 6 per unit, for the line-end fix.
    const size_t size = 6 * static_cast<size_t>(n);
    out = new char[size + 1];
    if (n == 0) {
        out[0] = '\0';
        return 0;
    }
    size_t r = toLocaleBytes(text, n, out, size);
    if (r == static_cast<size_t>(-1)) {
        copyAsBytes(text, n, out);
        r = static_cast<size_t>(n);
    }
    return static_cast<int>(fixLineEnd(out, r));
}

}  // namespace

unsigned int Utf8Next(const unsigned char* bytes, int n, int& pos) {
    return korx::detail::DecodeUtf8(bytes, n, pos);
}

unsigned int Utf16Next(const unsigned short* units, int n, int& pos) {
    return korx::detail::DecodeUtf16(units, n, pos);
}

unsigned int wcharNext(const KORXWChar* units, int n, int& pos) {
    return korx::detail::DecodeUtf16(units, n, pos);
}

int emitUtf8(unsigned int cp, unsigned char* out) { return korx::detail::EncodeUtf8(cp, out); }

int emitUtf16(unsigned int cp, unsigned short* out) { return korx::detail::EncodeUtf16(cp, out); }

int Utf8Length(const KORXWChar* text, int maxUnits) {
    if (text == nullptr)
        return 0;
    int n = unitCount(text);
    if (maxUnits > 0 && maxUnits < n)
        n = maxUnits;
    return utf8LengthOfUnits(text, n);
}

int WcharLength(const unsigned char* bytes, int n) {
    int units = 0;
    int pos = 0;
    while (pos < n) {
        const uint32_t cp = korx::detail::DecodeUtf8(bytes, n, pos);
        if (cp == 0)
            break;
        if (cp == kInvalid)
            return -1;
        units += cp < 0x10000 ? 1 : 2;
    }
    return units;
}

int WcharToPrintable(const KORXWChar* text, char*& out) { return printable(text, out); }

size_t vnt_mbstowcs(wchar_t* dst, const char* src, size_t n) { return std::mbstowcs(dst, src, n); }

size_t vnt_wcstombs(char* dst, const wchar_t* src, size_t n) { return std::wcstombs(dst, src, n); }

#if KORX_WCHAR_IS_UTF32

unsigned int wcharNext(const wchar_t* units, int n, int& pos) {
    if (pos >= n)
        return 0;
    const auto cp = static_cast<uint32_t>(units[pos++]);
    return korx::detail::IsSurrogate(cp) || cp > 0x10FFFF ? kInvalid : cp;
}

int Utf8Length(const wchar_t* text, int maxUnits) {
    if (text == nullptr)
        return 0;
    int n = unitCount(text);
    if (maxUnits > 0 && maxUnits < n)
        n = maxUnits;
    std::unique_ptr<KORXWChar[]> units(new KORXWChar[2 * static_cast<size_t>(n) + 1]);
    int count = 0;
    for (int i = 0; i < n; ++i)
        count += korx::detail::EncodeUtf32AsUtf16(static_cast<uint32_t>(text[i]), &units[count]);
    units[count] = 0;
    return utf8LengthOfUnits(units.get(), count);
}

int WcharToPrintable(const wchar_t* text, char*& out) { return printable(text, out); }

#endif
