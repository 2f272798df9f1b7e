// Gk_Exception.h
//
// How the library reports trouble besides events: the exception types it throws, the error
// manager with the process-wide abort flag, and the assertion entry points.
//
// Thrown types and what a handler catches them as:
//   Gk_Exception by value (Gk_ErrMgr::raise)   Gk_Exception, Gk_Marker
//   KORXAbortException by value                KORXAbortException only
//   KORXArchiveException*                      KORXArchiveException*, void* (the catcher deletes)
// A Gk_IOException given to Gk_ErrMgr::raise is thrown as its Gk_Exception part.
//
// A failed internal assertion (Gk_ErrMgr::doAssert) publishes an assert event at level 30 and
// execution carries on. KORXAssert(false, ...) publishes an error and ends the process with
// status 0.
#ifndef KORX_GK_EXCEPTION_H
#define KORX_GK_EXCEPTION_H

#include <korx/KORXEventBus.h>
#include <korx/KORXExport.h>

#include <cstdarg>
#include <cstdint>

/// A name: a pointer to text the marker does not own.
class KORX_API Gk_Marker {
public:
    Gk_Marker(const char* token) : m_token(token) {}

    const char* token() const { return m_token; }

    /// Byte-wise equality of the tokens, case-sensitive.
    bool operator==(const Gk_Marker& other) const;
    /// strcmp order.
    bool operator<(const Gk_Marker& other) const;
    /// -1, 0 or 1 without regard to case, where each '#' of one token cancels a pending '#' of
    /// the other or stays pending. Not consistent with == and <: a token that is a proper
    /// prefix of the other compares as greater.
    int compare(const Gk_Marker& other) const;

private:
    const char* m_token;
};

class KORX_API Gk_Exception : public Gk_Marker {
public:
    /// The message becomes the token; cause is accepted and not kept.
    Gk_Exception(const char* message, Gk_Exception* cause = nullptr);

    /// Whether the exception carries the name of marker.
    bool operator==(const Gk_Marker& marker) const { return Gk_Marker::operator==(marker); }
};

class KORX_API Gk_IOException : public Gk_Exception {
public:
    Gk_IOException(const char* message, Gk_Exception* cause = nullptr);
};

/// Unwinds a whole translation when an abort was requested.
class KORX_API KORXAbortException {};

enum eKORXArchiveException : int32_t {
    KORX_ARCHIVE_SHORT_READ = 1,  // the stream gave fewer bytes than asked for
    KORX_ARCHIVE_NAN = 2,
};

/// Thrown by pointer; the catcher owns and deletes it.
class KORX_API KORXArchiveException {
public:
    explicit KORXArchiveException(eKORXArchiveException reason) : m_reason(reason) {}
    eKORXArchiveException GetReason() const { return m_reason; }

private:
    eKORXArchiveException m_reason;
};

class KORX_API Gk_ErrMgr {
public:
    /// Publishes an error whose format is e's token, then throws a copy of e as Gk_Exception.
    [[noreturn]] static void raise(const Gk_Exception& e);
    /// Publishes the assert event "file [line]" and returns.
    static void doAssert(const char* file, int line);

    static void setAbort();
    static bool shouldAbort();
    /// Throws KORXAbortException when the abort flag is set, clearing the flag first.
    static void checkAbort();
    /// Does nothing: one place to set a breakpoint.
    static void trap();

private:
    Gk_ErrMgr() = default;
};

class KORX_API KORXAssert {
public:
    virtual ~KORXAssert();

    /// Formats into 1,024 bytes (longer text is cut) and publishes an assert event with the
    /// result, which is formatted a second time. A null format publishes nothing.
    static void Printf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);

private:
    KORXAssert() = default;
};

class KORX_API KORXAssertEvent : public KORXEvent {
public:
    /// "KORXAssertEvent" at level 30; the message is the formatted text, none when empty.
    KORXAssertEvent(const char* format, ...);
    ~KORXAssertEvent() override;

    /// Builds the event, sends it on the bus and destroys it.
    static void Fire(const char* format, ...);

    /// "Assert : ", the message, the formatter's end of line.
    void GetFormattedDescription(KORXOutputStream* out) const override;

    /// Null when the formatted text was empty.
    const char* GetMessage() const { return m_message.get(); }

protected:
    KORXAssertEvent(va_list arguments, const char* format);

private:
    friend class KORXAssert;

    // A text formatted before, formatted once more without arguments.
    struct Reformatted {
        const char* text;
    };
    explicit KORXAssertEvent(Reformatted text);

    KORXEventMessage m_message;
};

class KORX_API KORXCallbackShared {
public:
    /// Installed by the host; asked by IsAborted.
    static bool (*m_AbortCallback)();

    /// Never returns true: when the abort flag is set or the callback answers true it throws
    /// KORXAbortException (leaving the flag as it is); otherwise false.
    static bool IsAborted();
};

/// Returns at once when condition holds. Otherwise publishes an error formatted with the
/// arguments shifted by one (the first conversion receives format itself) and ends the
/// process with exit(0).
KORX_API void KORXAssert(bool condition, const char* format, ...);

#endif
