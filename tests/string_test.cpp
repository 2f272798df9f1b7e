#include <korx/KORXString.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <clocale>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

using Units = std::basic_string<KORXWChar>;

Units W(const char16_t* text) {
    Units units;
    for (; *text != 0; ++text)
        units += static_cast<KORXWChar>(*text);
    return units;
}

KORXString U(const char16_t* text) { return KORXString(W(text).c_str()); }

std::u16string Text(const KORXString& s) {
    const KORXWChar* p = s;
    std::u16string text;
    for (; p != nullptr && *p != 0; ++p)
        text += static_cast<char16_t>(*p);
    return text;
}

std::string Bytes(const char* p, size_t n) { return std::string(p, n); }

bool IsHighSurrogate(KORXWChar unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool IsLowSurrogate(KORXWChar unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

std::u16string Ascii(const std::string& text) { return std::u16string(text.begin(), text.end()); }

// Restores one locale category when the test ends; false when the locale is not installed.
class LocaleGuard {
public:
    LocaleGuard(int category, const char* name) : m_category(category) {
        m_saved = std::setlocale(category, nullptr);
        m_ok = std::setlocale(category, name) != nullptr;
    }
    ~LocaleGuard() { std::setlocale(m_category, m_saved.c_str()); }
    bool ok() const { return m_ok; }

private:
    int m_category;
    std::string m_saved;
    bool m_ok;
};

// Read by a static initialiser of this file: the shared constants must be ready by then.
const std::string g_yesAtStartup = static_cast<const char*>(KORX_YES);

// The scalar paths the bulk conversions must agree with.
std::u16string ScalarDecode(const std::string& bytes) {
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const int n = static_cast<int>(bytes.size());
    std::u16string text;
    int pos = 0;
    while (pos < n) {
        unsigned int cp = Utf8Next(p, n, pos);
        if (cp == 0)
            break;
        unsigned short units[2];
        const int k = emitUtf16(cp == KORX_UTF_INVALID ? 0xFFFD : cp, units);
        text.append(units, units + k);
    }
    return text;
}

// Units pos .. end - 1; a high surrogate at end - 1 takes the unit at end with it.
std::string ScalarEncode(const Units& units, int pos, int end) {
    std::string bytes;
    while (pos < end) {
        unsigned int cp = wcharNext(units.c_str(), end, pos);
        unsigned char out[4];
        const int k = emitUtf8(cp == KORX_UTF_INVALID ? 0xFFFD : cp, out);
        bytes.append(reinterpret_cast<char*>(out), static_cast<size_t>(k));
    }
    return bytes;
}

}  // namespace

TEST(Utf8Decoding, ReturnsCodePointAndAdvancesPastWhatItConsumed) {
    struct Case {
        const char* bytes;
        int n;
        unsigned int cp;
        int pos;
    };
    const Case cases[] = {
        {"A", 1, 'A', 1},
        {"\xC3\xA9", 2, 0xE9, 2},
        {"\xF0\x9F\x98\x80", 4, 0x1F600, 4},
        {"\xC3\x28", 2, KORX_UTF_INVALID, 1},  // the bad continuation byte stays
        {"\xE2\x28\xA1", 3, KORX_UTF_INVALID, 1},
        {"\xE2\x82\xAC", 2, KORX_UTF_INVALID, 2},  // cut short by n
        {"\xED\xA0\x80", 3, KORX_UTF_INVALID, 3},  // an encoded surrogate, consumed whole
        {"\x80", 1, KORX_UTF_INVALID, 1},          // stray continuation byte
        {"\xF8\x88\x80\x80\x80", 5, KORX_UTF_INVALID, 1},
        {"\xFF", 1, KORX_UTF_INVALID, 1},
        {"\xC0\xAF", 2, 0x2F, 2},              // overlong forms pass
        {"\xF4\x90\x80\x80", 4, 0x110000, 4},  // so do values above U+10FFFF
        {"\xF7\xBF\xBF\xBF", 4, 0x1FFFFF, 4},
        {"A", 0, 0, 0},  // at the end
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        int pos = 0;
        EXPECT_EQ(Utf8Next(reinterpret_cast<const unsigned char*>(c.bytes), c.n, pos), c.cp);
        EXPECT_EQ(pos, c.pos);
    }
}

TEST(Utf8Decoding, MalformedSequencesBecomeReplacementCharacters) {
    struct Case {
        const char* bytes;
        std::u16string text;
        int units;  // WcharLength
    };
    const Case cases[] = {
        {"", u"", 0},
        {"\xC3\x28", u"\uFFFD(", -1},
        {"\xED\xA0\x80", u"\uFFFD", -1},
        {"\xF0\x9F\x98\x80", u"\U0001F600", 2},
        {"\xF0\x9F\x98", u"\uFFFD", -1},
        {"a\x80\x80z", u"a\uFFFD\uFFFDz", -1},
        {"\xF4\x90\x80\x80", u"\U00010000", 2},  // emitUtf16 wraps what the decoder lets pass
        {"a\xC0\x80z", u"a", 1},                 // an overlong zero ends the text
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        EXPECT_EQ(Text(KORXString(c.bytes)), c.text);
        EXPECT_EQ(Text(KORXString(reinterpret_cast<const unsigned char*>(c.bytes))), c.text);
        EXPECT_EQ(WcharLength(reinterpret_cast<const unsigned char*>(c.bytes),
                              static_cast<int>(std::strlen(c.bytes))),
                  c.units);
    }
}

TEST(Utf16Decoding, PairsLoneSurrogatesAndTheLookAtTheTerminator) {
    struct Case {
        std::vector<unsigned short> units;  // terminated
        int n;
        unsigned int cp;
        int pos;
    };
    const Case cases[] = {
        {{0xD83D, 0xDE00, 0}, 2, 0x1F600, 2},
        {{0xD83D, 0xDE00, 0}, 1, 0x1F600, 2},  // the low half is read at index n
        {{0xD83D, 0x0061, 0}, 2, KORX_UTF_INVALID, 1},
        {{0xDE00, 0x0061, 0}, 2, KORX_UTF_INVALID, 1},
        {{0xD83D, 0}, 1, KORX_UTF_INVALID, 1},
        {{0x0000, 0x0061, 0}, 2, 0, 1},  // a 0 unit inside the range reads as the end
        {{0x0061, 0}, 0, 0, 0},
    };
    for (const Case& c : cases) {
        int pos = 0;
        EXPECT_EQ(Utf16Next(c.units.data(), c.n, pos), c.cp);
        EXPECT_EQ(pos, c.pos);
    }
}

TEST(Utf8Encoding, WritesReplacementForWhatUtf8MustNotCarry) {
    struct Case {
        unsigned int cp;
        std::string bytes;
    };
    const Case cases[] = {
        {0x41, "A"},
        {0x7FF, "\xDF\xBF"},
        {0x800, "\xE0\xA0\x80"},
        {0xFDCF, "\xEF\xB7\x8F"},
        {0xFDD0, "\xEF\xBF\xBD"},
        {0xFDEF, "\xEF\xBF\xBD"},
        {0xFFFE, "\xEF\xBF\xBD"},
        {0xFFFF, "\xEF\xBF\xBD"},
        {0xDC00, "\xEF\xBF\xBD"},
        {0x10000, "\xF0\x90\x80\x80"},
        {0x10FFFF, "\xF4\x8F\xBF\xBF"},
        {0x110000, "\xEF\xBF\xBD"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.cp);
        unsigned char out[4];
        const int n = emitUtf8(c.cp, out);
        EXPECT_EQ(Bytes(reinterpret_cast<char*>(out), static_cast<size_t>(n)), c.bytes);
    }
    unsigned short units[2];
    ASSERT_EQ(emitUtf16(0xD800, units), 1);  // unchecked below 0x10000
    EXPECT_EQ(units[0], 0xD800);
    ASSERT_EQ(emitUtf16(0x10FFFF, units), 2);
    EXPECT_EQ(units[0], 0xDBFF);
    EXPECT_EQ(units[1], 0xDFFF);
}

TEST(Utf8Length, CountsWhatEmitUtf8WritesAndRefusesLoneSurrogates) {
    struct Case {
        std::u16string text;
        int maxUnits;
        int bytes;
    };
    // A pair cut by maxUnits counts whole.
    const Case cases[] = {
        {u"", 0, 0},           {u"a\u00E9\u4E2D", 0, 6}, {u"\uFFFF", 0, 3},      {u"\uFDD0", 0, 3},
        {u"\U0001F600", 0, 4}, {u"abc", 2, 2},           {u"a\U0001F600", 2, 5}, {u"\xD800", 0, -1},
        {u"ab\xDC00", 0, -1}};
    for (const Case& c : cases) {
        EXPECT_EQ(Utf8Length(W(c.text.c_str()).c_str(), c.maxUnits), c.bytes);
        if (c.maxUnits == 0) {
            EXPECT_EQ(U(c.text.c_str()).GetLengthInChar(), c.bytes);
        }
    }
    EXPECT_EQ(Utf8Length(static_cast<const KORXWChar*>(nullptr), 0), 0);
}

TEST(StringConversion, AgreesWithTheScalarCodecsOnRandomText) {
    std::mt19937 random(7);
    const std::vector<std::string> pieces = {"\xC3\xA9", "\xE4\xB8\xAD",     "\xF0\x9F\x98\x80",
                                             "\xC3",     "\xE4\xB8",         "\xF0\x9F\x98",
                                             "\x80",     "\xBF\xBF",         "\xF8",
                                             "\xFF",     "\xED\xA0\x80",     "\xC0\xAF",
                                             "\xC0\x80", "\xF4\x90\x80\x80", "\xEF\xBF\xBF",
                                             "\xC3\x28"};
    for (int round = 0; round < 4000; ++round) {
        std::string bytes;
        const int parts = 1 + static_cast<int>(random() % 6);
        for (int p = 0; p < parts; ++p) {
            const int ascii = static_cast<int>(random() % 40);  // every alignment of what follows
            for (int i = 0; i < ascii; ++i)
                bytes += static_cast<char>(1 + random() % 127);
            bytes += pieces[random() % pieces.size()];
        }
        SCOPED_TRACE(round);
        const KORXString s(bytes.c_str());
        ASSERT_EQ(Text(s), ScalarDecode(bytes));

        // Back to UTF-8, from a text that may also hold lone surrogates.
        Units units = W(Text(s).c_str());
        if (round % 3 == 0 && !units.empty())
            units[random() % units.size()] = static_cast<KORXWChar>(0xD800 + random() % 0x800);
        const KORXString wide(units.c_str());
        const int length = Utf8Length(units.c_str(), 0);
        ASSERT_EQ(wide.GetLengthInChar(), length);
        ASSERT_EQ(wide.length(), static_cast<int>(units.size()));
        const std::string expected =
            length < 0 ? "" : ScalarEncode(units, 0, static_cast<int>(units.size()));
        ASSERT_EQ(std::string(static_cast<const char*>(wide)), expected);
    }
}

// Wide text made directly: runs of units of every kind at every alignment, long enough for the
// bulk paths of the byte form and of getChars.
TEST(StringConversion, EncodesRandomWideTextAsTheScalarCodecsDo) {
    std::mt19937 random(11);
    // Each side of every size step, the noncharacters and the units around them, pairs; then the
    // pieces that are not well formed.
    const std::vector<Units> pieces = {W(u"\x7F"),       W(u"\x80"),       W(u"\xE9"),
                                       W(u"\x7FF"),      W(u"\x800"),      W(u"\x4E2D"),
                                       W(u"\xD7FF"),     W(u"\xE000"),     W(u"\xFDCF"),
                                       W(u"\xFDD0"),     W(u"\xFDEF"),     W(u"\xFDF0"),
                                       W(u"\xFEFF"),     W(u"\xFF0C"),     W(u"\xFFBF"),
                                       W(u"\xFFC0"),     W(u"\xFFFD"),     W(u"\xFFFE"),
                                       W(u"\xFFFF"),     W(u"\U0001F600"), W(u"\U00010000"),
                                       W(u"\U0010FFFF"), W(u"\xD800"),     W(u"\xDBFF"),
                                       W(u"\xDC00"),     W(u"\xDFFF"),     W(u"\xD800\U00010000")};
    const size_t wellFormed = pieces.size() - 5;
    for (int round = 0; round < 3000; ++round) {
        Units units;
        const size_t choices = round % 4 == 0 ? pieces.size() : wellFormed;
        const int maxAscii = round % 3 == 0 ? 40 : 6;
        for (int parts = 1 + static_cast<int>(random() % 16); parts > 0; --parts) {
            for (int i = static_cast<int>(random() % maxAscii); i > 0; --i)
                units += static_cast<KORXWChar>(1 + random() % 127);
            for (int i = 1 + static_cast<int>(random() % 6); i > 0; --i)
                units += pieces[random() % choices];
        }
        SCOPED_TRACE(round);
        const int n = static_cast<int>(units.size());
        const KORXString s(units.c_str());
        const int length = Utf8Length(units.c_str(), 0);
        ASSERT_EQ(s.GetLengthInChar(), length);
        ASSERT_EQ(std::string(static_cast<const char*>(s)),
                  length < 0 ? "" : ScalarEncode(units, 0, n));

        // A range into a destination of exactly the size getChars asks for.
        const int begin = static_cast<int>(random() % n);
        const int end = begin + 1 + static_cast<int>(random() % (n - begin));
        const char untouched = '\xFF';  // never in UTF-8
        std::vector<char> dst(static_cast<size_t>(3 * (end - begin) + 3), untouched);
        s.getChars(begin, end, dst.data(), 0);
        std::string expected;
        if (!IsLowSurrogate(units[begin]))
            expected = ScalarEncode(units, begin, end);
        else if (begin > 0 && IsHighSurrogate(units[begin - 1]))
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
            const Units inserts[] = {{0xD83D, 0xDE00}, {0xDC00}, {0xD800}};
            for (const Units& insert : inserts) {
                Units units(20000, background);
                units.replace(static_cast<size_t>(at), insert.size(), insert);
                SCOPED_TRACE(at);
                const KORXString s(units.c_str());
                const int length = Utf8Length(units.c_str(), 0);
                EXPECT_EQ(length < 0, insert.size() == 1);
                EXPECT_EQ(s.GetLengthInChar(), length);
                EXPECT_EQ(std::string(static_cast<const char*>(s)),
                          length < 0 ? "" : ScalarEncode(units, 0, 20000));
            }
        }
    }
}

