#include <korx/KORXLogger.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <string>

#include "internal/MessageText.h"
#include "internal/Platform.h"

namespace {

// Each reporter's indentation: three blanks a step before every Printf text.
int32_t g_infoTabs = 0;
int32_t g_warningTabs = 0;
int32_t g_verboseTabs = 0;
int32_t g_traceTabs = 0;

constexpr int kBlanksPerTab = 3;

// The reporter's text: the indentation, then format filled in and cut at 1,024 bytes. The
// event formats it a second time; only what fits its message is kept.
std::string indentedText(int tabs, const char* format, va_list args) {
    const long long blanks = std::min<long long>(
        std::max(0LL, static_cast<long long>(kBlanksPerTab) * tabs), korx::detail::kMessageBytes);
    std::string text(static_cast<size_t>(blanks), ' ');
    char formatted[korx::detail::kMessageBytes];
    korx::detail::FormatV(formatted, sizeof formatted, format, args);
    return text + formatted;
}

}  // namespace

// Every reporter has the same members over its own indentation counter and event; Verbose has
// no NoTabPrintf. Printf indents, NoTabPrintf does not; a null format publishes nothing.
#define KORX_DEFINE_REPORTER(Reporter, tabs, Event)                                                \
    Reporter::Reporter() = default;                                                                \
    Reporter::~Reporter() = default;                                                               \
    void Reporter::Publish(int indentation, const char* format, va_list args) {                    \
        if (format == nullptr)                                                                     \
            return;                                                                                \
        const std::string text = indentedText(indentation, format, args);                          \
        Event event(Event::Reformatted{text.c_str()});                                             \
        KORXEventBus::Fire(event);                                                                 \
    }                                                                                              \
    void Reporter::Printf(const char* format, ...) {                                               \
        va_list args;                                                                              \
        va_start(args, format);                                                                    \
        Publish(tabs, format, args);                                                               \
        va_end(args);                                                                              \
    }                                                                                              \
    void Reporter::Tab() { ++tabs; }                                                               \
    void Reporter::Untab() { --tabs; }

#define KORX_DEFINE_NO_TAB_PRINTF(Reporter)                                                        \
    void Reporter::NoTabPrintf(const char* format, ...) {                                          \
        va_list args;                                                                              \
        va_start(args, format);                                                                    \
        Publish(0, format, args);                                                                  \
        va_end(args);                                                                              \
    }

KORX_DEFINE_REPORTER(KORXInfo, g_infoTabs, KORXMessageEvent)
KORX_DEFINE_NO_TAB_PRINTF(KORXInfo)
KORX_DEFINE_REPORTER(KORXWarning, g_warningTabs, KORXWarningEvent)
KORX_DEFINE_NO_TAB_PRINTF(KORXWarning)
// A message event, not a verbose one: callers rely on verbose reports showing at level 50.
KORX_DEFINE_REPORTER(KORXVerbose, g_verboseTabs, KORXMessageEvent)
KORX_DEFINE_REPORTER(KORXTrace, g_traceTabs, KORXTraceEvent)
KORX_DEFINE_NO_TAB_PRINTF(KORXTrace)

#undef KORX_DEFINE_NO_TAB_PRINTF
#undef KORX_DEFINE_REPORTER

// ---- Trace timers -----------------------------------------------------------------------------

namespace {
long long g_timerFrequency = 0;
}  // namespace

void* KORXTrace::StartTimer() {
    g_timerFrequency = korx::detail::HighResolutionFrequency();
    if (g_timerFrequency == 0)
        return new long long(static_cast<long long>(std::time(nullptr)));
    return new long long(korx::detail::HighResolutionCounter());
}

float KORXTrace::StopTimer(void* timer) {
    if (timer == nullptr)
        return 0.0f;
    const long long start = *static_cast<long long*>(timer);
    if (g_timerFrequency == 0) {
        // Calendar seconds: the cell stays allocated, as callers of this path have always had.
        return static_cast<float>(
            std::difftime(std::time(nullptr), static_cast<std::time_t>(start)) * 1000.0);
    }
    const long long now = korx::detail::HighResolutionCounter();
    delete static_cast<long long*>(timer);
    return static_cast<float>(now - start) * 1000.0f / static_cast<float>(g_timerFrequency);
}
