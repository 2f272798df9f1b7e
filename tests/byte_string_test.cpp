#include <korx/Gk_String.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <functional>
#include <random>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

using namespace std::string_literals;

namespace {

// Every byte of the buffer, terminators included, so a missing or doubled 0 shows.
std::string Bytes(const Gk_String& s) {
    const char* first = s;
    return first == nullptr ? std::string() : std::string(first, static_cast<size_t>(s.len()));
}

// The bytes a view sees, from its offset to the end of the buffer.
std::string Bytes(const Gk_ROString& v) {
    const char* first = v;
    return v.len() <= 0 ? std::string() : std::string(first, static_cast<size_t>(v.len()));
}

Gk_ROString At(Gk_ROString view, int offset) {
    view.setoffset(offset);
    return view;
}

}  // namespace

TEST(ByteString, CountsTheTerminatorInLenButNotInDataLen) {
    const std::tuple<Gk_String, int, int> cases[] = {
        {"abc", 4, 3}, {nullptr, 1, 0}, {Gk_String("abc", 2), 2, 2}, {Gk_String(), 0, 0}};
    for (const auto& [s, len, dataLen] : cases)
        EXPECT_EQ(std::make_pair(s.len(), s.dataLen()), std::make_pair(len, dataLen));
    EXPECT_EQ(static_cast<char*>(Gk_String()), nullptr);
}

TEST(ByteString, EditsKeepTheIntendedBytes) {
    static char cdef[] = "cdef", c0[] = "c";
    const std::tuple<Gk_String, std::function<void(Gk_String&)>, std::string> cases[] = {
        {"abc", [](Gk_String& s) { s.chop(1); }, "ab\0"s},  // n + 1 bytes are kept
        {"abc", [](Gk_String& s) { s.chop(-7); }, "\0"s},
        {"abc", [](Gk_String& s) { s.chop(3); }, "abc\0\0"s},
        {"abc", [](Gk_String& s) { s.chop(4); }, "abc\0"s},
        {Gk_String(), [](Gk_String& s) { s.ensure(3); }, "  \0"s},
        {Gk_String("ab", 2), [](Gk_String& s) { s.ensure(4); }, "a  \0"s},  // b goes
        {"abc", [](Gk_String& s) { s.ensure(1); }, "ab\0"s},
        {"abcd", [](Gk_String& s) { s.shrinkEnd(2); }, "abc"s},
        {"abcd", [](Gk_String& s) { s.shrinkFront(2); }, "cd\0"s},
        {"ab", [](Gk_String& s) { s.shrinkEnd(9); }, ""s},
        {"ab", [](Gk_String& s) { s.shrinkFront(9); }, ""s},
        {"'''", [](Gk_String& s) { s.sqeezeQuotes(); }, "''\0"s},  // pairs do not overlap
        {"a'b''''c'", [](Gk_String& s) { s.sqeezeQuotes(); }, "a'b''c'\0"s},
        {"ab", [](Gk_String& s) { s.append("cd"); }, "abcd\0"s},
        {Gk_String("ab", 2), [](Gk_String& s) { s.append("cd"); }, "abcd\0"s},
        {"ab", [](Gk_String& s) { s.append2("cd"); }, "ab\0cd"s},
        {"ab", [](Gk_String& s) { s.append('c'); }, "ab\0c"s},
        {"ab", [](Gk_String& s) { s.append(2, cdef); }, "abcd\0"s},
        {"ab", [](Gk_String& s) { s.append(2, c0); }, "abc\0"s},  // its 0 is the terminator
        {"ab", [](Gk_String& s) { s.append(Gk_String("cd", 2)); }, "abcd\0"s},
        {"ab", [](Gk_String& s) { s.append(s); }, "abab\0"s},
        {"ab", [](Gk_String& s) { s.append(At("xyz", 1)); }, "abyz\0"s},
        {Gk_String("ab", 2), [](Gk_String& s) { s.append(Gk_ROString("xyz", 2)); }, "abxy\0"s},
        {"ab", [](Gk_String& s) { s.append(Gk_ROString()); }, "ab\0"s},
        // Its own bytes, while the buffer grows under them.
        {"abcdefghijk", [](Gk_String& s) { s.append(static_cast<char*>(s)); },
         "abcdefghijkabcdefghijk\0"s},
        {"abcdefghijklmnopqrstuvw", [](Gk_String& s) { s.append(At(s.dataStr(), 20)); },
         "abcdefghijklmnopqrstuvwuvw\0"s},
    };
    for (const auto& row : cases) {
        const auto& [start, edit, bytes] = row;
        Gk_String s = start.copy();
        edit(s);
        EXPECT_EQ(Bytes(s), bytes) << "row " << &row - cases;
    }
}