TEST(StringConstruction, EmptyStringsWithAndWithoutBuffer) {
    const KORXString none;
    const KORXString allocated(W(u"").c_str());
    const KORXString fromNull(static_cast<const char*>(nullptr));
    const KORXString zeroUnit(KORXWChar(0));
    EXPECT_FALSE(none.hasSpace());
    EXPECT_FALSE(fromNull.hasSpace());
    EXPECT_TRUE(allocated.hasSpace());
    EXPECT_TRUE(zeroUnit.hasSpace());
    EXPECT_EQ(static_cast<const char*>(none), nullptr);
    EXPECT_STREQ(static_cast<const char*>(allocated), "");
    for (const KORXString* s : {&none, &allocated, &zeroUnit}) {
        EXPECT_EQ(s->length(), 0);
        EXPECT_EQ(s->GetLengthInChar(), 0);
        EXPECT_EQ(s->charAt(0), 0);
    }
    EXPECT_EQ(allocated.compareTo(none), 1);
    EXPECT_EQ(none.compareTo(allocated), -1);
    EXPECT_EQ(none.compareTo(fromNull), 0);
    EXPECT_FALSE(allocated.equals(none));
    EXPECT_TRUE(allocated.equals(zeroUnit));
}

TEST(StringConstruction, FormatsBoundedTextAndDecodesIt) {
    struct Case {
        int bufferSize;
        std::string argument;
        std::u16string text;
    };
    const Case cases[] = {
        {1024, "caf\xC3\xA9", u"caf\u00E9"},
        {4, "abcdef", u"abc"},  // cut: bufferSize - 1 bytes are kept
        {4, "abc", u"abc"},
        {3, "abc", u"ab"},
        {4, "ab\xC3\xA9", u"ab\uFFFD"},  // cut inside a sequence
        {0, "abc", u""},
        {-5, "abc", u""},
        {1100, std::string(1200, 'x'), std::u16string(1099, u'x')},  // heap buffer
        {2000, std::string(1500, 'x'), std::u16string(1500, u'x')},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bufferSize);
        EXPECT_EQ(Text(KORXString(c.bufferSize, "%s", c.argument.c_str())), c.text);
    }
    EXPECT_EQ(Text(KORXString(1024, "%d-%s", 42, "x")), u"42-x");
    EXPECT_EQ(Text(KORXString(1024, "a%cb", 0)), u"a");  // a formatted 0 byte ends the text
    const char* noFormat = nullptr;
    EXPECT_FALSE(KORXString(1024, noFormat, 0).hasSpace());
}

