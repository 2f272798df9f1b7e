#include "internal/Platform.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <thread>
#include <tuple>

using korx::detail::Format;
using korx::detail::FormatShiftedV;
using korx::detail::Reformat;

namespace {

int g_shiftedResult = 0;  // what the last Shifted call returned

std::string Shifted(const char* format, ...) {
    char buffer[1024];
    va_list args;
    va_start(args, format);
    g_shiftedResult = FormatShiftedV(buffer, sizeof buffer, format, args);
    va_end(args);
    return buffer;
}

std::string PointerAsInt(const void* p) {
    return std::to_string(static_cast<int>(reinterpret_cast<uintptr_t>(p)));
}

}  // namespace

TEST(BoundedFormat, ReportsACutTextAsMinusOneAndAlwaysTerminates) {
    // text length, result, characters kept
    const std::tuple<size_t, int, size_t> cases[] = {
        {1023, 1023, 1023}, {1024, -1, 1023}, {5000, -1, 1023}};  // 1024: no room for the end
    for (const auto& [length, result, kept] : cases) {
        const std::string text(length, 'x');
        char buffer[1025];
        buffer[1024] = '#';
        EXPECT_EQ(Format(buffer, 1024, "%s", text.c_str()), result) << length;
        EXPECT_EQ(std::string(buffer), text.substr(0, kept)) << length;
        EXPECT_EQ(buffer[1024], '#') << length;
    }

    char buffer[4] = {'a', 'b', 'c', '\0'};
    EXPECT_EQ(Format(buffer, 0, "%d", 5), -1);
    EXPECT_STREQ(buffer, "abc");
    EXPECT_EQ(Format(buffer, sizeof buffer, nullptr), 0);
    EXPECT_STREQ(buffer, "");
}

TEST(SecondPass, TurnsDoubledPercentIntoOneAndCopiesEverythingElse) {
    // "% d" in "100% done" looks like a conversion: copied, never formatted.
    const std::pair<const char*, const char*> cases[] = {
        {"plain", "plain"},
        {"50%%", "50%"},
        {"%%%", "%%"},
        {"100% done", "100% done"},
        {"%s [%d] %5.2f %n", "%s [%d] %5.2f %n"},
        {"ends with %", "ends with %"},
        {"", ""},
    };
    for (const auto& [text, result] : cases) {
        char buffer[64];
        EXPECT_EQ(Reformat(buffer, sizeof buffer, text), static_cast<int>(strlen(result))) << text;
        EXPECT_STREQ(buffer, result);
    }

    const std::string cut = std::string(1023, 'y') + "%%" + std::string(4000, 'z');
    char buffer[1024];
    EXPECT_EQ(Reformat(buffer, sizeof buffer, cut.c_str()), -1);
    EXPECT_EQ(std::string(buffer), std::string(1023, 'y'));
    EXPECT_EQ(Reformat(buffer, sizeof buffer, std::string(1023, 'y').c_str()), 1023);
    EXPECT_EQ(Reformat(buffer, sizeof buffer, nullptr), 0);
}

TEST(ShiftedFormat, FirstConversionReceivesTheFormatAndLaterOnesShiftByOne) {
    EXPECT_EQ(Shifted("%s|%s", "a", "b"), "%s|%s|a");
    EXPECT_EQ(Shifted("%f %f %f", 1.25, 2.5, 3.75), "0.000000 1.250000 2.500000");
    EXPECT_EQ(Shifted("100%% %s", "x"), "100% 100%% %s");
    EXPECT_EQ(Shifted("%y %s"), "%y %y %s");  // not a conversion: kept, and takes nothing
    const char* noArguments = "%d items";
    EXPECT_EQ(Shifted(noArguments), PointerAsInt(noArguments) + " items");
    const char* star = "%d %*d";  // a '*' width shifts like a value
    EXPECT_EQ(Shifted(star, 4, 5, 6), PointerAsInt(star) + "    5");

    const std::string longFormat = std::string(2000, 'w') + "%s";
    EXPECT_EQ(Shifted(longFormat.c_str()), std::string(1023, 'w'));
    EXPECT_EQ(g_shiftedResult, -1);
}

TEST(ShiftedFormat, ValuesOfAnotherTypeAreNeitherDereferencedNorWrittenThrough) {
    const char* text = "a";
    const char* mixed = "%s %d %s";
    // %d receives the text pointer's low bits; %s receives the integer and never reads it.
    EXPECT_EQ(Shifted(mixed, text, 5, "b"), "%s %d %s " + PointerAsInt(text) + " (null)");
    EXPECT_EQ(Shifted("%s %ls", "narrow", L"wide"), "%s %ls (null)");
    int target = 42;
    EXPECT_EQ(Shifted("%s%n", &target, &target), "%s%n");
    EXPECT_EQ(target, 42);
}

TEST(PrecisionAndDouble, EachConversionTakesTheNextArgumentFromItsBits) {
    const std::pair<const char*, const char*> cases[] = {
        {"%.*f", "1.500"},
        {"%lf", "0.000000"},           // reads the precision's bits as a double
        {"%d %f %d", "3 1.500000 0"},  // nothing left for the last one: zero
        {"%s", "(null)"},              // never dereferenced
    };
    for (const auto& [format, text] : cases) {
        char buffer[64];
        korx::detail::FormatPrecisionAndDouble(buffer, sizeof buffer, format, 3, 1.5);
        EXPECT_STREQ(buffer, text) << format;
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