TEST(ByteString, SubsetStaysInsideTheBuffer) {
    const Gk_String s("abcdef");  // 7 bytes
    const std::tuple<int, int, std::string> cases[] = {
        {2, 3, "cde\0"s}, {4, 10, "ef\0"s}, {7, 2, "\0"s}, {1, -3, "\0"s}, {-2, 2, "ab\0"s}};
    for (const auto& [start, n, bytes] : cases)
        EXPECT_EQ(Bytes(s.subset(start, n)), bytes) << start << ", " << n;
}

TEST(ByteString, EmptyStringsEqualOnlyEachOther) {
    // a, b, a == b, a < b; b < a never holds
    const std::tuple<Gk_String, Gk_String, bool, bool> cases[] = {
        {Gk_String(), Gk_String(), true, false},
        {Gk_String(), Gk_String(""), false, false},
        {Gk_String("abc", 3), Gk_String("abc"), true, false},  // read no further than the count
        {Gk_String("abx", 2), Gk_String("abc"), false, true},
        {Gk_String("abc"), Gk_String("abd"), false, true},
        {Gk_String("a"), Gk_String("\xE9"), false, true},  // bytes compare unsigned
    };
    for (const auto& [a, b, equal, less] : cases)
        EXPECT_EQ(std::make_tuple(a == b, b == a, a < b, b < a),
                  std::make_tuple(equal, equal, less, false))
            << Bytes(a) << " | " << Bytes(b);
}

TEST(ByteString, CopiesShareTheBufferUnlessCopied) {
    Gk_String original("ab"), shared = original, own = original.copy();
    shared.append("c");
    own.append("d");
    EXPECT_EQ(Bytes(original) + "|" + Bytes(own), "abc\0|abd\0"s);
}

TEST(ByteString, KeepsUtf8AndReadsOtherTextAsLatin1InTheCLocale) {
    // The tests run in the "C" locale, whose multibyte conversion refuses every byte from 0x80:
    // UTF-8 is kept even when read from the locale, anything else (a cut sequence, an encoded
    // surrogate) is taken as Latin-1.
    const std::tuple<const char*, bool, std::string> cases[] = {
        {"abc", false, "abc"},
        {"abc", true, "abc"},
        {"", true, ""},
        {nullptr, false, ""},
        {nullptr, true, ""},
        {"caf\xC3\xA9", false, "caf\xC3\xA9"},
        {"caf\xC3\xA9", true, "caf\xC3\xA9"},
        {"caf\xE9", false, "caf\xC3\xA9"},
        {"caf\xE9", true, "caf\xC3\xA9"},
        {"\x80\xFF", false, "\xC2\x80\xC3\xBF"},
        {"a\xC3", false, "a\xC3\x83"},
        {"\xED\xA0\x80", false, "\xC3\xAD\xC2\xA0\xC2\x80"}};
    for (const auto& [text, fromLocale, utf8] : cases) {
        SCOPED_TRACE(std::string(text != nullptr ? text : "(null)") + (fromLocale ? " +" : ""));
        Gk_String reset("old text");
        reset.SetContent(text, fromLocale);
        const std::string bytes = utf8 + "\0"s;
        EXPECT_EQ(Bytes(Gk_String(text, fromLocale)) + "|" + Bytes(reset) + "|" +
                      Bytes(Gk_ROString(text, fromLocale)),
                  bytes + "|" + bytes + "|" + bytes);
    }
    Gk_String self("\xE9\xE9x");
    self.SetContent(self, false);  // its own text, written over as it is read
    EXPECT_EQ(Bytes(self), "\xC3\xA9\xC3\xA9x\0"s);
}

