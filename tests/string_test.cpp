#include <korx/KORXString.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <clocale>
#include <iterator>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace {

using Units = std::basic_string<KORXWChar>;

Units W(const std::u16string& text) { return Units(text.begin(), text.end()); }
KORXString U(const std::u16string& text) { return KORXString(W(text).c_str()); }

// A string's text and byte form; "(none)" when it has no buffer.
std::u16string Text(const KORXWChar* p) {
    return p == nullptr ? u"(none)" : std::u16string(p, p + Units(p).size());
}
std::string Bytes(const char* p) { return p == nullptr ? "(none)" : p; }

template <class Unit> std::string Printable(const Unit* text) {
    char* out = nullptr;
    const int n = WcharToPrintable(text, out);
    const std::string bytes(out, static_cast<size_t>(n));
    delete[] out;
    return bytes;
}

// Switches one locale category for a test, then restores "C", the locale tests run in.
struct LocaleGuard {
    int category;
    bool ok;
    LocaleGuard(int c, const char* name) : category(c), ok(std::setlocale(c, name) != nullptr) {}
    ~LocaleGuard() { std::setlocale(category, "C"); }
};

// Read by a static initialiser of this file: the shared constants must be ready by then.
const std::string g_yesAtStartup = static_cast<const char*>(KORX_YES);

// The scalar codecs the bulk conversions must agree with; ScalarEncode writes units pos .. end - 1
// (a high surrogate at end - 1 takes the unit at end with it).
unsigned int OrReplacement(unsigned int cp) { return cp == KORX_UTF_INVALID ? 0xFFFD : cp; }

std::u16string ScalarDecode(const std::string& bytes) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    std::u16string text;
    unsigned short units[2];
    for (int pos = 0; const unsigned int cp = Utf8Next(p, static_cast<int>(bytes.size()), pos);)
        text.append(units, units + emitUtf16(OrReplacement(cp), units));
    return text;
}

std::string ScalarEncode(const Units& units, int pos, int end) {
    std::string bytes;
    unsigned char out[4];
    while (pos < end)
        bytes.append(out, out + emitUtf8(OrReplacement(wcharNext(units.c_str(), end, pos)), out));
    return bytes;
}

}  // namespace

// Utf8Next leaves a bad continuation byte for the next call, consumes an encoded surrogate whole
// and lets overlong forms and values above U+10FFFF pass (readers of old files rely on it); a 0
// code point ends WcharLength's count. Utf16Next reads the low half of a pair at index n.
TEST(Decoding, CodePointUnitsConsumedAndUnitCount) {
    const unsigned int X = KORX_UTF_INVALID;
    // bytes, n, Utf8Next's code point and position after it, WcharLength of the n bytes
    const std::tuple<const char*, int, unsigned int, int, int> cases[] = {
        {"\xC3\xA9", 2, 0xE9, 2, 1},   {"\xF0\x90\x80\x80", 4, 0x10000, 4, 2},
        {"\xC3\x28", 2, X, 1, -1},     {"\xF8\x88\x80\x80\x80", 5, X, 1, -1},
        {"\xE2\x82\xAC", 2, X, 2, -1}, {"\x80", 1, X, 1, -1},
        {"\xED\xA0\x80", 3, X, 3, -1}, {"\xF4\x90\x80\x80", 4, 0x110000, 4, 2},
        {"\xC0\xAF", 2, 0x2F, 2, 1},   {"A", 0, 0, 0, 0},
        {"\xC0\x80z", 3, 0, 2, 0}};
    for (const auto& [bytes, n, cp, pos, units] : cases) {
        SCOPED_TRACE(bytes);
        const auto* p = reinterpret_cast<const unsigned char*>(bytes);
        int at = 0;
        EXPECT_EQ(Utf8Next(p, n, at), cp);
        EXPECT_EQ(at, pos);
        EXPECT_EQ(WcharLength(p, n), units);
    }
    const std::tuple<std::vector<unsigned short>, int, unsigned int, int> utf16[] = {
        {{0xD83D, 0xDE00, 0}, 1, 0x1F600, 2},
        {{0xD83D, 0x61, 0}, 2, X, 1},
        {{0xDE00, 0x61, 0}, 2, X, 1},
        {{0xD83D, 0}, 1, X, 1},
        {{0x61, 0}, 0, 0, 0}};
    for (const auto& [units, n, cp, pos] : utf16) {
        int at = 0;
        EXPECT_EQ(Utf16Next(units.data(), n, at), cp);
        EXPECT_EQ(at, pos);
    }
}

