// KORXError.h
//
// An error is a small record (code, description, source location) published as an error
// event at level 80. The error tracker, once initialised, is a listener that keeps a copy of
// every error in arrival order, so callers can ask afterwards how many errors occurred and
// which was the last. Errors published from a format (KORXError::Printf) all carry a copy of
// the shared default record: they count, with code 0 and no description of their own.
#ifndef KORX_KORXERROR_H
#define KORX_KORXERROR_H

#include <korx/Gk_Exception.h>
#include <korx/KORIResult.h>
#include <korx/KORXDynamicArray.h>
#include <korx/KORXEventBus.h>
#include <korx/KORXExport.h>
#include <korx/KORXString.h>

#include <cstdarg>
#include <cstdint>

class KORXOutputStream;

class KORX_API KORXError {
public:
    /// Code 0, line 0, empty texts.
    KORXError();
    explicit KORXError(long code);
    KORXError(const KORXError& other) = default;
    KORXError& operator=(const KORXError& other) = default;
    virtual ~KORXError();

    virtual KORIResult SetDescription(KORXString& description);
    virtual KORIResult GetDescription(KORXString& description);
    /// Nothing for code 0; otherwise "Error <code>", " : <description>" when there is one, and
    /// the formatter's end of line.
    virtual void GetFormattedDescription(KORXOutputStream* out) const;

    void SetSourceFileInfo(const char* file, int line);

    long GetCode() const { return m_code; }
    const KORXString& GetSourceFile() const { return m_sourceFile; }
    int GetLine() const { return m_line; }

    /// Formats into 1,024 bytes (longer text is cut) and publishes an error event with the
    /// result, which is formatted a second time. A null format publishes nothing.
    static void Printf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);
    /// The number of errors the tracker holds; 0 without a tracker.
    static int GetErrorCount();
    /// The tracker's newest error; null without a tracker or when it holds none.
    static KORXError* GetLastError();

    /// The record shared by every error event built from a format.
    static KORXError& GetDefaultError();

private:
    friend class Gk_ErrMgr;
    friend void KORXAssert(bool condition, const char* format, ...);

    // Publishes an error event whose message is text formatted a second time.
    static void PublishReformatted(const char* text);

    int32_t m_code;
    KORXString m_description;
    KORXString m_sourceFile;
    int32_t m_line;
};

class KORX_API KORXErrorEvent : public KORXEvent {
public:
    /// An event about e, which it does not own.
    explicit KORXErrorEvent(KORXError& e);
    /// "KORXErrorEvent" at level 80 with the formatted message, about the default record.
    KORXErrorEvent(const char* format, ...);
    ~KORXErrorEvent() override;

    /// Stores file and line in e, publishes an event about e; the result's code is e's code.
    static KORIResult Fire(KORXError& e, const char* file, int line);
    static void Fire(const char* format, ...);

    /// "Error : ", the message and the end of line when there is a message; otherwise the
    /// error's own description.
    void GetFormattedDescription(KORXOutputStream* out) const override;
    virtual const KORXError& GetError() const;

    /// Null when the event was built on an error record or the text was empty.
    const char* GetMessage() const { return m_message.get(); }

protected:
    KORXErrorEvent(va_list arguments, const char* format);

private:
    friend class KORXError;

    struct Reformatted {
        const char* text;
    };
    explicit KORXErrorEvent(Reformatted text);

    KORXEventMessage m_message;
    KORXError* m_error;
};

class KORX_API KORXErrorTracker : public KORXEventListener {
public:
    /// Creates the tracker and registers it on the bus, unless it exists. Code 0.
    static KORIResult Initialize();
    /// Null before Initialize.
    static KORXErrorTracker* GetInstance();
    /// Empties the tracker's list, when there is a tracker. Code 0.
    static KORIResult Reset();

    /// Keeps a copy of the error of every "KORXErrorEvent".
    void HandleEvent(KORXEvent& event) override;
    /// Leaves the bus and destroys the records.
    ~KORXErrorTracker() override;
    /// The newest record, or null when there is none.
    virtual KORXError* GetLastError();

    void ClearErrorList();
    /// The i-th record, 0 the oldest; null outside 0 .. count - 1.
    KORXError* GetError(int i);
    int GetCount() const;

private:
    KORXErrorTracker();

    KORXDynamicArray<KORXError> m_errors;
};

#endif
