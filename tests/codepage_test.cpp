#include <korx/KORXString.h>

#include <gtest/gtest.h>

#include <iconv.h>

#include <climits>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

constexpr int kUnmappable = 0xFFFF;

// (page, code) positions where the table keeps the library's own value, not the published one.
const std::map<std::pair<int, int>, int> kDepartures = {
    {{7, 0xB4}, 0x00B4},      {{7, 0xB7}, 0x0387},      {{8, 0xAF}, 0x203E},
    {{8, 0xB7}, 0x2022},      {{8, 0xFD}, kUnmappable}, {{8, 0xFE}, kUnmappable},
    {{11, 0xA0}, kUnmappable}};

// iconv's code point for one byte: 0xFFFF when it refuses it, -2 when it gives not exactly one.
int IconvRune(iconv_t cd, int code) {
    char in = static_cast<char>(code);
    unsigned char out[16];
    char* inPtr = &in;
    char* outPtr = reinterpret_cast<char*>(out);
    size_t inLeft = 1;
    size_t outLeft = sizeof out;
    if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<size_t>(-1))
        return kUnmappable;
    return sizeof out - outLeft != 4 ? -2 : out[0] | out[1] << 8 | out[2] << 16 | out[3] << 24;
}

class IsoUpperHalf : public testing::TestWithParam<int> {};

TEST_P(IsoUpperHalf, MatchesTheSystemIconvOutsideTheLibrarysOwnPositions) {
    const int page = GetParam();
    const std::string charset = "ISO-8859-" + std::to_string(page);
    const iconv_t cd = iconv_open("UTF-32LE", charset.c_str());
    if (cd == reinterpret_cast<iconv_t>(-1))
        GTEST_SKIP() << "iconv does not know " << charset;
    for (int code = 0xA0; code <= 0xFF; ++code) {
        if (kDepartures.count({page, code}) == 0) {
            EXPECT_EQ(MapPageCodeToUnicodeRune(page, code), IconvRune(cd, code))
                << charset << " byte 0x" << std::hex << code;
        }
    }
    iconv_close(cd);
}

INSTANTIATE_TEST_SUITE_P(Iso8859, IsoUpperHalf,
                         testing::Values(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13, 14, 15),
                         testing::PrintToStringParamName());

// The library's own values, and some published ones that hold whether or not iconv knows a page.
TEST(CodePageMapping, HoldsTheLibrarysOwnValuesAndKnownCodePoints) {
    std::map<std::pair<int, int>, int> known = {
        {{1, 0xFF}, 0x00FF},  {{2, 0xA1}, 0x0104},      {{5, 0xB0}, 0x0410},
        {{15, 0xA4}, 0x20AC}, {{13, 0xFF}, 0x2019},     {{11, 0xA1}, 0x0E01},
        {{8, 0xFA}, 0x05EA},  {{3, 0xA5}, kUnmappable}, {{11, 0xDB}, kUnmappable}};
    known.insert(kDepartures.begin(), kDepartures.end());
    for (const auto& [at, rune] : known)
        EXPECT_EQ(MapPageCodeToUnicodeRune(at.first, at.second), rune)
            << "page " << at.first << " code 0x" << std::hex << at.second;
}

// Printable ASCII ignores the page and codes outside both halves give -1 on every page; pages
// without a row, and row 12, map no upper-half code. Callers get page 0's upper half read from
// the ASCII row shifted down: 0xA0 is a space, 0xFF unmappable.
TEST(CodePageMapping, RulesAroundTheIsoRows) {
    const std::vector<int> every = {INT_MIN, -1, 0, 1, 5, 8, 12, 15, 16, 100, INT_MAX};
    const std::vector<int> noRow = {INT_MIN, -1, 12, 16, 100, INT_MAX};
    // pages, codes first .. last, result; with addCode the result is code + result
    const std::tuple<std::vector<int>, int, int, int, bool> spans[] = {
        {every, 32, 126, 0, true},     {every, 127, 127, kUnmappable, false},
        {every, -1, 31, -1, false},    {every, INT_MIN, INT_MIN, -1, false},
        {every, 128, 159, -1, false},  {every, INT_MAX, INT_MAX, -1, false},
        {every, 256, 1000, -1, false}, {noRow, 160, 255, kUnmappable, false},
        {{0}, 160, 254, -128, true},   {{0}, 255, 255, kUnmappable, false}};
    for (const auto& [pages, first, last, result, addCode] : spans)
        for (const int page : pages)
            for (long long code = first; code <= last; ++code)
                EXPECT_EQ(MapPageCodeToUnicodeRune(page, static_cast<int>(code)),
                          addCode ? code + result : result)
                    << "page " << page << " code " << code;
}

}  // namespace
