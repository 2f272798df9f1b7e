#include <korx/KORXString.h>

#include <gtest/gtest.h>

#include <iconv.h>

#include <climits>
#include <cstddef>
#include <string>

namespace {

constexpr int kUnmappable = 0xFFFF;
const int kSomePages[] = {INT_MIN, -1, 0, 1, 5, 8, 12, 15, 16, INT_MAX};
const int kPagesWithoutRow[] = {INT_MIN, -1, 16, 100, INT_MAX};

// Positions where the table keeps the library's own value rather than the published one.
struct Departure {
    int page;
    int code;
    int rune;
};
const Departure kDepartures[] = {
    {7, 0xB4, 0x00B4},      {7, 0xB7, 0x0387},      {8, 0xAF, 0x203E},       {8, 0xB7, 0x2022},
    {8, 0xFD, kUnmappable}, {8, 0xFE, kUnmappable}, {11, 0xA0, kUnmappable},
};

bool IsDeparture(int page, int code) {
    for (const Departure& d : kDepartures)
        if (d.page == page && d.code == code)
            return true;
    return false;
}

// The code point iconv gives for one byte, 0xFFFF when it refuses the byte, -2 when it gives
// anything but exactly one code point.
int IconvRune(iconv_t cd, int code) {
    char in = static_cast<char>(code);
    unsigned char out[16];
    char* inPtr = &in;
    char* outPtr = reinterpret_cast<char*>(out);
    size_t inLeft = 1;
    size_t outLeft = sizeof out;
    iconv(cd, nullptr, nullptr, nullptr, nullptr);
    if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<size_t>(-1))
        return kUnmappable;
    if (sizeof out - outLeft != 4)
        return -2;
    return out[0] | out[1] << 8 | out[2] << 16 | out[3] << 24;
}

class IsoUpperHalf : public testing::TestWithParam<int> {};

TEST_P(IsoUpperHalf, MatchesTheSystemIconvOutsideTheLibrarysOwnPositions) {
    const int page = GetParam();
    const std::string charset = "ISO-8859-" + std::to_string(page);
    const iconv_t cd = iconv_open("UTF-32LE", charset.c_str());
    if (cd == reinterpret_cast<iconv_t>(-1))
        GTEST_SKIP() << "iconv does not know " << charset;
    for (int code = 0xA0; code <= 0xFF; ++code) {
        if (IsDeparture(page, code))
            continue;
        EXPECT_EQ(MapPageCodeToUnicodeRune(page, code), IconvRune(cd, code))
            << charset << " byte 0x" << std::hex << code;
    }
    iconv_close(cd);
}

INSTANTIATE_TEST_SUITE_P(Parts, IsoUpperHalf,
                         testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 14, 15),
                         [](const testing::TestParamInfo<int>& info) {
                             return "Iso8859_" + std::to_string(info.param);
                         });

TEST(CodePageMapping, HoldsTheLibrarysOwnValuesAndKnownCodePoints) {
    const Departure known[] = {
        {2, 0xA1, 0x0104},      {1, 0xA0, 0x00A0},      {1, 0xFF, 0x00FF},       {5, 0xB0, 0x0410},
        {15, 0xA4, 0x20AC},     {13, 0xFF, 0x2019},     {11, 0xA1, 0x0E01},      {8, 0xFA, 0x05EA},
        {3, 0xA5, kUnmappable}, {6, 0xA1, kUnmappable}, {11, 0xDB, kUnmappable},
    };
    auto check = [](const Departure& d) {
        EXPECT_EQ(MapPageCodeToUnicodeRune(d.page, d.code), d.rune)
            << "page " << d.page << " code 0x" << std::hex << d.code;
    };
    for (const Departure& d : kDepartures)
        check(d);
    for (const Departure& d : known)
        check(d);
}

TEST(CodePageMapping, RowTwelveMapsNothing) {
    for (int code = 160; code <= 255; ++code)
        EXPECT_EQ(MapPageCodeToUnicodeRune(12, code), kUnmappable) << code;
}

TEST(CodePageMapping, PrintableAsciiIgnoresThePage) {
    for (int page : kSomePages) {
        for (int code = 32; code <= 126; ++code)
            EXPECT_EQ(MapPageCodeToUnicodeRune(page, code), code) << page << " " << code;
        EXPECT_EQ(MapPageCodeToUnicodeRune(page, 0x7F), kUnmappable) << page;
    }
}

TEST(CodePageMapping, CodesOutsideBothHalvesGiveMinusOneOnEveryPage) {
    const int extraCodes[] = {INT_MIN, -1, 256, 1000, INT_MAX};
    for (int page : kSomePages) {
        for (int code = 0; code <= 31; ++code)
            EXPECT_EQ(MapPageCodeToUnicodeRune(page, code), -1) << page << " " << code;
        for (int code = 128; code <= 159; ++code)
            EXPECT_EQ(MapPageCodeToUnicodeRune(page, code), -1) << page << " " << code;
        for (int code : extraCodes)
            EXPECT_EQ(MapPageCodeToUnicodeRune(page, code), -1) << page << " " << code;
    }
}

TEST(CodePageMapping, PageZeroUpperHalfReadsTheAsciiRowShiftedDown) {
    // Callers get code 160 + i read from the ASCII row at i: 0xA0 is a space, 0xFF unmappable.
    for (int code = 160; code <= 254; ++code)
        EXPECT_EQ(MapPageCodeToUnicodeRune(0, code), code - 128) << code;
    EXPECT_EQ(MapPageCodeToUnicodeRune(0, 255), kUnmappable);
}

TEST(CodePageMapping, PagesWithoutARowMapNoUpperHalfCode) {
    for (int page : kPagesWithoutRow)
        for (int code = 160; code <= 255; ++code)
            EXPECT_EQ(MapPageCodeToUnicodeRune(page, code), kUnmappable) << page << " " << code;
}

}  // namespace
