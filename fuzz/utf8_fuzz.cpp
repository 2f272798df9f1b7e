// Arbitrary bytes read as UTF-8 text and as UTF-16 units. Checks invariants that hold for any
// input: lengths agree with what the conversions write, converted text is well formed, and
// nothing is written outside the room the conversions promise.
#include <korx/KORXString.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

void check(bool holds) {
    if (!holds)
        std::abort();
}

// The byte form of any string is well-formed UTF-8 of the length GetLengthInChar reports, and
// decoding it again and encoding the result gives the same bytes.
void checkByteForm(const KORXString& s) {
    const char* bytes = s;
    if (bytes == nullptr)
        return;
    const int n = static_cast<int>(std::strlen(bytes));
    const int length = s.GetLengthInChar();
    check(length == -1 ? n == 0 : n == length);
    check(WcharLength(reinterpret_cast<const unsigned char*>(bytes), n) >= 0);
    const KORXString again(bytes);
    check(std::strcmp(static_cast<const char*>(again), bytes) == 0);
}

void fromUtf8(const uint8_t* data, size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);  // terminated
    const int n = static_cast<int>(std::strlen(bytes.c_str()));
    const KORXString s(bytes.c_str());
    const int units = s.length();
    check(units <= n);
    const int expected = WcharLength(data, n);
    check(expected == -1 || expected == units);
    // Decoded text holds no lone surrogate: every invalid sequence became U+FFFD.
    check(s.GetLengthInChar() >= 0);
    checkByteForm(s);
}

struct Encoded {
    std::string bytes;
    bool lone = false;
};

Encoded encodeUnits(const std::vector<unsigned short>& units, int n) {
    Encoded out;
    std::vector<KORXWChar> wide(units.begin(), units.end());
    int pos = 0;
    while (pos < n) {
        int widePos = pos;
        const unsigned int cp = Utf16Next(units.data(), n, pos);
        check(wcharNext(wide.data(), n, widePos) == cp && widePos == pos);
        out.lone = out.lone || cp == KORX_UTF_INVALID;
        unsigned char bytes[4];
        const int k = emitUtf8(cp == KORX_UTF_INVALID ? 0xFFFD : cp, bytes);
        out.bytes.append(reinterpret_cast<char*>(bytes), static_cast<size_t>(k));
    }
    return out;
}

void fromUtf16(const uint8_t* data, size_t size) {
    std::vector<unsigned short> units;
    for (size_t i = 0; i + 1 < size; i += 2) {
        const auto unit = static_cast<unsigned short>(data[i] | data[i + 1] << 8);
        if (unit == 0)
            break;
        units.push_back(unit);
    }
    const int n = static_cast<int>(units.size());
    units.push_back(0);
    const Encoded expected = encodeUnits(units, n);

    std::vector<KORXWChar> wide(units.begin(), units.end());
    const KORXString s(wide.data());
    check(s.length() == n);
    const int length = Utf8Length(wide.data(), 0);
    check(length == (expected.lone ? -1 : static_cast<int>(expected.bytes.size())));
    check(s.GetLengthInChar() == length);
    check(std::string(static_cast<const char*>(s)) == (expected.lone ? "" : expected.bytes));
    checkByteForm(s);

    // getChars writes the whole text with lone surrogates as U+FFFD, except that a text
    // starting on a low surrogate writes nothing; always within the promised room.
    std::vector<char> all(3 * static_cast<size_t>(n) + 4, '\x7F');
    s.getChars(0, n, all.data(), 0);
    const bool startsOnLow = n > 0 && units[0] >= 0xDC00 && units[0] <= 0xDFFF;
    check(std::string(all.data()) == (startsOnLow ? "" : expected.bytes));

    const int begin = size > 0 ? static_cast<int>(data[0] % (n + 2)) - 1 : 0;
    const int end = size > 1 ? static_cast<int>(data[1] % (n + 2)) : n;
    const size_t room = begin < end ? 3 * static_cast<size_t>(end - begin) + 3 : 1;
    std::vector<char> part(room + 16, '\x7F');
    s.getChars(begin, end, part.data(), 0);
    const size_t written = std::strlen(part.data());
    check(written < room);
    for (size_t i = written + 1; i < part.size(); ++i)
        check(part[i] == '\x7F');
    check(WcharLength(reinterpret_cast<const unsigned char*>(part.data()),
                      static_cast<int>(written)) >= 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    fromUtf8(data, size);
    fromUtf16(data, size);
    return 0;
}
