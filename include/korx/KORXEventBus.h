// KORXEventBus.h
//
// Every report of the library (assertions, errors, warnings, messages, traces, task progress)
// is an event that the reporting code builds on its own stack and sends synchronously to the
// one process-wide KORXEventBus, which hands it to each registered listener in registration
// order. The bus stores nothing: the event is destroyed when Send returns, so a listener that
// wants to keep anything copies it inside HandleEvent. There is no queue, no filter and no
// lock: each listener applies its own level threshold, and registration and sending are for
// one thread at a time.
//
// KORXObject is the root with a run-time class name; KORXEvent adds the event's own type name,
// its level and a time stamp that Send sets on timed events. KORXEventLevel is the level scale
// (the gaps are part of it: thresholds are compared numerically). KORXEntityCallback is the
// document observer through which entities call back.
#ifndef KORX_KORXEVENTBUS_H
#define KORX_KORXEVENTBUS_H

#include <korx/Gk_Observer.h>
#include <korx/KORIResult.h>
#include <korx/KORXDynamicArray.h>
#include <korx/KORXExport.h>

#include <cstdint>
#include <utility>

class KORXOutputStream;
class KORXString;

enum KORXEventLevel : int {
    KORX_LEVEL_ALL = 0,  // threshold only: lets everything through
    KORX_LEVEL_DEBUG = 10,
    KORX_LEVEL_VERBOSE = 30,
    KORX_LEVEL_INFO = 50,
    KORX_LEVEL_WARNING = 70,
    KORX_LEVEL_ERROR = 80,
    KORX_LEVEL_ABORT = 90,  // threshold only
    KORX_LEVEL_NONE = 999,  // threshold only: lets nothing through
};

class KORX_API KORXObject {
public:
    /// Keeps its own copy of className; a null or empty className keeps none.
    explicit KORXObject(const char* className);
    /// A copy owns a copy of the class name: it may outlive its source.
    KORXObject(const KORXObject& other);
    KORXObject& operator=(const KORXObject& other);

    /// True when the class name equals name byte for byte; false for a null name, and for
    /// every name when none was kept.
    virtual bool IsKindOf(const char* name) const;
    virtual ~KORXObject();

private:
    char* m_className;
};

class KORX_API KORXEvent : public KORXObject {
public:
    /// Class name "KORXEvent". Keeps its own copy of name (a null or empty name keeps none);
    /// not stamped.
    KORXEvent(const char* name, KORXEventLevel level);
    /// A copy owns copies of the names: it may outlive its source.
    KORXEvent(const KORXEvent& other);
    KORXEvent& operator=(const KORXEvent& other);
    ~KORXEvent() override;

    /// Writes the event's description to stream; the base event writes nothing.
    virtual void GetFormattedDescription(KORXOutputStream* stream) const;
    /// True for the events that KORXEventBus::Send stamps; the base event answers false.
    virtual bool IsTimed() const;

    /// True when the event has a name and it equals name byte for byte.
    bool IsA(const char* name) const;
    /// Null when the event has no name.
    const char* GetName() const { return m_name; }
    KORXEventLevel GetEventLevel() const { return m_level; }

    /// The level named by text, exactly (case and whole text): "ALL", "DEBUG", "VERBOSE",
    /// "INFO", "ERROR", "ABORT", "NONE"; anything else gives defaultLevel. No text names
    /// KORX_LEVEL_WARNING.
    static KORXEventLevel GetLevel(KORXString& text, KORXEventLevel defaultLevel);

    /// Store the value and mark the event stamped. Code 0.
    KORIResult SetClock(long& ticks);
    KORIResult SetTime(long long& seconds);
    /// Copy the stored value out, whatever it is. Code 0 once either stamp was set, else
    /// 0x1000001.
    KORIResult GetClock(long& ticks) const;
    KORIResult GetTime(long long& seconds) const;

private:
    char* m_name;
    KORXEventLevel m_level;
    bool m_timeSet;
    int64_t m_time;   // calendar seconds
    int32_t m_clock;  // milliseconds of the library clock
};

/// The formatted message an event owns: a new[] copy, or null when the text came out empty.
/// Copies own copies.
class KORX_API KORXEventMessage {
public:
    KORXEventMessage() : m_text(nullptr) {}
    /// Takes a new[] text (or null).
    explicit KORXEventMessage(char* owned) : m_text(owned) {}
    KORXEventMessage(const KORXEventMessage& other);
    KORXEventMessage& operator=(const KORXEventMessage& other);
    KORXEventMessage(KORXEventMessage&& other) noexcept : m_text(other.m_text) {
        other.m_text = nullptr;
    }
    KORXEventMessage& operator=(KORXEventMessage&& other) noexcept {
        std::swap(m_text, other.m_text);
        return *this;
    }
    ~KORXEventMessage();

    const char* get() const { return m_text; }

private:
    char* m_text;
};

class KORX_API KORXEventListener {
public:
    virtual void HandleEvent(KORXEvent& event) = 0;
    /// Does not remove the listener from the bus: listeners unregister themselves.
    virtual ~KORXEventListener();
};

class KORX_API KORXEventBus {
public:
    /// The one bus of the process. It can be used from any static initialiser, and after its
    /// destruction at exit it behaves as a bus without listeners that ignores additions.
    static KORXEventBus& GetEventBus();
    /// GetEventBus().Send(event).
    static void Fire(KORXEvent& event);

    /// Appends listener unless it is null or already registered. The bus does not own it.
    void AddListener(KORXEventListener* listener);
    /// Removes the first registration of listener, keeping the others in order.
    void RemoveListener(KORXEventListener* listener);

    /// Stamps a timed event with the library clock and the calendar time, then calls each
    /// listener in registration order. The number of listeners is read once, when the send
    /// begins: a listener added meanwhile is not called, and a listener removed meanwhile
    /// shifts the later ones down, so the one just after the current listener is skipped.
    /// A listener that throws ends the dispatch; the exception reaches the caller.
    void Send(KORXEvent& event);

    KORXEventBus(const KORXEventBus&) = delete;
    KORXEventBus& operator=(const KORXEventBus&) = delete;

private:
    // Constant-initialised: listeners that other static initialisers register before this
    // object's turn are kept.
    constexpr KORXEventBus() noexcept : m_listeners(korxStaticRegistry) {}
    ~KORXEventBus();

    static KORXEventBus s_bus;

    KORXDynamicArray<KORXEventListener*> m_listeners;
};

class KORX_API KORXEntityCallback : public Gk_Observer {
public:
    /// 4, the observer type of entity callbacks.
    int getType() override;
};

#endif
