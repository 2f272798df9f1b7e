#include "internal/Platform.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>

using korx::detail::Format;
using korx::detail::FormatShiftedV;
using korx::detail::Reformat;

namespace {

std::string Shifted(int* result, const char* format, ...) {
    char buffer[1024];
    va_list args;
    va_start(args, format);
    *result = FormatShiftedV(buffer, sizeof buffer, format, args);
    va_end(args);
    return buffer;
}

std::string Shifted(const char* format, ...) {
    char buffer[1024];
    va_list args;
    va_start(args, format);
    FormatShiftedV(buffer, sizeof buffer, format, args);
    va_end(args);
    return buffer;
}

std::string PointerAsInt(const void* p) {
    return std::to_string(static_cast<int>(reinterpret_cast<uintptr_t>(p)));
}

}  // namespace

TEST(BoundedFormat, ReportsACutTextAsMinusOneAndAlwaysTerminates) {
    struct Case {
        size_t textLength;
        int result;
        size_t kept;
    };
    const Case cases[] = {
        {1022, 1022, 1022},
        {1023, 1023, 1023},
        {1024, -1, 1023},  // no room for the terminator: cut
        {5000, -1, 1023},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.textLength);
        const std::string text(c.textLength, 'x');
        char buffer[1025];
        buffer[1024] = '#';
        EXPECT_EQ(Format(buffer, 1024, "%s", text.c_str()), c.result);
        EXPECT_EQ(std::string(buffer), text.substr(0, c.kept));
        EXPECT_EQ(buffer[1024], '#');
    }
}

TEST(BoundedFormat, EmptyBufferAndNullFormat) {
    char buffer[4] = {'a', 'b', 'c', '\0'};
    EXPECT_EQ(Format(buffer, 0, "%d", 5), -1);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(Format(buffer, sizeof buffer, nullptr), 0);
    EXPECT_STREQ(buffer, "");
}

TEST(SecondPass, TurnsDoubledPercentIntoOneAndCopiesEverythingElse) {
    struct Case {
        const char* text;
        const char* result;
    };
    const Case cases[] = {
        {"plain", "plain"},
        {"50%%", "50%"},
        {"%%%", "%%"},
        {"100% done", "100% done"},  // "% d" looks like a conversion: copied, never formatted
        {"%s [%d] %5.2f %n", "%s [%d] %5.2f %n"},
        {"ends with %", "ends with %"},
        {"", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text);
        char buffer[64];
        EXPECT_EQ(Reformat(buffer, sizeof buffer, c.text), static_cast<int>(strlen(c.result)));
        EXPECT_STREQ(buffer, c.result);
    }
}

TEST(SecondPass, PercentSignsSurvivingTheFirstPassAreReadAgain) {
    char first[64];
    char second[64];
    Format(first, sizeof first, "%s at %d%%", "a%%b", 7);
    EXPECT_STREQ(first, "a%%b at 7%");
    Reformat(second, sizeof second, first);
    EXPECT_STREQ(second, "a%b at 7%");
}

TEST(SecondPass, CutsLongTexts) {
    const std::string text = std::string(1023, 'y') + "%%" + std::string(4000, 'z');
    char buffer[1024];
    EXPECT_EQ(Reformat(buffer, sizeof buffer, text.c_str()), -1);
    EXPECT_EQ(std::string(buffer), std::string(1023, 'y'));
    EXPECT_EQ(Reformat(buffer, sizeof buffer, std::string(1023, 'y').c_str()), 1023);
    EXPECT_EQ(Reformat(buffer, sizeof buffer, nullptr), 0);
}

TEST(ShiftedFormat, FirstConversionReceivesTheFormatAndLaterOnesShiftByOne) {
    const char* twoTexts = "%s|%s";
    EXPECT_EQ(Shifted(twoTexts, "a", "b"), "%s|%s|a");

    const char* noArguments = "%d items";
    EXPECT_EQ(Shifted(noArguments), PointerAsInt(noArguments) + " items");

    const char* numbers = "%f %f %f";
    EXPECT_EQ(Shifted(numbers, 1.25, 2.5, 3.75), "0.000000 1.250000 2.500000");

    const char* withPercent = "100%% %s";
    EXPECT_EQ(Shifted(withPercent, "x"), "100% 100%% %s");
}

TEST(ShiftedFormat, ValuesOfAnotherTypeAreRenderedWithoutBeingDereferenced) {
    const char* text = "a";
    const char* mixed = "%s %d %s";
    // %d receives the text pointer's low bits; %s receives the integer and never reads it.
    EXPECT_EQ(Shifted(mixed, text, 5, "b"),
              std::string(mixed) + " " + PointerAsInt(text) + " (null)");

    const char* wide = "%s %ls";
    EXPECT_EQ(Shifted(wide, "narrow", L"wide"), std::string(wide) + " (null)");
}

TEST(ShiftedFormat, StarWidthsShiftLikeValues) {
    const char* format = "%d %*d";
    const std::string expected = PointerAsInt(format) + "    5";
    EXPECT_EQ(Shifted(format, 4, 5, 6), expected);
}

TEST(ShiftedFormat, NeverWritesThroughPercentN) {
    int target = 42;
    const char* format = "%s%n";
    EXPECT_EQ(Shifted(format, &target, &target), format);
    EXPECT_EQ(target, 42);
}

TEST(ShiftedFormat, KeepsWhatIsNotAConversionAndCutsLongTexts) {
    const char* unknown = "%y %s";
    EXPECT_EQ(Shifted(unknown), "%y %y %s");

    const std::string longFormat = std::string(2000, 'w') + "%s";
    int result = 0;
    EXPECT_EQ(Shifted(&result, longFormat.c_str()), std::string(1023, 'w'));
    EXPECT_EQ(result, -1);
}

TEST(PrecisionAndDouble, EachConversionTakesTheNextArgumentFromItsBits) {
    struct Case {
        const char* format;
        const char* text;
    };
    const Case cases[] = {
        {"%.*f", "1.500"},
        {"%lf", "0.000000"},           // reads the precision's bits as a double
        {"%d %f %d", "3 1.500000 0"},  // nothing left for the last one: zero
        {"%s", "(null)"},              // never dereferenced
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.format);
        char buffer[64];
        korx::detail::FormatPrecisionAndDouble(buffer, sizeof buffer, c.format, 3, 1.5);
        EXPECT_STREQ(buffer, c.text);
    }
}

TEST(Clocks, MillisecondClockAndCounterAdvanceMonotonically) {
    const long startMs = korx::detail::ClockMilliseconds();
    const long long startTicks = korx::detail::HighResolutionCounter();
    EXPECT_GE(startMs, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    EXPECT_GE(korx::detail::ClockMilliseconds() - startMs, 30);
    EXPECT_EQ(korx::detail::HighResolutionFrequency(), 1000000000LL);
    EXPECT_GE(korx::detail::HighResolutionCounter() - startTicks, 30000000LL);
}

TEST(Allocator, ReportsAtLeastTheRequestedSize) {
    void* block = std::malloc(100);
    EXPECT_GE(korx::detail::AllocatedSize(block), 100u);
    std::free(block);
}