TEST(ByteString, ReadsTextFromAUtf8LocaleThroughItsWideCharacters) {
    // Read by the locale, U+FFFE goes through the wide form and comes out as U+FFFD; valid
    // UTF-8 that is not read from the locale is kept byte for byte.
    const std::string previous = std::setlocale(LC_CTYPE, nullptr);
    if (std::setlocale(LC_CTYPE, "C.UTF-8") == nullptr)
        GTEST_SKIP() << "no C.UTF-8 locale";
    const std::string fromLocale = Bytes(Gk_String("a\xEF\xBF\xBE", true));
    const std::string kept = Bytes(Gk_String("a\xEF\xBF\xBE", false));
    const std::string latin1 = Bytes(Gk_String("a\xE9", true));
    std::setlocale(LC_CTYPE, previous.c_str());
    EXPECT_EQ(fromLocale, "a\xEF\xBF\xBD\0"s);
    EXPECT_EQ(kept, "a\xEF\xBF\xBE\0"s);
    EXPECT_EQ(latin1, "a\xC3\xA9\0"s);
}

TEST(ByteStringView, SharesTheStringsBufferAndLowersFromItsOffset) {
    Gk_String s("ABC"), shared = s;
    Gk_RWString rw = s.rwString();
    const Gk_RWString ro = static_cast<const Gk_String&>(s).dataStr();
    rw.toLower();
    s[0] = 'x';
    EXPECT_EQ(Bytes(s) + "|" + Bytes(ro), "xbc\0|xbc\0"s);
    shared.SetContent("\xE9", false);
    EXPECT_EQ(Bytes(rw), "\xC3\xA9\0"s);
    EXPECT_EQ(Gk_String().dataStr().len(), 0);

    Gk_RWString view("ABC\xC9");
    view.offset(1);
    view.toLower();  // the "C" locale leaves 0xC9 alone
    EXPECT_EQ(std::make_pair(view.len(), Bytes(At(view, 0))), std::make_pair(4, "Abc\xC9\0"s));
}

TEST(ByteStringView, FindsBytesAndLatin1CharactersAsUtf8) {
    // A byte from 0x80 is the Latin-1 character: U+00E9 is C3 A9, U+00C3 is C3 83.
    const std::tuple<const char*, int, char, int> cases[] = {
        {"abcabc", 0, 'c', 2},          {"abcabc", 1, 'a', 2},       {"abcabc", 0, 'z', -1},
        {"caf\xC3\xA9!", 0, '\xE9', 3}, {"x\xC3\xA9", 1, '\xE9', 0}, {"a\xC2\xA0", 0, '\xA0', 1},
        {"caf\xE9", 0, '\xE9', -1},     {"\xC3\xA9", 0, '\xC3', -1}};
    for (const auto& [text, offset, c, position] : cases)
        EXPECT_EQ(At(text, offset).find(c), position) << text << " @" << offset << " " << int(c);

    // Found at 0 of the buffer, from an argument at 3 of it: -3. Not found: len().
    const Gk_ROString buffer("bcabc");
    const std::tuple<int, int, int> shared[] = {{0, 3, -3}, {1, 3, 0}, {0, 2, 0}};
    for (const auto& [offset, argumentOffset, position] : shared)
        EXPECT_EQ(At(buffer, offset).find(At(buffer, argumentOffset)), position) << offset;
    EXPECT_EQ(std::make_pair(buffer.find("zz"), At(buffer, 2).find("q")), std::make_pair(6, 4));
}

TEST(ByteStringView, ReverseFindSkipsFromTheEndAndAnswersFromTheBufferStart) {
    // The first candidate is the terminator; nothing before the offset is searched.
    const std::tuple<const char*, int, char, int, int> cases[] = {
        {"abca", 0, 'a', 0, 3},
        {"abca", 0, 'a', 1, 3},
        {"abca", 0, 'a', 2, 0},
        {"abca", 0, 'a', 5, -1},
        {"ab", 0, '\0', 0, 2},
        {"abcb", 2, 'b', 0, 3},
        {"abcb", 2, 'a', 0, -1},
        {"\xC3\xA9\xC3\xA9", 0, '\xE9', 0, 2},
        {"\xC3\xA9\xC3\xA9", 0, '\xE9', 2, 0},
        {"x\xC3\xA9", 1, '\xE9', 0, 1}};
    for (const auto& [text, offset, c, skip, position] : cases)
        EXPECT_EQ(At(text, offset).reverseFind(c, skip), position)
            << text << " @" << offset << " " << int(c) << " skip " << skip;
    // Views of fewer than 2 bytes hold nothing, not even their terminator.
    EXPECT_EQ(std::make_tuple(Gk_ROString("").reverseFind('\0'), At("ab", 2).reverseFind('\0'),
                              Gk_ROString("a", 1).reverseFind('a')),
              std::make_tuple(-1, -1, -1));
}

