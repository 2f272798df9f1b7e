// KORXLogger.h
//
// Messages and the listeners that show them.
//
// Reporters: KORXInfo, KORXWarning, KORXVerbose and KORXTrace turn a printf-style call into a
// message event on the bus. Each keeps its own indentation (Tab/Untab, three blanks a step)
// that Printf puts before the text; NoTabPrintf leaves it out. Texts are cut at 1,024 bytes and
// then formatted a second time, so "%%" in the text comes out as "%".
//
//   reporter       event               level
//   KORXInfo       KORXMessageEvent    50
//   KORXWarning    KORXWarningEvent    70   (KORXWarningEvent::Fire sends 50)
//   KORXVerbose    KORXMessageEvent    50   (not a verbose event)
//   KORXTrace      KORXTraceEvent      10
//
// Listeners: KORXLogger writes each description at or above its level to its stream and
// forwards every event to the message handler (see VantorMessageHandler); a text holding
// "OldLog: " is only written, one holding "NewLog: " only forwarded. KORXConsoleLogger writes
// to standard output below level 70 and to standard error from 70. KORXTimingLogger pairs the
// start and end task events and reports how long each task took.
//
// Environment: "KORXLogLevel" sets a logger's level when it is initialised with -1,
// "KORXConsoleTracesLevel" the console logger's, and "KORXTaskTiming" = "Yes" turns the
// timing logger on in KORXConsoleLogger::SetUp.
#ifndef KORX_KORXLOGGER_H
#define KORX_KORXLOGGER_H

#include <korx/KORXEventBus.h>
#include <korx/KORXExport.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>

class KORXFilePath;
class KORXOutputStream;
class MessageHandler;

// ---- Message events ---------------------------------------------------------------------------

/// "KORXMessageEvent" at 50: "Message : ", the message, end of line.
class KORX_API KORXMessageEvent : public KORXEvent {
public:
    KORXMessageEvent(const char* format, ...);
    ~KORXMessageEvent() override;
    static void Fire(const char* format, ...);
    void GetFormattedDescription(KORXOutputStream* out) const override;
    /// Null when the text was empty.
    const char* GetMessage() const { return m_message.get(); }

protected:
    KORXMessageEvent(va_list arguments, const char* format);

private:
    friend class KORXInfo;
    friend class KORXVerbose;
    struct Reformatted {
        const char* text;
    };
    explicit KORXMessageEvent(Reformatted text);

    KORXEventMessage m_message;
};

/// "KORXWarningEvent": 70 from the public constructor, 50 from Fire; "Warning : ", the message,
/// end of line.
class KORX_API KORXWarningEvent : public KORXEvent {
public:
    KORXWarningEvent(const char* format, ...);
    ~KORXWarningEvent() override;
    static void Fire(const char* format, ...);
    void GetFormattedDescription(KORXOutputStream* out) const override;
    const char* GetMessage() const { return m_message.get(); }

protected:
    KORXWarningEvent(va_list arguments, const char* format);

private:
    friend class KORXWarning;
    struct Reformatted {
        const char* text;
    };
    explicit KORXWarningEvent(Reformatted text);

    KORXEventMessage m_message;
};

/// "KORXVerboseEvent" at 30: the message, end of line.
class KORX_API KORXVerboseEvent : public KORXEvent {
public:
    KORXVerboseEvent(const char* format, ...);
    ~KORXVerboseEvent() override;
    static void Fire(const char* format, ...);
    void GetFormattedDescription(KORXOutputStream* out) const override;
    const char* GetMessage() const { return m_message.get(); }

protected:
    KORXVerboseEvent(va_list arguments, const char* format);

private:
    struct Reformatted {
        const char* text;
    };
    explicit KORXVerboseEvent(Reformatted text);

    KORXEventMessage m_message;
};

/// "KORXTraceEvent" at 10: the message, end of line.
class KORX_API KORXTraceEvent : public KORXEvent {
public:
    KORXTraceEvent(const char* format, ...);
    ~KORXTraceEvent() override;
    static void Fire(const char* format, ...);
    void GetFormattedDescription(KORXOutputStream* out) const override;
    const char* GetMessage() const { return m_message.get(); }

protected:
    KORXTraceEvent(va_list arguments, const char* format);

private:
    friend class KORXTrace;
    struct Reformatted {
        const char* text;
    };
    explicit KORXTraceEvent(Reformatted text);

    KORXEventMessage m_message;
};

// ---- Reporters --------------------------------------------------------------------------------

class KORX_API KORXInfo {
public:
    virtual ~KORXInfo();
    static void Printf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);
    static void NoTabPrintf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);
    static void Tab();
    static void Untab();