#if KORX_WCHAR_IS_UTF32
TEST(StringConstruction, TakesUtf32WideText) {
    EXPECT_EQ(Text(KORXString(L"a\u00E9\U0001F600")), u"a\u00E9\U0001F600");
    const wchar_t invalid[] = {0xD800, 0x110000, 'z', 0};
    EXPECT_EQ(Text(KORXString(invalid)), u"\uFFFD\uFFFDz");
    EXPECT_EQ(Text(KORXString::valueOf(L'\U0001F600')), u"\U0001F600");
    EXPECT_EQ(Text(KORXString::valueOf(L"abc\U0001F600", 1, 5)), u"bc\U0001F600");
    EXPECT_EQ(Utf8Length(L"\U0001F600x", 1), 4);
    int pos = 0;
    const wchar_t units[] = {0x1F600, 0x110000, 0};
    EXPECT_EQ(wcharNext(units, 2, pos), 0x1F600u);
    EXPECT_EQ(wcharNext(units, 2, pos), KORX_UTF_INVALID);
    EXPECT_EQ(pos, 2);
    char* out = nullptr;
    const int n = WcharToPrintable(L"b\n", out);
    EXPECT_EQ(Bytes(out, static_cast<size_t>(n)), "b\r\n");
    delete[] out;
}
#endif