TEST(ByteStringView, ComparesTheViewedTexts) {
    const Gk_ROString abc("abc");
    EXPECT_EQ(std::make_tuple(abc == At("xabc", 1), abc < At("xabc", 1), abc < Gk_ROString("abd"),
                              Gk_ROString("ab") < abc, At(abc, 1) < abc, abc < At(abc, 1),
                              Gk_ROString("a") < Gk_ROString("\xE9")),
              std::make_tuple(true, false, true, true, false, true, true));
    // An offset outside the buffer sees an empty text, never a pointer outside it.
    for (const int offset : {3, 9, -1})
        EXPECT_STREQ(static_cast<const char*>(At("ab", offset)), "") << offset;
}

TEST(PathString, GivesWhereTheNextComponentBegins) {
    const std::tuple<const char*, const char*, int> cases[] = {
        {"usr/lib", "usr", 4},   {"usr/lib", "us", -1},     {"usr/lib", "/usr", 0},
        {"usr/lib", "usr/", -1}, {"usr/lib", "usr/lib", 7}, {"usr/lib/", "usr/lib", 8},
        {"usr", "usr", 3},       {"usr", "usr/lib", -1},    {"usrx/lib", "usr", -1},
        {"USR/lib", "usr", -1},  {"/usr", "usr", -1},       {"/usr/lib", "/x", 1},
        {"/usr", "", -1}};
    for (const auto& [path, prefix, result] : cases)
        EXPECT_EQ(Gk_ROString(path).matchPathString(prefix), result) << path << " | " << prefix;
    EXPECT_EQ(std::make_pair(Gk_ROString("").matchPathString(""),
                             At("x/usr/lib", 2).matchPathString("usr")),
              std::make_pair(0, 4));
}

namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// One bracket set from just after its '[', leaving p after its ']'. False when the byte is not
// taken and when the set is malformed.
bool NaiveSet(const char*& p, char byte) {
    const bool negated = *p == '!' || *p == '^';
    p += negated;
    auto item = [&p] {
        if (*p == '\\' && p[1] != 0)
            ++p;
        return *p++;
    };
    bool hit = false, slash = false;
    for (const char* first = p; *p != ']' || p == first;) {
        if (*p == 0)
            return false;
        const char lo = item();
        const char hi = *p == '-' && p[1] != ']' && p[1] != 0 ? (++p, item()) : lo;
        slash = slash || lo == '/' || hi == '/';
        hit = hit || (Lower(lo) <= Lower(byte) && Lower(byte) <= Lower(hi));
    }
    ++p;
    return !slash && hit != negated;
}

// The path matching rules written out as plainly as possible, exponential in the stars. A name
// starts at the start of the whole text or after a '/'.
bool NaiveMatch(const char* start, const char* t, const char* p) {
    for (;;) {
        const bool nameStart = t == start || t[-1] == '/';
        switch (const char c = *p++) {
        case 0:
            return *t == 0 || *t == '/';
        case '?':
        case '[':
            if (*t == 0 || (*t == '.' && nameStart) || (c == '?' ? *t == '/' : !NaiveSet(p, *t)))
                return false;
            ++t;
            break;
        case '*': {
            for (; *p == '?' || *p == '*'; ++p) {
                if (*t == '/' || (*t == 0 && *p == '?'))
                    return false;
                t += *t != 0;
            }
            if (*p == 0)
                return true;
            const char* rest = p + (*p == '\\');  // restarts at the escaped byte itself
            for (; *rest != 0 && *t != 0; ++t)
                if ((*rest == '[' || Lower(*t) == Lower(*rest)) && NaiveMatch(start, t, rest))
                    return true;
            return false;
        }
        default:
            if ((c == '\\' && *p == 0) || Lower(c == '\\' ? *p++ : c) != Lower(*t++))
                return false;
        }
    }
}

}  // namespace

