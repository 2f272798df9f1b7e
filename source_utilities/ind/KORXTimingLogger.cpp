#include <korx/KORXContainers.h>
#include <korx/KORXEnvironment.h>
#include <korx/KORXLogger.h>
#include <korx/KORXString.h>
#include <korx/KORXTaskEvent.h>

#include <ctime>
#include <string>
#include <unordered_map>

#include "internal/Platform.h"

namespace {

constexpr double kCalendarSecondsAbove = 600.0;
constexpr int kIdentifierUnits = 256;

struct OpenTask {
    KORXString identifier;
    long long startTime;
    long startClock;
};

// Task identifiers as map keys.
std::u16string keyOf(const KORXString& identifier) {
    const KORXWChar* units = identifier;
    return units != nullptr ? std::u16string(units, units + identifier.length()) : u"";
}

// Long tasks are timed in calendar seconds; shorter ones from the finer clock.
double elapsedSeconds(const OpenTask& start, long long endTime, long endClock) {
    const double seconds =
        std::difftime(static_cast<std::time_t>(endTime), static_cast<std::time_t>(start.startTime));
    if (seconds > kCalendarSecondsAbove)
        return seconds;
    return (endClock - start.startClock) / 1000.0;
}

}  // namespace

// The started tasks (owned records, innermost on top) and where each identifier was last
// pushed.
struct KORXTimingLogger::OpenTasks {
    KORXStack stack;
    std::unordered_map<std::u16string, int> positions;

    ~OpenTasks() { discardFrom(0); }

    OpenTask& at(int position) const { return *static_cast<OpenTask*>(stack.ElementAt(position)); }

    /// Pops and deletes the records from the top down to position.
    void discardFrom(int position) {
        while (stack.Size() > position)
            delete static_cast<OpenTask*>(stack.Pop());
    }
};

KORXTimingLogger::KORXTimingLogger() : m_initialized(false), m_tasks(new OpenTasks()) {}

KORXTimingLogger::~KORXTimingLogger() {
    KORXEventBus::GetEventBus().RemoveListener(this);
    delete m_tasks;
}

KORXTimingLogger& KORXTimingLogger::GetTimer() {
    static KORXTimingLogger timer;
    return timer;
}

void KORXTimingLogger::Initialize() {
    if (m_initialized)
        return;
    KORXInfo::Printf("Task Timing On");
    KORXEventBus::GetEventBus().AddListener(this);
    m_initialized = true;
}

void KORXTimingLogger::SetUp() {
    KORXString value;
    if (KORXEnvironment::GetVariable(KORXString("KORXTaskTiming"), value).IsSuccess() &&
        value.equals(KORX_YES))
        GetTimer().Initialize();
}

int KORXTimingLogger::GetOpenTaskCount() const { return m_tasks->stack.Size(); }

void KORXTimingLogger::HandleEvent(KORXEvent& event) {
    const auto* task = dynamic_cast<const KORXTaskEvent*>(&event);
    if (!event.IsTimed() || task == nullptr)
        return;
    KORXString identifier;
    long long time = 0;
    long clock = 0;
    if (!task->GetTaskIdentifier(identifier).IsSuccess() || !event.GetTime(time).IsSuccess() ||
        !event.GetClock(clock).IsSuccess())
        return;
    const std::u16string key = keyOf(identifier);
    if (task->GetKind() == KORX_TASK_START) {
        m_tasks->positions[key] = m_tasks->stack.Push(new OpenTask{identifier, time, clock}) - 1;
        return;
    }
    const auto found = m_tasks->positions.find(key);
    if (found == m_tasks->positions.end())
        return;
    // The entry may be left from a task discarded with an enclosing one: it names a position,
    // and whatever task stands there now is the one timed and closed.
    const int position = found->second;
    if (position >= m_tasks->stack.Size())
        return;
    char seconds[64];
    korx::detail::Format(
        seconds, sizeof seconds, "%.2f seconds.",
        elapsedSeconds(m_tasks->at(position), time, clock));
    const KORXString name = identifier.length() > kIdentifierUnits
                                ? identifier.substring(0, kIdentifierUnits)
                                : identifier;
    KORXInfo::Printf("%s Time = %s", static_cast<const char*>(name), seconds);
    // Tasks opened inside this one and never ended are discarded with it.
    m_tasks->discardFrom(position);
}