TEST(StringByteForm, CopiesAndAssignmentsFollowTheCacheRules) {
    // A byte form made before the text changed goes stale; the rules decide who sees it.
    KORXString source("abc");
    ASSERT_STREQ(static_cast<const char*>(source), "abc");
    source[0] = 'X';

    const KORXString copy(source);  // no byte form copied: built from "Xbc"
    EXPECT_STREQ(static_cast<const char*>(copy), "Xbc");

    KORXString withForm("old");
    static_cast<void>(static_cast<const char*>(withForm));
    withForm = source;  // had one: takes the source's
    EXPECT_STREQ(static_cast<const char*>(withForm), "abc");

    KORXString withoutForm("old");
    withoutForm = source;  // had none: builds its own
    EXPECT_STREQ(static_cast<const char*>(withoutForm), "Xbc");

    KORXString formless("old");
    static_cast<void>(static_cast<const char*>(formless));
    formless = KORXString("new");  // the source has none: neither has this any more
    EXPECT_STREQ(static_cast<const char*>(formless), "new");

    EXPECT_STREQ(static_cast<const char*>(source), "abc");  // kept, not rebuilt

    const KORXString lone(W(u"a\xD800").c_str());
    EXPECT_STREQ(static_cast<const char*>(lone), "");
    EXPECT_EQ(lone.GetLengthInChar(), -1);
}

