#include <korx/Gk_Exception.h>
#include <korx/Gk_StringParser.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "support/event_recorder.h"

namespace {

// Sets errno for a test and gives the caller's value back afterwards.
struct ErrnoGuard {
    int saved = errno;
    explicit ErrnoGuard(int value) { errno = value; }
    ~ErrnoGuard() { errno = saved; }
};

// The source lines of the parser's assertions published while convert runs; any other event
// shows as its name.
template <class Convert> std::vector<std::string> Asserted(Convert convert) {
    const std::string source = "source_utilities/ind/KORXStringParser [";
    EventRecorder recorder;
    convert();
    std::vector<std::string> lines;
    for (const RecordedEvent& e : recorder.events)
        lines.push_back(e.name == "KORXAssertEvent" && e.message.rfind(source, 0) == 0
                            ? e.message.substr(source.size(), e.message.size() - source.size() - 1)
                            : e.name + ": " + e.message);
    return lines;
}

using Lines = std::vector<std::string>;

}  // namespace

TEST(StringParser, ClassifiesNumbersLeniently) {
    // text, start, isInteger, isUnsignedInteger, isReal
    const std::tuple<const char*, int, bool, bool, bool> cases[] = {
        {"12", 0, true, true, true},        {"+12", 0, true, false, true},
        {"-12", 0, true, false, true},      {"010", 0, true, true, true},
        {"0x1F", 0, true, true, true},      {"-0x1f", 0, true, false, true},
        {"0X1F", 0, false, false, true},    {"0x1G", 0, false, false, true},
        {"0x", 0, true, true, true},        {"", 0, true, true, false},
        {"+", 0, true, false, false},       {"+-1", 0, false, false, false},
        {" 1", 0, false, false, false},     {"12a", 0, false, false, true},
        {"abc", 0, false, false, false},    {".5", 0, false, false, true},
        {"5.", 0, false, false, true},      {"-.5e2", 0, false, false, true},
        {"5.e3", 0, false, false, true},    {"5.e3x", 0, false, false, false},
        {"1..5", 0, false, false, true},    {"1.5x", 0, false, false, true},
        {".", 0, false, false, false},      {".e5", 0, false, false, false},
        {"1e", 0, false, false, true},      {"1e+5", 0, false, false, true},
        {"1E-0x1f", 0, false, false, true}, {"1.5e3x", 0, false, false, false},
        {"ab+12", 2, true, false, true},    {"x0x1f", 1, true, true, true},
        {"1.5e3", 2, false, false, true},   {"1.5e3x", 4, false, false, true},
        {"1e5", 1, false, false, false},    {"12a", 2, false, false, false},
        {"ab", 2, true, true, false}};
    for (const auto& [text, start, integer, unsignedInteger, real] : cases) {
        Gk_StringParser parser{Gk_String(text)};
        EXPECT_EQ(std::make_tuple(parser.isInteger(start), parser.isUnsignedInteger(start),
                                  parser.isReal(start)),
                  std::make_tuple(integer, unsignedInteger, real))
            << '"' << text << "\" from " << start;
    }
}

TEST(StringParser, CountsDigitRunsAndKeepsWhereTheyStopped) {
    // text, start, hexadecimal, count, index of the end pointer (-1: none set). The terminator
    // stops a run; a buffer without one does not.
    const std::tuple<Gk_String, int, bool, int, int> cases[] = {
        {"12ab!", 0, false, 2, 2},
        {"12ab!", 0, true, 4, 4},
        {"12ab!", 2, false, 0, 2},
        {"12ab!", 1, true, 3, 4},
        {"123", 0, false, 3, 3},
        {"123", 3, false, 0, 3},
        {"123", 4, false, 0, -1},
        {"123", 9, true, 0, -1},
        {Gk_String("123", 3), 0, false, 3, -1},
        {Gk_String("12a", 3), 0, true, 3, -1}};
    for (const auto& [text, start, hex, count, end] : cases) {
        Gk_StringParser parser(text);
        const int n = hex ? parser.countHexDigits(start) : parser.countDigits(start);
        const char* first = text;
        const int stop = parser.endPointer() == nullptr ? -1 : int(parser.endPointer() - first);
        EXPECT_EQ(std::make_pair(n, stop), std::make_pair(count, end))
            << static_cast<const char*>(text) << " from " << start << (hex ? " hex" : "");
    }
}

TEST(StringParser, ConvertsAndAssertsOnOverflowAndLeftoverText) {
    // text, errno before (the conversion does not reset it), 'i' intValue, 'u' uIntValue or
    // 'r' realValue, value, lines of the assertions raised
    const std::tuple<const char*, int, char, double, Lines> cases[] = {
        {"-12", 0, 'i', -12, {}},
        {"010", 0, 'i', 8, {}},
        {"0X1f", 0, 'i', 31, {}},
        {"12a", 0, 'i', 12, {"73"}},
        {"99999999999999999999", 0, 'i', double(LONG_MAX), {"69"}},
        {"12", ERANGE, 'i', 12, {"69"}},
        {"12a", ERANGE, 'i', 12, {"69", "73"}},
        {"0x10", 0, 'u', 16, {}},
        {"-1", 0, 'u', double(ULONG_MAX), {}},
        {"7 ", 0, 'u', 7, {"73"}},
        {"-2.5e1", 0, 'r', -25, {}},
        {"1.5.25", 0, 'r', 1.75, {}},  // a second '.' starts a fraction that is added
        {"1.5.25.5", 0, 'r', 1.75, {"73"}},
        {"1.5x", 0, 'r', 1.5, {"73"}},
        {".", 0, 'r', 0, {"73"}},
        {"1e999", 0, 'r', HUGE_VAL, {"69"}},
    };
    for (const auto& [text, errnoBefore, kind, value, lines] : cases) {
        SCOPED_TRACE(std::string(text) + " " + kind + (errnoBefore ? " after ERANGE" : ""));
        ErrnoGuard guard(errnoBefore);
        Gk_StringParser parser{Gk_String(text)};
        double result = -99;
        EXPECT_EQ(Asserted([&, kind = kind] {
                      result = kind == 'i'   ? double(parser.intValue())
                               : kind == 'u' ? double(parser.uIntValue())
                                             : parser.realValue();
                  }),
                  lines);
        EXPECT_EQ(result, value);
        EXPECT_TRUE(parser.isClean());  // an assertion that returns leaves the conversion done
    }
}

TEST(StringParser, ComparesAndReadsTheSharedText) {
    Gk_String text("abc");
    Gk_StringParser parser(text);
    EXPECT_EQ(std::make_tuple(parser.isString("abc"), parser.isString("ab"),
                              parser.isString("abcd"), parser.firstChar()),
              std::make_tuple(true, false, false, 'a'));
    text[0] = 'x';
    EXPECT_EQ(std::make_pair(parser.isString("xbc"), parser.firstChar()),
              std::make_pair(true, 'x'));
}
