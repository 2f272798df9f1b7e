#include <korx/KORXEventBus.h>
#include <korx/KORXString.h>

#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <deque>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <tuple>
#include <utility>

namespace {

KORXEventBus& Bus() { return KORXEventBus::GetEventBus(); }

// On the bus while it lives: logs its letter for each event, then runs its one-shot action.
struct Recorder : KORXEventListener {
    Recorder(std::string& log, char letter) : log(&log), letter(letter) { Bus().AddListener(this); }
    ~Recorder() override { Bus().RemoveListener(this); }
    void HandleEvent(KORXEvent&) override {
        *log += letter;
        if (const auto action = std::exchange(once, {}))
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

}  // namespace

TEST(EventBus, CallsEachListenerOnceInRegistrationOrderUntilOneThrows) {
    std::string log;
    Recorder a(log, 'A'), b(log, 'B'), c(log, 'C');
    Bus().AddListener(&a);
    EXPECT_EQ(Delivered(log), "ABC");
    Bus().RemoveListener(&b);
    Bus().AddListener(&b);
    EXPECT_EQ(Delivered(log), "ACB");
    Bus().RemoveListener(&a);  // added twice, registered once
    c.once = [] { throw std::runtime_error("listener failed"); };
    EXPECT_THROW(Delivered(log), std::runtime_error);
    EXPECT_EQ(log, "C");
    EXPECT_EQ(Delivered(log), "CB");
}

TEST(EventBus, ARemovalDuringASendSkipsTheNextListenerAndNeverReadsPastTheEnd) {
    // Who removes whom; what two sends deliver. One moved into a place already served is skipped.
    const std::tuple<int, int, const char*> cases[] = {
        {0, 0, "AC BC"}, {1, 0, "AB BC"}, {0, 2, "AB AB"}};
    for (const auto& [actor, removed, delivered] : cases) {
        std::string log;
        Recorder listeners[] = {{log, 'A'}, {log, 'B'}, {log, 'C'}};
        Recorder* target = &listeners[removed];
        listeners[actor].once = [target] { Bus().RemoveListener(target); };
        const std::string first = Delivered(log);
        EXPECT_EQ(first + " " + Delivered(log), delivered) << actor << " removes " << removed;
    }
}

TEST(EventBus, ListenersAddedDuringASendWaitForTheNextEvent) {
    std::string log;
    Recorder a(log, 'A'), b(log, 'B');
    std::deque<Recorder> late;
    a.once = [&] {  // enough to make the array grow under the running send
        for (int i = 0; i < 40; ++i)
            late.emplace_back(log, 'n');
    };
    EXPECT_EQ(Delivered(log), "AB");
    EXPECT_EQ(Delivered(log), "AB" + std::string(40, 'n'));
}

TEST(EventStamp, SendStampsTimedEventsOnlyWithWallTimeBeforeTheListenersSeeThem) {
    std::string log;
    Recorder a(log, 'A');
    TimedEvent first, second;
    KORXEvent untimed("KORXTestEvent", KORX_LEVEL_INFO);
    long codeSeen = -1, start = -1, end = -1;
    a.once = [&] { codeSeen = first.GetClock(start); };
    const long long before = std::time(nullptr);
    Bus().Send(first);
    std::this_thread::sleep_for(std::chrono::milliseconds(60));  // wall time, not processor time
    Bus().Send(second);
    Bus().Send(untimed);
    const long long after = std::time(nullptr);
    long long seconds = 0;
    EXPECT_EQ(codeSeen, 0);
    EXPECT_EQ(long(first.GetTime(seconds)) + second.GetClock(end), 0);
    EXPECT_TRUE(seconds >= before && seconds <= after) << seconds;
    EXPECT_TRUE(start >= 0 && end - start >= 55 && end - start < 10000) << start << ", " << end;
    EXPECT_EQ(std::make_pair(long(untimed.GetClock(start)), long(untimed.GetTime(seconds))),
              std::make_pair(0x1000001L, 0x1000001L));
    untimed.SetTime(seconds);  // one flag covers both stamps
    EXPECT_EQ(long(untimed.GetClock(start)), 0);
}

TEST(EventLevel, ParsesOnlyTheExactUpperCaseNames) {
    // -1: not a level name, the default comes back. No name gives 70 (warning).
    const std::pair<const char*, int> cases[] = {
        {"ALL", 0},    {"DEBUG", 10}, {"VERBOSE", 30}, {"INFO", 50},    {"ERROR", 80},
        {"ABORT", 90}, {"NONE", 999}, {"Info", -1},    {"ALLX", -1},    {"AL", -1},
        {"INFO ", -1}, {"", -1},      {"70", -1},      {"WARNING", -1}, {"TRACE", -1},
    };
    for (const auto& [text, level] : cases) {
        KORXString string(text);
        EXPECT_EQ(KORXEvent::GetLevel(string, static_cast<KORXEventLevel>(-1)), level) << text;
    }
}

TEST(EventNames, AMissingOrEmptyNameMatchesNothing) {
    for (const char* name : {static_cast<const char*>(nullptr), "", "KORXErrorEvent"}) {
        const bool named = name != nullptr && *name != '\0';
        const KORXEvent event(name, KORX_LEVEL_ERROR);
        EXPECT_EQ(std::make_pair(event.GetName() != nullptr, event.IsA("KORXErrorEvent")),
                  std::make_pair(named, named));
        for (const char* other : {"korxerrorevent", "KORXErrorEvent ", "", (const char*)nullptr})
            EXPECT_FALSE(event.IsA(other));
        // The class name is "KORXEvent" whatever the event's own name.
        EXPECT_TRUE(event.IsKindOf("KORXEvent"));
        EXPECT_FALSE(event.IsKindOf("KORXErrorEvent") || event.IsKindOf(nullptr));
    }
}

TEST(EventCopy, ACopyKeepsTheEventAndOutlivesItsSource) {
    auto source = std::make_unique<KORXEvent>("KORXErrorEvent", KORX_LEVEL_ERROR);
    long long seconds = 42;
    source->SetTime(seconds);
    KORXEvent copy(*source), assigned("Other", KORX_LEVEL_DEBUG);
    assigned = *source;
    source.reset();
    for (const KORXEvent* event : {&copy, &assigned}) {
        seconds = 0;
        EXPECT_EQ(long(event->GetTime(seconds)), 0);
        EXPECT_EQ(std::make_tuple(std::string(event->GetName()), event->GetEventLevel(), seconds),
                  std::make_tuple(std::string("KORXErrorEvent"), KORX_LEVEL_ERROR, 42LL));
    }
}