TEST(StringByteForm, GetCharsNeverSplitsAPair) {
    const KORXString s(W(u"a\U0001F600b\xDC00z").c_str());  // a D83D DE00 b DC00 z
    struct Case {
        int begin;
        int end;
        std::string bytes;
    };
    const Case cases[] = {
        {0, 99,
         "a\xF0\x9F\x98\x80"
         "b\xEF\xBF\xBDz"},
        {2, 4,
         "\xF0\x9F\x98\x80"
         "b"},                        // starts on the low half: backs up to the pair
        {0, 2, "a\xF0\x9F\x98\x80"},  // ends after the high half: the pair is written whole
        {4, 6, ""},                   // starts on a lone low surrogate: nothing
        {3, 3, ""},
        {-1, 2, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.begin);
        char dst[32];
        std::memset(dst, 0x7F, sizeof dst);
        s.getChars(c.begin, c.end, dst, 1);
        EXPECT_STREQ(dst + 1, c.bytes.c_str());
        EXPECT_EQ(dst[0], 0x7F);
    }
    const KORXString first(W(u"\xDC00z").c_str());
    char dst[8] = "xxxxxxx";
    first.getChars(0, 2, dst, 0);
    EXPECT_STREQ(dst, "");
}

TEST(StringWideCopy, GetCharsClampsTheRange) {
    const KORXString s("abcdef");
    struct Case {
        int begin;
        int end;
        std::u16string text;
    };
    const Case cases[] = {{1, 3, u"bc"}, {4, 99, u"ef"}, {3, 3, u""}, {-1, 3, u""}, {6, 9, u""}};
    for (const Case& c : cases) {
        KORXWChar dst[16];
        std::fill(std::begin(dst), std::end(dst), KORXWChar('#'));
        s.getChars(c.begin, c.end, dst, 2);
        EXPECT_EQ(Text(KORXString(dst + 2)), c.text);
        EXPECT_EQ(dst[1], '#');
    }
}