private:
    KORXInfo();
    // Indents by tabs steps, formats, and publishes the event.
    static void Publish(int tabs, const char* format, va_list args);
};

class KORX_API KORXWarning {
public:
    virtual ~KORXWarning();
    static void Printf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);
    static void NoTabPrintf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);
    static void Tab();
    static void Untab();

private:
    KORXWarning();
    // Indents by tabs steps, formats, and publishes the event.
    static void Publish(int tabs, const char* format, va_list args);
};

class KORX_API KORXVerbose {
public:
    virtual ~KORXVerbose();
    static void Printf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);
    static void Tab();
    static void Untab();

private:
    KORXVerbose();
    // Indents by tabs steps, formats, and publishes the event.
    static void Publish(int tabs, const char* format, va_list args);
};

class KORX_API KORXTrace {
public:
    virtual ~KORXTrace();
    static void Printf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);
    static void NoTabPrintf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);
    static void Tab();
    static void Untab();
    /// An opaque timer for StopTimer.
    static void* StartTimer();
    /// Milliseconds since StartTimer; 0 for a null timer. Releases the timer.
    static float StopTimer(void* timer);

private:
    KORXTrace();
    // Indents by tabs steps, formats, and publishes the event.
    static void Publish(int tabs, const char* format, va_list args);
};

// ---- Listeners --------------------------------------------------------------------------------

class KORX_API KORXLogger : public KORXEventListener {
public:
    /// Level 999, no stream, not registered.
    KORXLogger();
    KORXLogger(const KORXLogger&) = delete;
    KORXLogger& operator=(const KORXLogger&) = delete;

    void HandleEvent(KORXEvent& event) override;
    /// Finalize.
    ~KORXLogger() override;
    /// Takes the stream (the logger deletes it) and registers on the bus. Level -1 reads
    /// "KORXLogLevel" (default 50).
    virtual void Initialize(KORXOutputStream* stream, KORXEventLevel level);
    /// A null file does nothing.
    virtual void Initialize(FILE* file, KORXEventLevel level);
    /// A file that cannot be opened leaves the logger unregistered; an abort passes on.
    virtual void Initialize(const char* fileName, KORXEventLevel level);
    virtual void Initialize(KORXFilePath& path, KORXEventLevel level);
    /// Level 999, off the bus, stream deleted.
    virtual void Finalize();

    KORXEventLevel GetLevel() const { return m_level; }

protected:
    KORXEventLevel m_level;
    KORXOutputStream* m_stream;  // owned
};

class KORX_API KORXConsoleLogger : public KORXLogger {
public:
    KORXConsoleLogger();
    ~KORXConsoleLogger() override;

    void HandleEvent(KORXEvent& event) override;
    /// Once: streams on descriptors 1 and 2, the level from "KORXConsoleTracesLevel" when it
    /// is set (else level; -1 gives 50), then registers.
    virtual void Initialize(KORXEventLevel level);
    using KORXLogger::Initialize;

    /// Initializes the process's console logger, then KORXTimingLogger::SetUp().
    static void SetUp(KORXEventLevel level);
    /// The console logger SetUp initializes.
    static KORXConsoleLogger& GetConsoleLogger();

protected:
    bool IsInitialized() const;

private:
    KORXOutputStream* m_out;  // owned, on descriptor 1
    KORXOutputStream* m_err;  // owned, on descriptor 2
};

class KORX_API KORXTimingLogger : public KORXEventListener {
public:
    KORXTimingLogger();
    ~KORXTimingLogger() override;
    KORXTimingLogger(const KORXTimingLogger&) = delete;
    KORXTimingLogger& operator=(const KORXTimingLogger&) = delete;

    /// Pairs timed (task) events by identifier and reports "<task> Time = <n> seconds.".
    void HandleEvent(KORXEvent& event) override;
    /// Reports "Task Timing On" and registers, once.
    void Initialize();
    /// Initializes the process's timing logger when "KORXTaskTiming" is "Yes".
    static void SetUp();
    /// The timing logger SetUp initializes.
    static KORXTimingLogger& GetTimer();

    bool IsInitialized() const { return m_initialized; }
    /// Tasks started and not yet ended.
    int GetOpenTaskCount() const;

private:
    struct OpenTasks;

    bool m_initialized;
    OpenTasks* m_tasks;
};

/// The bridge to the message-reporting library.
class KORX_API VantorMessageHandler {
public:
    /// The handler, created on the first call with create true; null before.
    static MessageHandler* GetInstance(bool create);
    static void DestroyInstance();

private:
    VantorMessageHandler();
    ~VantorMessageHandler();

    static MessageHandler* m_instance;
};

#endif