TEST(PathPattern, MatchesWildcardsSetsAndEscapes) {
    // text, pattern, 1 for a match; ~ is an empty text or pattern
    std::istringstream cases(R"(
        dir/file.txt DIR 1  dirx dir 0      ABC a*c 1      ~ ~ 1       a ~ 0       /a ~ 1
        .profile ?profile 0 .profile *profile 1            a/.b a/?b 0 a.b a?b 1   / ? 0
        ~ ? 0      .a [.]a 0   x. x[.] 1   B [a-c] 1   b [A-C] 1   d [a-c] 0   b [!a-c] 0
        d [^a-c] 1 / [!a] 1    ] []] 1     ] [!]] 0    - [a-] 1    - [-a] 1    b [a-] 0
        ] [\]] 1   b [a\-c] 0  - [a\-c] 1  b [a-\c] 1  a [a/] 0    a [a\/] 0   a [!/] 0
        a [a 0     a [a- 0     a/b/c a*c 1 a * 1       ~ * 1       abc a*? 1   a a*? 0
        a/ a*? 0   a/b a** 0   a a** 1     abcd a*?d 1 ad a*?d 0   a*b a\*b 1  axb a\*b 0
        a a\ 0     abc *\ 0    xb *[ab] 1  x-b *\-b 1  a. *[.] 1   /. *[.] 0)");
    std::string text, pattern;
    for (bool match; cases >> text >> pattern >> match;) {
        for (std::string* s : {&text, &pattern})
            *s = *s == "~" ? "" : *s;
        SCOPED_TRACE(text + " | " + pattern);
        EXPECT_EQ(Gk_ROString(text.c_str()).matchPathPattern(pattern.c_str()), match);
        EXPECT_EQ(NaiveMatch(text.c_str(), text.c_str(), pattern.c_str()), match);
    }
    EXPECT_TRUE(cases.eof());
    EXPECT_FALSE(At("x.a", 1).matchPathPattern("?a"));  // a view's first byte starts a name
}

TEST(PathPattern, AgreesWithThePlainRulesOnRandomInput) {
    // Single bytes, stray syntax among them, and a few whole pieces.
    const std::vector<std::string> pieces = {"a",  "b",    "A",    ".",     "/",    "-",   "a",
                                             ".",  "?",    "*",    "*",     "[",    "]",   "!",
                                             "\\", "[.a]", "[!b]", "[A-b]", "[]-]", "\\*", "\\["};
    const std::string textBytes = "abA./-";
    std::mt19937 random(20240611);
    auto pick = [&random](const std::string& from) { return from[random() % from.size()]; };
    std::vector<std::string> mismatches;
    int matches = 0;
    for (int n = 0; n < 20000; ++n) {
        // Three texts in four are shaped after the pattern, so that many of them match.
        std::string pattern, text;
        for (int i = random() % 13; i > 0; --i) {
            const std::string& piece = pieces[random() % pieces.size()];
            pattern += piece;
            const bool literal = textBytes.find(piece) != std::string::npos && random() % 4 != 0;
            text.append(piece == "*" ? random() % 4 : 1, literal ? piece[0] : pick(textBytes));
        }
        if (n % 4 == 0)
            std::generate(text.begin(), text.end(), [&] { return pick(textBytes); });
        text.resize(std::min<size_t>(text.size(), 12));
        const bool expected = NaiveMatch(text.c_str(), text.c_str(), pattern.c_str());
        matches += expected;
        // Every other case reads both from an offset; "q/" keeps the text's start a name start.
        const int offset = n % 2 * 2;
        const Gk_ROString textView = At(((offset ? "q/" : "") + text).c_str(), offset);
        const Gk_ROString patternView = At(((offset ? "zz" : "") + pattern).c_str(), offset);
        if (textView.matchPathPattern(patternView) != expected && mismatches.size() < 20)
            mismatches.push_back(text + " | " + pattern + (expected ? " matches" : " does not"));
    }
    EXPECT_EQ(mismatches, std::vector<std::string>());
    EXPECT_GT(matches, 2500);  // the comparison is not all misses
}

TEST(PathPattern, ManyStarsAgainstALongTextStillAnswer) {
    const std::string text(2000, 'a');
    EXPECT_FALSE(Gk_ROString(text.c_str()).matchPathPattern("*a*a*a*a*a*a*a*a*b"));
    EXPECT_TRUE(Gk_ROString((text + "b").c_str()).matchPathPattern("*a*a*a*a*a*a*a*a*b"));
}