TEST(StringComparison, UnsignedUnitsAndMissingBuffers) {
    const KORXString none;
    const KORXString empty(W(u"").c_str());
    struct Case {
        KORXString a;
        KORXString b;
        int order;
        int orderIgnoringCase;
    };
    const Case cases[] = {
        {"abc", "abd", -1, -1}, {"abc", "ab", 1, 1},
        {"abc", "abc", 0, 0},   {"a", "B", 1, -1},
        {"ABC", "abc", -1, 0},  {U(u"\uFFFF"), "a", 1, 1},  // unsigned, never sign-extended
        {empty, "a", -1, -1},   {"a", none, 1, 1},
        {none, none, 0, 0},     {empty, none, 1, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(static_cast<const char*>(c.a) ? static_cast<const char*>(c.a) : "(none)");
        EXPECT_EQ(c.a.compareTo(c.b), c.order);
        EXPECT_EQ(c.a.compareToIgnoreCase(c.b), c.orderIgnoringCase);
        EXPECT_EQ(c.a.equals(c.b), c.order == 0);
        EXPECT_EQ(c.a.equalsIgnoreCase(c.b), c.orderIgnoringCase == 0);
    }
    EXPECT_EQ(KORXString("ab").hashCode(), 3299u);
    EXPECT_EQ(U(u"\uFFFF").hashCode(), 0xFFFFu);
    EXPECT_EQ(none.hashCode(), 0u);
}

TEST(StringSearch, BoundsOfEverySearch) {
    const KORXString s("abcabc");
    const KORXString none;
    struct Case {
        const char* what;
        int actual;
        int expected;
    };
    const Case cases[] = {
        {"indexOf c", s.indexOf('c'), 2},
        {"indexOf c from", s.indexOf('a', 1), 3},
        {"indexOf c from last", s.indexOf('c', 5), 5},
        {"indexOf c from end", s.indexOf('a', 6), -1},
        {"indexOf c negative", s.indexOf('a', -1), -1},
        {"indexOf c in none", none.indexOf('a'), -1},
        {"indexOf s", s.indexOf(KORXString("ca")), 2},
        {"indexOf s from", s.indexOf(KORXString("abc"), 1), 3},
        {"indexOf s past fit", s.indexOf(KORXString("abc"), 4), -1},
        {"indexOf empty s", s.indexOf(KORXString("")), -1},
        {"lastIndexOf c", s.lastIndexOf('a'), 3},
        {"lastIndexOf c from", s.lastIndexOf('c', 4), 2},
        {"lastIndexOf c from end", s.lastIndexOf('c', 6), -1},
        {"lastIndexOf s", s.lastIndexOf(KORXString("abc")), 3},
        {"lastIndexOf s from", s.lastIndexOf(KORXString("abc"), 2), 0},
        {"lastIndexOf s longer", s.lastIndexOf(KORXString("abcabcx")), -1},
        {"lastIndexOfAfter", s.lastIndexOfAfter('a', 0), 3},
        {"lastIndexOfAfter none left", s.lastIndexOfAfter('a', 3), -1},
        {"lastIndexOfAfter at last", s.lastIndexOfAfter('c', 5), -1},
        {"startsWith", s.startsWith(KORXString("ab")), 1},
        {"startsWith from", s.startsWith(KORXString("ca"), 2), 1},
        {"startsWith past fit", s.startsWith(KORXString("abc"), 4), 0},
        {"startsWith negative", s.startsWith(KORXString("a"), -3), 0},
        {"startsWith empty prefix", s.startsWith(KORXString("")), 0},
        {"startsWith in none", none.startsWith(KORXString("a")), 0},
        {"endsWith", s.endsWith(KORXString("bc")), 1},
        {"endsWith whole", s.endsWith(KORXString("abcabc")), 1},
        {"endsWith not", s.endsWith(KORXString("ab")), 0},
        {"endsWith one longer", s.endsWith(KORXString("xabcabc")), 1},  // -1 == -1
        {"endsWith two longer", s.endsWith(KORXString("xxabcabc")), 0},
        {"endsWith empty", s.endsWith(KORXString("")), 0},
        {"endsWith unit", s.endsWith(KORXWChar('c')), 1},
        {"endsWith unit in none", none.endsWith(KORXWChar('c')), 0},
        {"charAt last", s.charAt(5), 'c'},
        {"charAt past", s.charAt(6), 0},
        {"charAt negative", s.charAt(-1), 0},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.actual, c.expected) << c.what;
}

TEST(StringDerivation, EmptyResultsHoldNoBuffer) {
    const KORXString s("abcdef");
    const KORXString none;
    const KORXString empty(W(u"").c_str());
    struct Case {
        const char* what;
        KORXString result;
        std::u16string text;
    };
    const Case cases[] = {
        {"substring", s.substring(1, 3), u"bc"},
        {"substring whole", s.substring(0, 6), u"abcdef"},
        {"substring from", s.substring(4), u"ef"},
        {"substring empty range", s.substring(2, 2), u""},
        {"substring past end", s.substring(2, 7), u""},
        {"substring negative", s.substring(-1, 2), u""},
        {"concat", s + KORXString("gh"), u"abcdefgh"},
        {"concat empty", empty.concat(s), u"abcdef"},
        {"concat both empty", empty.concat(empty), u""},
        {"replace", s.replace('c', 'x'), u"abxdef"},
        {"replace to zero", s.replace('c', 0), u"ab"},
        {"replace to leading zero", s.replace('a', 0), u""},
        {"replace in none", none.replace('a', 'b'), u""},
        {"trim", KORXString(" \t a b \n").trim(), u"a b"},
        {"trim all space", KORXString(" \t\n ").trim(), u""},
        {"upper", KORXString("aB1\xF0\x9F\x98\x80").toUpperCase(), u"AB1\U0001F600"},
        {"lower", KORXString("aB1").toLowerCase(), u"ab1"},
        {"lower of none", none.toLowerCase(), u""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Text(c.result), c.text) << c.what;
        EXPECT_EQ(c.result.hasSpace(), !c.text.empty()) << c.what;
    }
    EXPECT_TRUE(none.isWhitespace());
    EXPECT_TRUE(KORXString(" \t\r\n").isWhitespace());
    EXPECT_FALSE(KORXString(" a ").isWhitespace());
}

TEST(StringDerivation, CaseMappingFollowsTheCLocale) {
    LocaleGuard ctype(LC_CTYPE, "C.UTF-8");
    if (!ctype.ok())
        GTEST_SKIP() << "no C.UTF-8 locale";
    EXPECT_EQ(Text(U(u"\u00C9t\u00C9").toLowerCase()), u"\u00E9t\u00E9");
    EXPECT_EQ(Text(U(u"\u00E9").toUpperCase()), u"\u00C9");
    EXPECT_TRUE(U(u"\u00C9").equalsIgnoreCase(U(u"\u00E9")));
    EXPECT_EQ(Text(U(u"\u3000a\u3000").trim()), u"a");  // ideographic space
}

TEST(StringValueOf, FormatsNumbersAndCopiesText) {
    struct Case {
        KORXString result;
        std::u16string text;
    };
    const Case cases[] = {
        {KORXString::valueOf(-42), u"-42"},
        {KORXString::valueOf(LONG_MIN), Ascii(std::to_string(LONG_MIN))},
        {KORXString::valueOf(1.5), u"1.500000"},
        {KORXString::valueOf(0.25f), u"0.250000"},
        {KORXString::valueOf(true), u"true"},
        {KORXString::valueOf(false), u"false"},
        {KORXString::valueOf(KORXWChar('x')), u"x"},
        {KORXString::valueOf(W(u"text").c_str()), u"text"},
        {KORXString::valueOf(W(u"abcdef").c_str(), 2, 3), u"cde"},
        {KORXString::valueOf(W(u"abc").c_str(), 1, 10), u"bc"},  // the terminator ends it
        {KORXString::valueOf(W(u"abc").c_str(), 1, 0), u""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(Text(c.result), c.text);
}

TEST(SharedConstants, HoldTheirTextsInBothForms) {
    EXPECT_EQ(g_yesAtStartup, "Yes");
    const std::pair<const KORXString*, const char*> constants[] = {
        {&KORX_YES, "Yes"},     {&KORX_NO, "No"}, {&KORX_TRUE, "True"},
        {&KORX_FALSE, "False"}, {&KORX_ON, "On"}, {&KORX_OFF, "Off"}};
    for (const auto& [constant, text] : constants) {
        EXPECT_STREQ(static_cast<const char*>(*constant), text);
        EXPECT_TRUE(constant->equals(KORXString(text)));
        EXPECT_EQ(constant->length(), static_cast<int>(std::strlen(text)));
    }
    KORXString target("x");
    static_cast<void>(static_cast<const char*>(target));
    target = KORX_FALSE;
    EXPECT_STREQ(static_cast<const char*>(target), "False");
    EXPECT_TRUE(KORX_TRUE.equalsIgnoreCase(KORXString("TRUE")));
}

TEST(WcharToPrintable, FixesTheLineEndAndFallsBackToOneBytePerUnit) {
    LocaleGuard ctype(LC_CTYPE, "C");
    struct Case {
        std::u16string text;
        std::string bytes;
    };
    const Case cases[] = {
        {u"a\n", "a\r\n"},
        {u"a\r\n", "a\r\n"},
        {u"\n", "\r\n"},
        {u"", ""},
        {u"caf\u00E9\n", "caf_\r\n"},  // not representable in "C": one byte per unit
        {u"\u00E9~\u007F", "_~_"},     // from 127 on
    };
    for (const Case& c : cases) {
        char* out = nullptr;
        const int n = WcharToPrintable(W(c.text.c_str()).c_str(), out);
        EXPECT_EQ(Bytes(out, static_cast<size_t>(n)), c.bytes);
        delete[] out;
    }
}

TEST(WcharToPrintable, UsesTheMultibyteLocale) {
    LocaleGuard ctype(LC_CTYPE, "C.UTF-8");
    if (!ctype.ok())
        GTEST_SKIP() << "no C.UTF-8 locale";
    char* out = nullptr;
    int n = WcharToPrintable(W(u"caf\u00E9").c_str(), out);
    EXPECT_EQ(Bytes(out, static_cast<size_t>(n)), "caf\xC3\xA9");
    delete[] out;
    n = WcharToPrintable(W(u"a\xD800").c_str(), out);  // a surrogate unit fails: byte copy
    EXPECT_EQ(Bytes(out, static_cast<size_t>(n)), "a_");
    delete[] out;
}

TEST(KORXLocale, SwitchesTheNumericLocaleToCAndBackWithOneSlot) {
    LocaleGuard numeric(LC_NUMERIC, "C.UTF-8");
    if (!numeric.ok())
        GTEST_SKIP() << "no C.UTF-8 locale";
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    KORXLocale::SetNumericC();
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    KORXLocale::RestoreNumeric();
    EXPECT_EQ(before, std::setlocale(LC_NUMERIC, nullptr));

    KORXLocale::SetNumericC();
    KORXLocale::SetNumericC();  // calls do not nest: "C" is saved over the first name
    KORXLocale::RestoreNumeric();
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
    KORXLocale::RestoreNumeric();  // nothing saved: nothing changes
    EXPECT_STREQ(std::setlocale(LC_NUMERIC, nullptr), "C");
}
