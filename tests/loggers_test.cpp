#include <korx/KORXLogger.h>
#include <korx/KORXStreamFormatter.h>
#include <korx/KORXTaskEvent.h>
#include <korx/MessageHandler.h>

#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <initializer_list>
#include <sstream>
#include <string>
#include <thread>
#include <unistd.h>

#include "support/environment_guard.h"
#include "support/event_recorder.h"

namespace {

// Sets name to value, or unsets it for a null value.
void SetVariable(const char* name, const char* value) {
    if (value != nullptr)
        setenv(name, value, 1);
    else
        unsetenv(name);
}

// The message handler for one test, writing nowhere; destroyed afterwards.
class HandlerGuard {
public:
    HandlerGuard() : handler(*VantorMessageHandler::GetInstance(true)) { handler.SetSink(nullptr); }
    ~HandlerGuard() { VantorMessageHandler::DestroyInstance(); }
    MessageHandler& handler;
};

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

struct Reported {
    int severity;
    std::string text;
    bool operator==(const Reported& o) const { return severity == o.severity && text == o.text; }
};

std::vector<Reported> ReportsOf(const MessageHandler& handler) {
    std::vector<Reported> reports;
    for (const MessageHandler::Report& r : handler.GetReports()) {
        EXPECT_EQ(r.category, "VANTOR_GENERAL");
        reports.push_back({r.severity, r.text});
    }
    return reports;
}

}  // namespace

TEST(Reporters, EachFiresItsEventAtItsLevelWithItsOwnIndentation) {
    EventRecorder recorder;
    KORXInfo::Tab();
    KORXInfo::Tab();
    KORXWarning::Tab();
    KORXInfo::Printf("x");
    KORXInfo::NoTabPrintf("y");
    KORXWarning::Printf("w%d", 1);
    KORXVerbose::Printf("v");
    KORXTrace::Printf("t");
    KORXWarningEvent::Fire("fired");
    KORXVerboseEvent::Fire("verbose");
    KORXInfo::Untab();
    KORXInfo::Untab();
    KORXWarning::Untab();

    struct Expected {
        const char* name;
        int level;
        const char* message;
        const char* description;
    };
    const Expected expected[] = {
        {"KORXMessageEvent", 50, "      x", "Message :       x\n"},
        {"KORXMessageEvent", 50, "y", "Message : y\n"},
        {"KORXWarningEvent", 70, "   w1", "Warning :    w1\n"},
        {"KORXMessageEvent", 50, "v", "Message : v\n"},  // verbose reports are messages
        {"KORXTraceEvent", 10, "t", "t\n"},
        {"KORXWarningEvent", 50, "fired", "Warning : fired\n"},  // Fire sends warnings at 50
        {"KORXVerboseEvent", 30, "verbose", "verbose\n"},
    };
    ASSERT_EQ(recorder.events.size(), std::size(expected));
    for (size_t i = 0; i < std::size(expected); ++i) {
        SCOPED_TRACE(i);
        EXPECT_EQ(recorder.events[i].name, expected[i].name);
        EXPECT_EQ(recorder.events[i].level, expected[i].level);
        EXPECT_EQ(recorder.events[i].message, expected[i].message);
        EXPECT_EQ(recorder.events[i].description, expected[i].description);
    }
}

TEST(Reporters, FormatTwiceCutLongTextsAndIgnoreANullFormat) {
    EventRecorder recorder;
    KORXInfo::Printf(nullptr);
    KORXTrace::Printf("%s", "50%%");
    KORXInfo::Printf("%s", "");
    KORXInfo::Tab();
    KORXInfo::Printf("%s", std::string(5000, 'z').c_str());
    KORXInfo::Untab();
    ASSERT_EQ(recorder.events.size(), 3u);
    EXPECT_EQ(recorder.events[0].message, "50%");
    EXPECT_FALSE(recorder.events[1].hasMessage);
    EXPECT_EQ(recorder.events[1].description, "Message : \n");
    EXPECT_EQ(recorder.events[2].message, "   " + std::string(1020, 'z'));
}

TEST(Reporters, StringDumpsGoThroughTheTraceReporter) {
    EventRecorder recorder;
    const KORXString s("ab\xC5\x81");  // U+0141: its low byte is 0x41
    s.dump();
    std::string traced;
    for (const RecordedEvent& event : recorder.events) {
        EXPECT_EQ(event.name, "KORXTraceEvent");
        traced += event.message;
    }
    char expected[128];
    std::snprintf(
        expected, sizeof expected, "string 0x%x (0x%x): \"abA\" (3 chars)\n",
        static_cast<unsigned>(reinterpret_cast<uintptr_t>(&s)),
        static_cast<unsigned>(reinterpret_cast<uintptr_t>(static_cast<const KORXWChar*>(s))));
    EXPECT_EQ(traced, expected);
}

