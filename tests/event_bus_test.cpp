#include <korx/KORXEventBus.h>
#include <korx/KORXString.h>

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <deque>
#include <functional>
#include <initializer_list>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace {

KORXEventBus& Bus() { return KORXEventBus::GetEventBus(); }

// Registers listeners and removes every one of them when the test leaves its scope.
struct Registrations {
    Registrations(std::initializer_list<KORXEventListener*> listeners) {
        for (KORXEventListener* listener : listeners)
            Add(listener);
    }
    ~Registrations() {
        for (KORXEventListener* listener : added)
            Bus().RemoveListener(listener);
    }
    void Add(KORXEventListener* listener) {
        added.push_back(listener);
        Bus().AddListener(listener);
    }
    std::vector<KORXEventListener*> added;
};

// Writes its letter to a shared log for each event, then runs its one-shot action if any.
struct Recorder : KORXEventListener {
    Recorder(std::string& log, char letter) : log(&log), letter(letter) {}
    void HandleEvent(KORXEvent&) override {
        *log += letter;
        std::function<void()> action;
        action.swap(once);
        if (action)
            action();
    }
    std::string* log;
    char letter;
    std::function<void()> once;
};

// Sends one plain event; answers the letters of the listeners that saw it, in order.
std::string Delivered(std::string& log) {
    log.clear();
    KORXEvent event("KORXTestEvent", KORX_LEVEL_INFO);
    Bus().Send(event);
    return log;
}

struct TimedEvent : KORXEvent {
    TimedEvent() : KORXEvent("KORXTestTimedEvent", KORX_LEVEL_INFO) {}
    bool IsTimed() const override { return true; }
};

long ClockCode(const KORXEvent& event) {
    long ticks = 0;
    return event.GetClock(ticks);
}

long TimeCode(const KORXEvent& event) {
    long long seconds = 0;
    return event.GetTime(seconds);
}

}  // namespace

TEST(EventBus, CallsEachListenerOnceInRegistrationOrder) {
    std::string log;
    Recorder a(log, 'A'), b(log, 'B'), c(log, 'C');
    Registrations registered{&a, &b, &c, &a, nullptr};
    EXPECT_EQ(Delivered(log), "ABC");
    Bus().RemoveListener(&b);
    EXPECT_EQ(Delivered(log), "AC");
    Bus().AddListener(&b);
    EXPECT_EQ(Delivered(log), "ACB");
    Bus().RemoveListener(&a);  // added twice, registered once
    EXPECT_EQ(Delivered(log), "CB");
}

TEST(EventBus, ARemovalDuringASendSkipsTheNextListenerAndNeverReadsPastTheEnd) {
    struct Case {
        int actor, removed;
        const char* first;
        const char* second;
    };
    const Case cases[] = {
        {0, 0, "AC", "BC"},  // B moves into A's place and is skipped
        {0, 1, "AC", "AC"},  {0, 2, "AB", "AB"},
        {1, 1, "AB", "AC"},  {1, 0, "AB", "BC"},  // C moves into B's place and is skipped
        {2, 2, "ABC", "AB"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.actor << " removes " << c.removed);
        std::string log;
        Recorder listeners[] = {{log, 'A'}, {log, 'B'}, {log, 'C'}};
        Registrations registered{&listeners[0], &listeners[1], &listeners[2]};
        Recorder* removed = &listeners[c.removed];
        listeners[c.actor].once = [removed] { Bus().RemoveListener(removed); };
        EXPECT_EQ(Delivered(log), c.first);
        EXPECT_EQ(Delivered(log), c.second);
    }
}

TEST(EventBus, ListenersAddedDuringASendWaitForTheNextEvent) {
    // One listener, then enough to make the array grow under the running send.
    for (int added : {1, 40}) {
        std::string log;
        Recorder a(log, 'A'), b(log, 'B');
        std::deque<Recorder> late;
        Registrations registered{&a, &b};
        a.once = [&] {
            for (int i = 0; i < added; ++i)
                registered.Add(&late.emplace_back(log, 'n'));
        };
        EXPECT_EQ(Delivered(log), "AB");
        EXPECT_EQ(Delivered(log), "AB" + std::string(added, 'n'));
    }
}

TEST(EventBus, AThrowingListenerEndsTheSendAndTheExceptionReachesTheSender) {
    std::string log;
    Recorder a(log, 'A'), b(log, 'B'), c(log, 'C');
    Registrations registered{&a, &b, &c};
    b.once = [] { throw std::runtime_error("listener failed"); };
    KORXEvent event("KORXTestEvent", KORX_LEVEL_ERROR);
    EXPECT_THROW(KORXEventBus::Fire(event), std::runtime_error);
    EXPECT_EQ(log, "AB");
    EXPECT_EQ(Delivered(log), "ABC");
}

