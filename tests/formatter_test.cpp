#include <korx/KORXStreamFormatter.h>
#include <korx/KORXString.h>

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "support/event_recorder.h"

TEST(StreamFormatter, DefaultFormatsKeepTheLetterAfterUnsignedLong) {
    CaptureStream out;
    KORXStreamFormatter f(&out);
    f << 5UL << "|" << -3 << "|" << 7U << "|" << -8L << "|" << 1.5 << "|" << 'c';
    f << "|" << -9LL << "|" << 10ULL;
    EXPECT_EQ(out.text, "5l|-3|7|-8|1.500000|c|-9|10");
}

TEST(StreamFormatter, ANullStreamTakesEverythingAndWritesNothing) {
    KORXStreamFormatter f(nullptr);
    f << "text" << 1 << 2.0 << 3UL << KORXString("wide") << f.getEndline() << f.format("%d", 4);
    CaptureStream out;
    EXPECT_EQ(f.installOutputStream(&out), nullptr);
    f << "now";
    EXPECT_EQ(out.text, "now");
}

TEST(StreamFormatter, PrecisionGoesBeforeTheValueAndSurvivesResetFormat) {
    CaptureStream out;
    KORXStreamFormatter f(&out);
    EXPECT_STREQ(f.setDoubleFormat("%.*f", true, 3), "%lf");
    f << 1.5 << " ";
    f.resetFormat();
    // "%lf" now receives the precision (an int) where it reads its double: a tiny number.
    f << 1.5;
    EXPECT_EQ(out.text, "1.500 0.000000");
}

TEST(StreamFormatter, SettersReturnThePreviousFormatsAndResetRestoresThem) {
    CaptureStream out;
    KORXStreamFormatter f(&out);
    EXPECT_STREQ(f.setIntFormat("<%d>"), "%d");
    EXPECT_STREQ(f.setUIntFormat("%x"), "%u");
    EXPECT_STREQ(f.setLongFormat("%+ld"), "%ld");
    EXPECT_STREQ(f.setULongFormat("%lu"), "%ul");
    f << 1 << 255U << 2L << 3UL;
    f.resetFormat();
    f << 1 << 255U << 2L << 3UL;
    EXPECT_EQ(out.text, "<1>ff+23125523l");
}

TEST(StreamFormatter, SharedObjectsWriteTheirTexts) {
    CaptureStream out;
    KORXStreamFormatter f(&out);
    KORXStreamFormatterMarginHandle margin = f.getMargin();
    margin->incr();
    margin->incr();
    f << margin << "x" << f.getSpace() << "y" << f.getEndline() << f.getEmpty();
    margin->decr();
    margin->decr();
    margin->decr();
    f << margin << "|" << f.define(12L) << f.refer(13L);
    const int value = 0;
    f << "|" << f.define(static_cast<const void*>(&value));
    const std::string pointer = std::to_string(reinterpret_cast<intptr_t>(&value));
    EXPECT_EQ(out.text, "        x y\n|1213|" + pointer);
    EXPECT_EQ(margin->level(), -1);  // no lower bound
}

TEST(StreamFormatter, FormatObjectsShareOneBuffer) {
    CaptureStream out;
    KORXStreamFormatter f(&out);
    KORXStreamFormatterObjectHandle first = f.format("first %d", 1);
    KORXStreamFormatter other(&out);
    KORXStreamFormatterObjectHandle second = other.format("second %s", "!");
    f << first << "|" << second;
    EXPECT_EQ(out.text, "second !|second !");
}

TEST(StreamFormatter, WideStringsGoOutInTheLocalesMultibyteForm) {
    CaptureStream out;
    KORXStreamFormatter f(&out);
    f << KORXString("plain") << KORXString() << "|" << KORXString("caf\xC3\xA9");
    EXPECT_EQ(out.text, "plain|");  // the "C" locale cannot write the accent: nothing
    const std::string previous = std::setlocale(LC_CTYPE, nullptr);
    if (std::setlocale(LC_CTYPE, "C.UTF-8") != nullptr) {
        f << KORXString("caf\xC3\xA9 \xF0\x9F\x98\x80");
        EXPECT_EQ(out.text, "plain|caf\xC3\xA9 \xF0\x9F\x98\x80");
    }
    std::setlocale(LC_CTYPE, previous.c_str());
}

TEST(HTMLStreamFormatter, WritesThePageMarkupByteForByte) {
    CaptureStream out;
    {
        KORXHTMLStreamFormatter f(&out, "Report", "#FFFFFF");
        f.getMargin()->incr();
        f << f.getMargin() << "a" << f.getSpace() << "b" << f.getEndline();
        f << f.define(7L) << f.refer(7L);
    }
    EXPECT_EQ(out.text, "<HTML> <title>Report</title><BODY BGCOLOR=\"#FFFFFF\" > "
                        "&nbsp;&nbsp;&nbsp;&nbsp;a&nbsp;b<br>\r\n"
                        "<a name= \"7\">7</a><a href=\"#7\">7</a>"
                        "</BODY> </HTML>");
}