TEST(TraceTimer, MeasuresMillisecondsAndTakesANullTimer) {
    EXPECT_EQ(KORXTrace::StopTimer(nullptr), 0.0f);
    void* timer = KORXTrace::StartTimer();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_GE(KORXTrace::StopTimer(timer), 20.0f);
}

TEST(Logger, WritesFromItsLevelAndRoutesByMarker) {
    HandlerGuard guard;
    auto* out = new CaptureStream();
    KORXLogger logger;
    logger.Initialize(out, KORX_LEVEL_INFO);
    KORXTrace::Printf("below the level");
    KORXInfo::Printf("plain");
    KORXInfo::Printf("before OldLog: after");
    KORXWarning::Printf("NewLog: only forwarded");
    KORXError::Printf("bad %s", "face");
    KORXEvent silent("KORXSilentEvent", KORX_LEVEL_INFO);  // describes itself as nothing
    KORXEventBus::Fire(silent);

    EXPECT_EQ(out->text, "Message : plain\nMessage : before after\nError : bad face\n");
    const std::vector<Reported> expected = {
        {MessageHandler::Debug, "below the level"},
        {MessageHandler::Info, "Message : plain"},
        {MessageHandler::Warning, "Warning : only forwarded"},
        {MessageHandler::Error, "Error : bad face"},
    };
    EXPECT_EQ(ReportsOf(guard.handler), expected);
    logger.Finalize();
    EXPECT_EQ(logger.GetLevel(), KORX_LEVEL_NONE);
    KORXInfo::Printf("after finalize");
    EXPECT_EQ(guard.handler.GetReports().size(), expected.size());
}

namespace {

// An event at any level, describing itself as "edge".
class AtLevel : public KORXEvent {
public:
    explicit AtLevel(KORXEventLevel level) : KORXEvent("AtLevel", level) {}
    void GetFormattedDescription(KORXOutputStream* out) const override {
        KORXStreamFormatter f(out);
        f << "edge" << f.getEndline();
    }
};

}  // namespace

TEST(Logger, AnUnknownSeverityIsAnnouncedBeforeTheMessage) {
    HandlerGuard guard;
    KORXLogger logger;
    logger.Initialize(new CaptureStream(), KORX_LEVEL_ALL);
    for (KORXEventLevel level : {KORX_LEVEL_VERBOSE, KORX_LEVEL_ALL, KORX_LEVEL_NONE}) {
        AtLevel event(level);
        logger.HandleEvent(event);
    }
    const Reported unknown{MessageHandler::Info, "Message severity unknown. Report a PR."};
    const Reported edge{MessageHandler::Debug, "edge"};
    const std::vector<Reported> expected = {edge, unknown, edge, unknown, edge};
    EXPECT_EQ(ReportsOf(guard.handler), expected);
}

TEST(Logger, TakesItsLevelFromTheEnvironmentAndWritesFiles) {
    char directory[] = "/tmp/korx_logger_XXXXXX";
    ASSERT_NE(mkdtemp(directory), nullptr);
    const std::string path = std::string(directory) + "/run.log";
    {
        EnvironmentGuard guard({"KORXLogLevel"});
        SetVariable("KORXLogLevel", "ERROR");
        KORXLogger logger;
        logger.Initialize(path.c_str(), static_cast<KORXEventLevel>(-1));
        EXPECT_EQ(logger.GetLevel(), KORX_LEVEL_ERROR);
        KORXWarning::Printf("not written");
        KORXError::Printf("written");
    }
    EXPECT_EQ(ReadFile(path), "Error : written\n");
    {
        EnvironmentGuard guard({"KORXLogLevel"});
        SetVariable("KORXLogLevel", "Info");  // not a level name: the default
        KORXLogger logger;
        logger.Initialize(new CaptureStream(), static_cast<KORXEventLevel>(-1));
        EXPECT_EQ(logger.GetLevel(), KORX_LEVEL_INFO);
    }
    KORXLogger missing;
    missing.Initialize((std::string(directory) + "/no/such/dir/run.log").c_str(), KORX_LEVEL_ALL);
    EXPECT_EQ(missing.GetLevel(), KORX_LEVEL_NONE);  // stays unregistered
    std::remove(path.c_str());
    rmdir(directory);
}