TEST(EventStamp, SendStampsTimedEventsOnlyAndBeforeTheListenersSeeThem) {
    std::string log;
    Recorder a(log, 'A');
    Registrations registered{&a};
    TimedEvent timed;
    KORXEvent untimed("KORXTestEvent", KORX_LEVEL_INFO);
    long codeSeen = -1;
    a.once = [&] { codeSeen = ClockCode(timed); };
    const long long before = std::time(nullptr);
    Bus().Send(timed);
    const long long after = std::time(nullptr);
    Bus().Send(untimed);

    long long seconds = 0;
    EXPECT_EQ(codeSeen, 0);
    EXPECT_EQ(timed.GetTime(seconds), 0);
    EXPECT_TRUE(seconds >= before && seconds <= after) << seconds;
    EXPECT_EQ(std::make_pair(ClockCode(untimed), TimeCode(untimed)),
              std::make_pair(0x1000001L, 0x1000001L));
}

TEST(EventStamp, TheClockCountsWallMillisecondsNotProcessorTime) {
    TimedEvent first, second;
    Bus().Send(first);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));
    Bus().Send(second);
    long start = -1, end = -1;
    first.GetClock(start);
    second.GetClock(end);
    EXPECT_GE(start, 0);
    EXPECT_TRUE(end - start >= 55 && end - start < 10000) << end - start;
}

TEST(EventStamp, SettingTheTimeAloneMarksTheClockAsSetToo) {
    KORXEvent event("KORXTestEvent", KORX_LEVEL_INFO);
    long long seconds = 5;
    EXPECT_EQ(long(event.SetTime(seconds)), 0);
    EXPECT_EQ(ClockCode(event), 0);
}

TEST(EventLevel, ParsesOnlyTheExactUpperCaseNames) {
    const auto fallback = static_cast<KORXEventLevel>(-1);
    const std::pair<const char*, int> named[] = {
        {"ALL", 0},    {"DEBUG", 10}, {"VERBOSE", 30}, {"INFO", 50},
        {"ERROR", 80}, {"ABORT", 90}, {"NONE", 999},
    };
    for (const auto& [text, level] : named) {
        KORXString string(text);
        EXPECT_EQ(KORXEvent::GetLevel(string, fallback), level) << text;
    }
    const char* unnamed[] = {
        "Info",    "info", "ALLX",     "AL",      "INFO ", " INFO",
        "ABORTED", "",     "70",       "WARNING", "TRACE",  // 70 has no name
        "ZERO",    "W",    "\xC3\x89",                      // first letters outside A .. V
    };
    for (const char* text : unnamed) {
        KORXString string(text);
        EXPECT_EQ(KORXEvent::GetLevel(string, fallback), fallback) << text;
        EXPECT_EQ(KORXEvent::GetLevel(string, KORX_LEVEL_WARNING), KORX_LEVEL_WARNING) << text;
    }
}

TEST(EventNames, AMissingOrEmptyNameMatchesNothing) {
    for (const char* name : {static_cast<const char*>(nullptr), "", "KORXErrorEvent"}) {
        SCOPED_TRACE(name == nullptr ? "null" : name);
        const bool named = name != nullptr && *name != '\0';
        const KORXEvent event(name, KORX_LEVEL_ERROR);
        EXPECT_EQ(event.GetName() != nullptr, named);
        EXPECT_EQ(event.IsA("KORXErrorEvent"), named);
        const char* others[] = {"korxerrorevent", "KORXErrorEvent ", "", nullptr};
        for (const char* other : others)
            EXPECT_FALSE(event.IsA(other));
        // The class name is "KORXEvent" whatever the event's own name.
        EXPECT_TRUE(event.IsKindOf("KORXEvent"));
        EXPECT_FALSE(event.IsKindOf("KORXErrorEvent") || event.IsKindOf(nullptr));
    }
    const KORXObject nameless("");
    EXPECT_FALSE(nameless.IsKindOf("") || nameless.IsKindOf(nullptr));
}

TEST(EventCopy, ACopyKeepsTheEventAndOutlivesItsSource) {
    std::optional<KORXEvent> copy;
    KORXEvent assigned("Other", KORX_LEVEL_DEBUG);
    {
        KORXEvent source("KORXErrorEvent", KORX_LEVEL_ERROR);
        long long seconds = 42;
        source.SetTime(seconds);
        copy.emplace(source);
        assigned = source;
    }
    for (const KORXEvent* event : {&*copy, &assigned}) {
        long long seconds = 0;
        EXPECT_EQ(long(event->GetTime(seconds)), 0);
        EXPECT_EQ(std::make_tuple(std::string(event->GetName()), event->GetEventLevel(), seconds),
                  std::make_tuple(std::string("KORXErrorEvent"), KORX_LEVEL_ERROR, 42LL));
    }
}