// emitUtf8 writes U+FFFD for surrogates, noncharacters and values above U+10FFFF. emitUtf16
// checks nothing: callers rely on its wrap above U+10FFFF. Utf8Length and GetLengthInChar count
// what emitUtf8 writes, but give -1 for a lone surrogate; a pair cut by maxUnits counts whole.
TEST(Utf8Encoding, ReplacesWhatUtf8MustNotCarryAndMeasuresAsItWrites) {
    const std::string bad = "\xEF\xBF\xBD";
    const std::tuple<unsigned int, std::string, std::u16string> cases[] = {
        {0x7FF, "\xDF\xBF", u"\u07FF"},
        {0x800, "\xE0\xA0\x80", u"\u0800"},
        {0xFDCF, "\xEF\xB7\x8F", u"\uFDCF"},
        {0xFDD0, bad, u"\uFDD0"},
        {0xFDEF, bad, u"\uFDEF"},
        {0xFFFE, bad, u"\uFFFE"},
        {0xFFFF, bad, u"\uFFFF"},
        {0xD800, bad, u"\xD800"},
        {0xDC00, bad, u"\xDC00"},
        {0x10FFFF, "\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {0x110000, bad, u"\U00010000"}};
    for (const auto& [cp, bytes, units] : cases) {
        SCOPED_TRACE(cp);
        unsigned char out[4];
        EXPECT_EQ(std::string(out, out + emitUtf8(cp, out)), bytes);
        unsigned short wide[2];
        EXPECT_EQ(std::u16string(wide, wide + emitUtf16(cp, wide)), units);
        if (cp <= 0x10FFFF) {
            const int length = cp >= 0xD800 && cp <= 0xDFFF ? -1 : static_cast<int>(bytes.size());
            EXPECT_EQ(Utf8Length(W(units).c_str(), 0), length);
            EXPECT_EQ(U(units).GetLengthInChar(), length);
        }
    }
    EXPECT_EQ(Utf8Length(W(u"ab\U0001F600c").c_str(), 3), 6);
    EXPECT_EQ(Utf8Length(static_cast<const KORXWChar*>(nullptr), 0), 0);
}

TEST(StringConversion, AgreesWithTheScalarCodecsOnRandomText) {
    std::mt19937 random(7);
    const std::string pieces[] = {"\xC3\xA9", "\xE4\xB8\xAD",     "\xF0\x9F\x98\x80",
                                  "\xC3",     "\xE4\xB8",         "\xF0\x9F\x98",
                                  "\x80",     "\xBF\xBF",         "\xF8",
                                  "\xFF",     "\xED\xA0\x80",     "\xC0\xAF",
                                  "\xC0\x80", "\xF4\x90\x80\x80", "\xEF\xBF\xBF",
                                  "\xC3\x28"};
    for (int round = 0; round < 4000; ++round) {
        std::string bytes;
        for (int parts = 1 + static_cast<int>(random() % 6); parts > 0; --parts) {
            for (int i = static_cast<int>(random() % 40); i > 0; --i)  // every alignment
                bytes += static_cast<char>(1 + random() % 127);
            bytes += pieces[random() % std::size(pieces)];
        }
        SCOPED_TRACE(round);
        const KORXString s(bytes.c_str());
        ASSERT_EQ(Text(s), ScalarDecode(bytes));

        // Back to UTF-8, from a text that may also hold lone surrogates.
        Units units = W(Text(s));
        if (round % 3 == 0 && !units.empty())
            units[random() % units.size()] = static_cast<KORXWChar>(0xD800 + random() % 0x800);
        const KORXString wide(units.c_str());
        const int length = Utf8Length(units.c_str(), 0);
        ASSERT_EQ(wide.GetLengthInChar(), length);
        ASSERT_EQ(wide.length(), static_cast<int>(units.size()));
        ASSERT_EQ(Bytes(wide),
                  length < 0 ? "" : ScalarEncode(units, 0, static_cast<int>(units.size())));
    }
}

// Wide text made directly: runs of units of every kind at every alignment, long enough for the
// bulk paths of the byte form and of getChars.
TEST(StringConversion, EncodesRandomWideTextAsTheScalarCodecsDo) {
    std::mt19937 random(11);
    // Each side of every size step, noncharacters and their neighbours, pairs; last, 5 ill-formed.
    const std::u16string pieces[] = {u"\x7F",       u"\x80",       u"\xE9",
                                     u"\x7FF",      u"\x800",      u"\x4E2D",
                                     u"\xD7FF",     u"\xE000",     u"\xFDCF",
                                     u"\xFDD0",     u"\xFDEF",     u"\xFDF0",
                                     u"\xFEFF",     u"\xFF0C",     u"\xFFBF",
                                     u"\xFFC0",     u"\xFFFD",     u"\xFFFE",
                                     u"\xFFFF",     u"\U0001F600", u"\U00010000",
                                     u"\U0010FFFF", u"\xD800",     u"\xDBFF",
                                     u"\xDC00",     u"\xDFFF",     u"\xD800\U00010000"};
    for (int round = 0; round < 3000; ++round) {
        Units units;
        const size_t choices = std::size(pieces) - (round % 4 == 0 ? 0 : 5);
        const int maxAscii = round % 3 == 0 ? 40 : 6;
        for (int parts = 1 + static_cast<int>(random() % 16); parts > 0; --parts) {
            for (int i = static_cast<int>(random() % maxAscii); i > 0; --i)
                units += static_cast<KORXWChar>(1 + random() % 127);
            for (int i = 1 + static_cast<int>(random() % 6); i > 0; --i)
                units += W(pieces[random() % choices]);
        }
        SCOPED_TRACE(round);
        const int n = static_cast<int>(units.size());
        const KORXString s(units.c_str());
        const int length = Utf8Length(units.c_str(), 0);
        ASSERT_EQ(s.GetLengthInChar(), length);
        ASSERT_EQ(Bytes(s), length < 0 ? "" : ScalarEncode(units, 0, n));

        // A range into a destination of exactly the size getChars asks for.
        const int begin = static_cast<int>(random() % n);
        const int end = begin + 1 + static_cast<int>(random() % (n - begin));
        const char untouched = '\xFF';  // never in UTF-8
        std::vector<char> dst(static_cast<size_t>(3 * (end - begin) + 3), untouched);
        s.getChars(begin, end, dst.data(), 0);
        std::string expected;
        if (units[begin] < 0xDC00 || units[begin] > 0xDFFF)
            expected = ScalarEncode(units, begin, end);
        else if (begin > 0 && units[begin - 1] >= 0xD800 && units[begin - 1] <= 0xDBFF)
            expected = ScalarEncode(units, begin - 1, end);
        ASSERT_EQ(std::string(dst.data()), expected);
        ASSERT_EQ(std::count(dst.begin(), dst.end(), untouched),
                  static_cast<long>(dst.size() - expected.size() - 1));
    }
}

// Long texts are measured in blocks: a pair or a lone surrogate across the boundaries of any
// power-of-two block size counts as it does anywhere else.
TEST(StringConversion, MeasuresLongTextsAcrossBlocks) {
    for (const KORXWChar background : {KORXWChar('a'), KORXWChar(0x4E2D)}) {
        for (const int at : {4095, 8191, 8192, 16383, 16384}) {
            for (const Units& insert : {W(u"\U0001F600"), W(u"\xDC00"), W(u"\xD800")}) {
                Units units(20000, background);
                units.replace(static_cast<size_t>(at), insert.size(), insert);
                SCOPED_TRACE(at);
                const KORXString s(units.c_str());
                const int length = Utf8Length(units.c_str(), 0);
                EXPECT_EQ(length < 0, insert.size() == 1);
                EXPECT_EQ(s.GetLengthInChar(), length);
                EXPECT_EQ(Bytes(s), length < 0 ? "" : ScalarEncode(units, 0, 20000));
            }
        }
    }
}

// The text every maker and derivation gives, "(none)" where the result holds no buffer at all.
TEST(StringMaking, ExactTextAndNoBufferWhereNothingIsLeft) {
    const KORXString s("abcdef");
    const KORXString none;
    const KORXString empty = U(u"");
    const std::string longMin = std::to_string(LONG_MIN);
    const char* noFormat = nullptr;
    const std::pair<KORXString, std::u16string> cases[] = {
        {KORXString(static_cast<const char*>(nullptr)), u"(none)"},
        {KORXString(""), u""},
        // Formatting keeps bufferSize - 1 bytes (on the heap above 1024) and decodes them.
        {KORXString(4, "%s", "abc"), u"abc"},
        {KORXString(4, "%s", "ab\xC3\xA9"), u"ab\uFFFD"},
        {KORXString(-5, "%s", "abc"), u""},
        {KORXString(1100, "%s", std::string(1200, 'x').c_str()), std::u16string(1099, u'x')},
        {KORXString(1024, "%d-%s", 42, "caf\xC3\xA9"), u"42-caf\u00E9"},
        {KORXString(1024, "a%cb", 0), u"a"},  // a formatted 0 byte ends the text
        {KORXString(1024, noFormat, 0), u"(none)"},
        {KORXString::valueOf(-42), u"-42"},
        {KORXString::valueOf(LONG_MIN), std::u16string(longMin.begin(), longMin.end())},
        {KORXString::valueOf(1.5), u"1.500000"},
        {KORXString::valueOf(0.25f), u"0.250000"},
        {KORXString::valueOf(true), u"true"},
        {KORXString::valueOf(W(u"abcdef").c_str(), 2, 3), u"cde"},
        {KORXString::valueOf(W(u"abc").c_str(), 1, 10), u"bc"},  // the terminator ends it
        {KORXString::valueOf(W(u"abc").c_str(), 1, 0), u"(none)"},
        {s.substring(1, 3), u"bc"},
        {s.substring(4), u"ef"},
        {s.substring(2, 2), u"(none)"},
        {s.substring(2, 7), u"(none)"},
        {s.substring(-1, 2), u"(none)"},
        {s + KORXString("gh"), u"abcdefgh"},
        {empty.concat(s), u"abcdef"},
        {s.concat(empty), u"abcdef"},
        {empty.concat(empty), u"(none)"},
        {s.replace('f', 'x'), u"abcdex"},
        {s.replace('a', 0), u"(none)"},
        {KORXString(" \t a b \n").trim(), u"a b"},
        {KORXString(" \t\n ").trim(), u"(none)"},
        {KORXString("aB1\xF0\x9F\x98\x80").toUpperCase(), u"AB1\U0001F600"},
        {KORXString("aB1").toLowerCase(), u"ab1"},
        {none.toLowerCase(), u"(none)"}};
    for (const auto& [result, text] : cases)
        EXPECT_EQ(Text(result), text);
    for (const KORXString* nothing : {&none, &empty}) {
        EXPECT_EQ(Bytes(*nothing), nothing == &none ? "(none)" : "");
        EXPECT_EQ(nothing->length() | nothing->GetLengthInChar() | nothing->charAt(0), 0);
        EXPECT_TRUE(nothing->isWhitespace());
    }
    EXPECT_TRUE(KORXString(" \t\r\n").isWhitespace());
    EXPECT_FALSE(KORXString(" a ").isWhitespace());
}

#if KORX_WCHAR_IS_UTF32
TEST(StringMaking, TakesUtf32WideText) {
    const wchar_t units[] = {0x1F600, 0xD800, 0x110000, 'z', 0};
    EXPECT_EQ(Text(KORXString(units)), u"\U0001F600\uFFFD\uFFFDz");
    EXPECT_EQ(Text(KORXString::valueOf(L'\U0001F600')), u"\U0001F600");
    EXPECT_EQ(Text(KORXString::valueOf(L"abc\U0001F600", 1, 5)), u"bc\U0001F600");
    EXPECT_EQ(Utf8Length(L"\U0001F600x", 1), 4);
    int pos = 0;
    EXPECT_EQ(wcharNext(units, 3, pos), 0x1F600u);
    EXPECT_EQ(wcharNext(units, 3, pos), KORX_UTF_INVALID);
    EXPECT_EQ(wcharNext(units, 3, pos), KORX_UTF_INVALID);
    EXPECT_EQ(Printable(L"b\n"), "b\r\n");
}
#endif

// A byte form made before the text changed goes stale; these rules decide who sees it.
TEST(StringByteForm, CopiesAssignmentsAndConstantsFollowTheCacheRules) {
    KORXString source("abc");
    ASSERT_EQ(Bytes(source), "abc");
    source[0] = 'X';
    EXPECT_EQ(Bytes(KORXString(source)), "Xbc");  // a copy gets no byte form: builds its own
    KORXString withForm("old"), withoutForm("old"), formless("old"), fromConstant("old");
    for (const KORXString* s : {&withForm, &formless, &fromConstant})
        Bytes(*s);
    withForm = source;             // had one: takes the source's
    withoutForm = source;          // had none: builds its own
    formless = KORXString("new");  // the source has none: neither has this any more
    fromConstant = KORX_FALSE;     // a constant has one from the start
    EXPECT_EQ(Bytes(withForm), "abc");
    EXPECT_EQ(Bytes(withoutForm), "Xbc");
    EXPECT_EQ(Bytes(formless), "new");
    EXPECT_EQ(Bytes(fromConstant), "False");
    EXPECT_EQ(Bytes(source), "abc");  // kept, not rebuilt

    // The shared constants hold both forms from the start.
    EXPECT_EQ(g_yesAtStartup, "Yes");
    const std::pair<const KORXString*, std::string> constants[] = {
        {&KORX_YES, "Yes"},     {&KORX_NO, "No"}, {&KORX_TRUE, "True"},
        {&KORX_FALSE, "False"}, {&KORX_ON, "On"}, {&KORX_OFF, "Off"}};
    for (const auto& [constant, text] : constants) {
        EXPECT_EQ(Bytes(*constant), text);
        EXPECT_EQ(Text(*constant), std::u16string(text.begin(), text.end()));
        EXPECT_EQ(constant->length(), static_cast<int>(text.size()));
    }
}

// Callers rely on the byte getChars never writing half a pair: a range from a low surrogate
// backs up to its high one or writes nothing, one ending after a high one takes the low one.
TEST(StringGetChars, ClampTheRangeAndNeverSplitAPairIntoBytes) {
    const KORXString s = U(u"\xDC00q\U0001F600x\xDC00z");  // DC00 q D83D DE00 x DC00 z
    const std::tuple<int, int, std::string, std::u16string> cases[] = {
        {0, 99, "", u"\xDC00q\U0001F600x\xDC00z"},
        {1, 99, "q\xF0\x9F\x98\x80x\xEF\xBF\xBDz", u"q\U0001F600x\xDC00z"},
        {3, 5, "\xF0\x9F\x98\x80x", u"\xDE00x"},
        {1, 3, "q\xF0\x9F\x98\x80", u"q\xD83D"},
        {5, 7, "", u"\xDC00z"},
        {-1, 3, "", u""}};
    for (const auto& [begin, end, bytes, units] : cases) {
        SCOPED_TRACE(begin);
        std::string narrow(32, '#');
        Units wide(32, '#');
        s.getChars(begin, end, narrow.data(), 1);
        s.getChars(begin, end, wide.data(), 1);
        EXPECT_EQ(narrow.c_str(), "#" + bytes);
        EXPECT_EQ(wide.c_str(), W(u"#" + units));
    }
}

// Units compare unsigned. A string without a buffer sorts first, before an empty one.
TEST(StringComparison, UnsignedUnitsAndMissingBuffers) {
    const KORXString none;
    const KORXString empty = U(u"");
    const KORXString zero(KORXWChar(0));
    // a, b, compareTo, compareToIgnoreCase
    const std::tuple<KORXString, KORXString, int, int> cases[] = {
        {"abc", "abd", -1, -1}, {"abc", "ab", 1, 1},       {"abc", "abc", 0, 0}, {"a", "B", 1, -1},
        {"ABC", "abc", -1, 0},  {U(u"\uFFFF"), "a", 1, 1}, {empty, "a", -1, -1}, {"a", none, 1, 1},
        {none, none, 0, 0},     {empty, none, 1, 1},       {zero, empty, 0, 0}};
    for (const auto& [a, b, order, orderIgnoringCase] : cases) {
        SCOPED_TRACE(Bytes(a) + " " + Bytes(b));
        EXPECT_EQ(a.compareTo(b), order);
        EXPECT_EQ(a.compareToIgnoreCase(b), orderIgnoringCase);
        EXPECT_EQ(a.equals(b), order == 0);
        EXPECT_EQ(a.equalsIgnoreCase(b), orderIgnoringCase == 0);
    }
    EXPECT_EQ(KORXString("ab").hashCode(), 3299u);
    EXPECT_EQ(U(u"\uFFFF").hashCode(), 0xFFFFu);
    EXPECT_EQ(none.hashCode(), 0u);
}

// Callers rely on an empty prefix never matching, and on a text one unit longer than the string
// counting as its ending.
TEST(StringSearch, BoundsOfEverySearch) {
    const KORXString s("abcabc");
    const KORXString abc("abc");
    const std::tuple<const char*, int, int> cases[] = {
        {"indexOf c", s.indexOf('a'), 0},
        {"indexOf c from last", s.indexOf('c', 5), 5},
        {"indexOf c negative", s.indexOf('a', -1), -1},
        {"indexOf s", s.indexOf(KORXString("ca")), 2},
        {"indexOf s from", s.indexOf(abc, 3), 3},
        {"indexOf empty s", s.indexOf(KORXString("")), -1},
        {"lastIndexOf c", s.lastIndexOf('c'), 5},
        {"lastIndexOf c from", s.lastIndexOf('a', 2), 0},
        {"lastIndexOf c from end", s.lastIndexOf('c', 6), -1},
        {"lastIndexOf s", s.lastIndexOf(KORXString("c")), 5},
        {"lastIndexOf s from", s.lastIndexOf(abc, 2), 0},
        {"lastIndexOf s longer", s.lastIndexOf(KORXString("abcabcx")), -1},
        {"lastIndexOf empty s", s.lastIndexOf(KORXString("")), -1},
        {"lastIndexOfAfter", s.lastIndexOfAfter('a', 0), 3},
        {"lastIndexOfAfter none left", s.lastIndexOfAfter('a', 3), -1},
        {"lastIndexOfAfter negative", s.lastIndexOfAfter('a', -1), -1},
        {"startsWith", s.startsWith(KORXString("ab")), 1},
        {"startsWith from", s.startsWith(KORXString("ca"), 2), 1},
        {"startsWith past fit", s.startsWith(abc, 4), 0},
        {"startsWith negative", s.startsWith(KORXString("a"), -3), 0},
        {"startsWith empty prefix", s.startsWith(KORXString("")), 0},
        {"endsWith", s.endsWith(KORXString("bc")), 1},
        {"endsWith not", s.endsWith(KORXString("ab")), 0},
        {"endsWith one longer", s.endsWith(KORXString("xabcabc")), 1},
        {"endsWith two longer", s.endsWith(KORXString("xxabcabc")), 0},
        {"endsWith empty", s.endsWith(KORXString("")), 0},
        {"endsWith unit", s.endsWith(KORXWChar('c')), 1},
        {"endsWith unit in empty", KORXString("").endsWith(KORXWChar(0)), 0},
        {"charAt last", s.charAt(5), 'c'},
        {"charAt past the end", s.charAt(20), 0},
        {"charAt negative", s.charAt(-1), 0}};
    for (const auto& [what, actual, expected] : cases)
        EXPECT_EQ(actual, expected) << what;
}

TEST(StringMaking, CaseMappingFollowsTheCLocale) {
    LocaleGuard ctype(LC_CTYPE, "C.UTF-8");
    if (!ctype.ok)
        GTEST_SKIP() << "no C.UTF-8 locale";
    EXPECT_EQ(Text(U(u"\u00C9t\u00C9").toLowerCase()), u"\u00E9t\u00E9");
    EXPECT_EQ(Text(U(u"\u00E9").toUpperCase()), u"\u00C9");
    EXPECT_EQ(Text(U(u"\u3000a\u3000").trim()), u"a");  // ideographic space
}

// A final 10 becomes 13 10; text the locale cannot write goes one byte per unit, '_' from 127 on.
TEST(WcharToPrintable, FixesTheLineEndAndFallsBackToOneBytePerUnit) {
    const std::tuple<const char*, std::u16string, std::string> cases[] = {
        {"C", u"\n", "\r\n"},          {"C", u"caf\u00E9\n", "caf_\r\n"},
        {"C", u"a\r\n", "a\r\n"},      {"C", u"\u00E9~\u007F", "_~_"},
        {"C.UTF-8", u"a\xD800", "a_"}, {"C.UTF-8", u"caf\u00E9", "caf\xC3\xA9"}};
    for (const auto& [locale, text, bytes] : cases) {
        LocaleGuard ctype(LC_CTYPE, locale);
        if (ctype.ok) {  // C.UTF-8 where installed
            EXPECT_EQ(Printable(W(text).c_str()), bytes) << locale;
        }
    }
}

TEST(KORXLocale, SwitchesTheNumericLocaleToCAndBackWithOneSlot) {
    LocaleGuard numeric(LC_NUMERIC, "C.UTF-8");
    if (!numeric.ok)
        GTEST_SKIP() << "no C.UTF-8 locale";
    KORXLocale::SetNumericC();
    KORXLocale::RestoreNumeric();
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C.UTF-8");
    EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C");  // no other category changes

    KORXLocale::SetNumericC();
    KORXLocale::SetNumericC();  // calls do not nest: "C" is saved over the first name
    KORXLocale::RestoreNumeric();
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    std::setlocale(LC_NUMERIC, "C.UTF-8");
    KORXLocale::RestoreNumeric();  // nothing saved: nothing changes
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C.UTF-8");
}
