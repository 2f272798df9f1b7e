// Test support: an output stream that collects what is written, and a listener that records
// every event published while it lives (it leaves the bus when it goes).
#ifndef KORX_TESTS_EVENT_RECORDER_H
#define KORX_TESTS_EVENT_RECORDER_H

#include <korx/Gk_Exception.h>
#include <korx/KORXError.h>
#include <korx/KORXEventBus.h>
#include <korx/KORXLogger.h>
#include <korx/KORXStream.h>

#include <string>
#include <vector>

class CaptureStream : public KORXOutputStream {
public:
    void write(char* const buffer, int n) override { text.append(buffer, static_cast<size_t>(n)); }
    void flush() override {}
    void close() override {}

    std::string text;
};

/// The event's description as its formatter writes it.
inline std::string Describe(const KORXEvent& event) {
    CaptureStream out;
    event.GetFormattedDescription(&out);
    return out.text;
}

struct RecordedEvent {
    std::string name;
    int level;
    bool hasMessage;
    std::string message;
    std::string description;
};

class EventRecorder : public KORXEventListener {
public:
    EventRecorder() { KORXEventBus::GetEventBus().AddListener(this); }
    ~EventRecorder() override { KORXEventBus::GetEventBus().RemoveListener(this); }
    EventRecorder(const EventRecorder&) = delete;
    EventRecorder& operator=(const EventRecorder&) = delete;

    void HandleEvent(KORXEvent& event) override {
        const char* message = messageOf(event);
        events.push_back({event.GetName() != nullptr ? event.GetName() : "", event.GetEventLevel(),
                          message != nullptr, message != nullptr ? message : "", Describe(event)});
    }

    std::vector<RecordedEvent> events;

private:
    static const char* messageOf(const KORXEvent& event) {
        if (const auto* e = dynamic_cast<const KORXAssertEvent*>(&event))
            return e->GetMessage();
        if (const auto* e = dynamic_cast<const KORXErrorEvent*>(&event))
            return e->GetMessage();
        if (const auto* e = dynamic_cast<const KORXMessageEvent*>(&event))
            return e->GetMessage();
        if (const auto* e = dynamic_cast<const KORXWarningEvent*>(&event))
            return e->GetMessage();
        if (const auto* e = dynamic_cast<const KORXVerboseEvent*>(&event))
            return e->GetMessage();
        if (const auto* e = dynamic_cast<const KORXTraceEvent*>(&event))
            return e->GetMessage();
        return nullptr;
    }
};

#endif