TEST(ConsoleLogger, InfoToStandardOutputWarningsAndErrorsToStandardError) {
    struct Case {
        const char* tracesLevel;
        const char* out;
        const char* err;
    };
    const Case cases[] = {
        {nullptr, "Message : info\n", "Warning : warn\nError : error\n"},
        {"DEBUG", "trace\nMessage : info\n", "Warning : warn\nError : error\n"},
        {"WARNING", "", ""},  // not a level name: nothing passes 999
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.tracesLevel != nullptr ? c.tracesLevel : "unset");
        EnvironmentGuard guard({"KORXConsoleTracesLevel"});
        SetVariable("KORXConsoleTracesLevel", c.tracesLevel);
        KORXConsoleLogger console;
        console.Initialize(static_cast<KORXEventLevel>(-1));
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        KORXTrace::Printf("trace");
        KORXInfo::Printf("info");
        KORXWarning::Printf("warn");
        KORXError::Printf("error");
        EXPECT_EQ(testing::internal::GetCapturedStdout(), c.out);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), c.err);
    }
}

namespace {

// A task event with stamps set by hand, as Send would set them.
void Stamp(KORXEvent& event, long long seconds, long milliseconds) {
    event.SetTime(seconds);
    event.SetClock(milliseconds);
}

}  // namespace

TEST(TimingLogger, ReportsClockTimeUpTo600SecondsAndCalendarTimeBeyond) {
    struct Case {
        long long seconds;
        long clock;
        const char* report;
    };
    const Case cases[] = {
        {2, 2000, "Read File Time = 2.00 seconds."},
        {600, 1234, "Read File Time = 1.23 seconds."},  // 600 s is still clock time
        {601, 999999, "Read File Time = 601.00 seconds."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.seconds);
        KORXTimingLogger timer;
        KORXStartTaskEvent start("start", "Read File", KORX_LEVEL_INFO);
        KORIResult ok(0);
        KORXEndTaskEvent end(ok, "end", "Read File", KORX_LEVEL_INFO);
        Stamp(start, 1000, 0);
        Stamp(end, 1000 + c.seconds, c.clock);
        EventRecorder recorder;
        timer.HandleEvent(start);
        timer.HandleEvent(end);
        ASSERT_EQ(recorder.events.size(), 1u);
        EXPECT_EQ(recorder.events[0].message, c.report);
        EXPECT_EQ(timer.GetOpenTaskCount(), 0);
    }
}

TEST(TimingLogger, DiscardsTasksOpenedInsideAndIgnoresUnknownEnds) {
    KORXTimingLogger timer;
    KORIResult ok(0);
    KORXStartTaskEvent outer("s", "Outer", KORX_LEVEL_INFO);
    KORXStartTaskEvent inner("s", "Inner", KORX_LEVEL_INFO);
    KORXEndTaskEvent endOuter(ok, "e", "Outer", KORX_LEVEL_INFO);
    KORXEndTaskEvent endUnknown(ok, "e", "Unknown", KORX_LEVEL_INFO);
    KORXMessageEvent untimed("not a task");
    for (KORXEvent* e : std::initializer_list<KORXEvent*>{&outer, &inner, &endOuter, &endUnknown})
        Stamp(*e, 5, 0);
    EventRecorder recorder;
    timer.HandleEvent(untimed);
    timer.HandleEvent(outer);
    timer.HandleEvent(inner);
    EXPECT_EQ(timer.GetOpenTaskCount(), 2);
    timer.HandleEvent(endUnknown);
    timer.HandleEvent(endOuter);
    EXPECT_EQ(timer.GetOpenTaskCount(), 0);
    ASSERT_EQ(recorder.events.size(), 1u);
    EXPECT_EQ(recorder.events[0].message, "Outer Time = 0.00 seconds.");
}

TEST(TimingLoggerDeathTest, SetUpTurnsTimingOnOnlyForYes) {
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    for (const char* value : {"Yes", "yes"}) {
        const bool on = std::string(value) == "Yes";
        EXPECT_EXIT(
            {
                setenv("KORXTaskTiming", value, 1);
                EventRecorder recorder;
                KORXTimingLogger::SetUp();
                std::fprintf(stderr, "[%d %zu]", KORXTimingLogger::GetTimer().IsInitialized(),
                             recorder.events.size());
                std::exit(0);
            },
            testing::ExitedWithCode(0), on ? "\\[1 1\\]" : "\\[0 0\\]");
    }
}
