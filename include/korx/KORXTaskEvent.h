// KORXTaskEvent.h
//
// A translation is a sequence of tasks: the product as a whole, reading a file and its
// entities, logging the options, preprocessing the document, converting, translating,
// repairing, writing a file. A translator marks the start and the end of each task with a task
// event on the bus; the timing logger pairs a start and an end by their task identifier, and
// the loggers write each event's description.
//
// KORXTaskEvent is timed (the bus stamps it) and carries an optional task identifier. Start
// events derive from KORXStartTaskEvent (kind KORX_TASK_START), end events from
// KORXEndTaskEvent (kind KORX_TASK_END), which adds the task's result. KORXThirdPartyProgressEvent
// carries the progress of an outside component and is not a task event.
//
//   event                             name                              task identifier
//   KORXStartProductEvent             "Start Product"                   "Product"
//   KORXEndProductEvent               "Product End"                     "Product"
//   KORXStartReadFileTaskEvent        "KORXStartReadFileTaskEvent"      "Read File"
//   KORXEndReadFileTaskEvent          "File Reading"                    "Read File"
//   KORXStartReadEntitiesTaskEvent    "KORXStarReadEntitiesTaskEvent"   "Read Entities"
//   KORXEndReadEntitiesTaskEvent      "Entity Reading"                  "Read Entities"
//   KORXStartOptionsTaskEvent         "KORXStartOptionsTaskEvent"       "Options"
//   KORXEndOptionsTaskEvent           "Options logging"                 "Options"
//   KORXStartPreprocessDocumentEvent  "Start Document Preprocessing"    "Document Preprocessing"
//   KORXEndPreprocessDocumentEvent    "Document Preprocessing"          "Document Preprocessing"
//   KORXStartConversionTaskEvent      "KORXStartConversionTaskEvent"    "Conversion"
//   KORXEndConversionTaskEvent        "KORXEndConversionTaskEvent"      "Conversion"
//   KORXStartConversionStageEvent     "KORXStartConversionStageEvent"   none
//   KORXEndTranslationTaskEvent       "Translation"                     "Translation"
//   KORXStartTranslateRepairEvent     "KORXStartTranslateRepairEvent"   "Repair"
//   KORXStartWriteFileTaskEvent       "Writing File"                    "File Write"
//   KORXEndWriteFileTaskEvent         "File Write"                      "File Write"
//   KORXThirdPartyProgressEvent       "KORXThirdPartyProgressEvent"     -
//
// Every one is at level 50 (info) except the repair event, at the level it is given (30 from
// its Fire). Listeners match the names as they stand, "KORXStarReadEntitiesTaskEvent" included.
//
// Descriptions: an end event writes its name, " Result : " and its result's message; the
// events below with a text of their own say so. Start events without one write nothing.
// Every Fire builds the event on the stack, sends it and destroys it when the send returns.
// Copies own copies of every text.
#ifndef KORX_KORXTASKEVENT_H
#define KORX_KORXTASKEVENT_H

#include <korx/KORIResult.h>
#include <korx/KORXEventBus.h>
#include <korx/KORXExport.h>
#include <korx/KORXProperties.h>
#include <korx/KORXString.h>

#include <cstdint>

class KORXFilePath;
class KORXOutputStream;

enum KORXTaskEventKind : int {
    KORX_TASK_START = 0,
    KORX_TASK_END = 1,
};

// ---- Bases ------------------------------------------------------------------------------------

class KORX_API KORXTaskEvent : public KORXEvent {
public:
    /// Keeps a copy of taskIdentifier; a null or empty one keeps none.
    KORXTaskEvent(const char* name, const char* taskIdentifier, KORXEventLevel level);
    ~KORXTaskEvent() override;

    /// True: the bus stamps task events and the timing logger looks at them.
    bool IsTimed() const override;
    virtual KORXTaskEventKind GetKind() const = 0;
    /// 0x1000001, identifier untouched, when the event has none.
    KORIResult GetTaskIdentifier(KORXString& identifier) const;

private:
    [[maybe_unused]] int32_t m_reserved;  // always 0
    KORXEventMessage m_taskIdentifier;    // null when none
};

class KORX_API KORXStartTaskEvent : public KORXTaskEvent {
public:
    KORXStartTaskEvent(const char* name, const char* taskIdentifier, KORXEventLevel level);
    ~KORXStartTaskEvent() override;

    KORXTaskEventKind GetKind() const override;
};

class KORX_API KORXEndTaskEvent : public KORXTaskEvent {
public:
    KORXEndTaskEvent(KORIResult& result, const char* name, const char* taskIdentifier,
                     KORXEventLevel level);
    ~KORXEndTaskEvent() override;

    static void Fire(KORIResult& result, const char* name, const char* taskIdentifier,
                     KORXEventLevel level);

    KORXTaskEventKind GetKind() const override;
    /// The name, " Result : ", the result's message, end of line.
    void GetFormattedDescription(KORXOutputStream* stream) const override;

    KORIResult getTaskResult() const { return m_taskResult; }
    void setTaskResult(KORIResult& result) { m_taskResult = result; }

private:
    KORIResult m_taskResult;
};

// ---- Product ----------------------------------------------------------------------------------

/// Writes, between two lines of "=============================", one "label : value" line
/// (label as "%-20s : ") for the product, the application, each option added, and the
/// environment variables "KORXLog" and "UserEnv" as they are when the event is described (an
/// unset variable shows an empty value).
class KORX_API KORXStartProductEvent : public KORXStartTaskEvent {
public:
    /// Null texts show as empty.
    KORXStartProductEvent(const char* product, const char* application);
    ~KORXStartProductEvent() override;

    /// Shown in the order added; adding a name again replaces its value. 0x1000001 for a null
    /// or empty name; a null value is empty.
    KORIResult AddOption(const char* name, const char* value);
    void GetFormattedDescription(KORXOutputStream* stream) const override;

private:
    KORXEventMessage m_product;
    KORXEventMessage m_application;
    KORXProperties m_options;
};

/// "Product Completed Successfully", "Product Aborted" (code 0x2000003), or
/// "Product Failed with code <code> (<message>)".
class KORX_API KORXEndProductEvent : public KORXEndTaskEvent {
public:
    explicit KORXEndProductEvent(KORIResult& result);
    ~KORXEndProductEvent() override;

    void GetFormattedDescription(KORXOutputStream* stream) const override;
};

// ---- Reading ----------------------------------------------------------------------------------

/// "Reading File <name>", then " Not Available " between two lines of 80 '-': the event is
/// fired before the file is read, so it has no file information to show.
class KORX_API KORXStartReadFileTaskEvent : public KORXStartTaskEvent {
public:
    explicit KORXStartReadFileTaskEvent(KORXString& fileName);
    explicit KORXStartReadFileTaskEvent(const char* fileName);
    ~KORXStartReadFileTaskEvent() override;

    static void Fire(KORXString& fileName);
    static void Fire(const char* fileName);

    void GetFormattedDescription(KORXOutputStream* stream) const override;

private:
    KORXString m_fileName;
};

/// The result line, then the block headed
/// "----------------------------File Header Information-----------------------------" with one
/// "label : value" line (label as "%-20s : ") per header value added, or " Not Available "
/// when none was, closed by a line of 80 '-'.
class KORX_API KORXEndReadFileTaskEvent : public KORXEndTaskEvent {
public:
    explicit KORXEndReadFileTaskEvent(KORIResult& result);
    ~KORXEndReadFileTaskEvent() override;

    /// A value read from the file's header, shown in the order added; adding a name again
    /// replaces its value. 0x1000001 for a null or empty name; a null value is empty.
    KORIResult AddHeaderValue(const char* name, const char* value);
    void GetFormattedDescription(KORXOutputStream* stream) const override;

private:
    KORXProperties m_header;
};

class KORX_API KORXStartReadEntitiesTaskEvent : public KORXStartTaskEvent {
public:
    KORXStartReadEntitiesTaskEvent();
    ~KORXStartReadEntitiesTaskEvent() override;
};

class KORX_API KORXEndReadEntitiesTaskEvent : public KORXEndTaskEvent {
public:
    explicit KORXEndReadEntitiesTaskEvent(KORIResult& result);
    ~KORXEndReadEntitiesTaskEvent() override;
};

// ---- Options and preprocessing ----------------------------------------------------------------

/// "--------------------- Options Set by User ------------------": the header of the options
/// that are logged after it.
class KORX_API KORXStartOptionsTaskEvent : public KORXStartTaskEvent {
public:
    KORXStartOptionsTaskEvent();
    ~KORXStartOptionsTaskEvent() override;

    static void Fire();

    void GetFormattedDescription(KORXOutputStream* stream) const override;
};

class KORX_API KORXEndOptionsTaskEvent : public KORXEndTaskEvent {
public:
    explicit KORXEndOptionsTaskEvent(KORIResult& result);
    ~KORXEndOptionsTaskEvent() override;
};

class KORX_API KORXStartPreprocessDocumentEvent : public KORXStartTaskEvent {
public:
    KORXStartPreprocessDocumentEvent();
    ~KORXStartPreprocessDocumentEvent() override;
};

class KORX_API KORXEndPreprocessDocumentEvent : public KORXEndTaskEvent {
public:
    explicit KORXEndPreprocessDocumentEvent(KORIResult& result);
    ~KORXEndPreprocessDocumentEvent() override;
};

// ---- Conversion -------------------------------------------------------------------------------

class KORX_API KORXStartConversionTaskEvent : public KORXStartTaskEvent {
public:
    KORXStartConversionTaskEvent();
    ~KORXStartConversionTaskEvent() override;

    static void Fire();
};

/// The result line, a line of 80 '-', then one line per entity kind: the label padded to 24
/// columns, ":    " and the count. The translators' Fire that takes their own document type
/// and a result is not part of this library: a translator counts its document into a
/// KORXConvertedEntitiesInfo and calls Fire(info, result).
class KORX_API KORXEndConversionTaskEvent : public KORXEndTaskEvent {
public:
    /// Counts of converted entities by kind, with the label each is described under.
    class KORX_API KORXConvertedEntitiesInfo {
    public:
        /// Every count 0.
        KORXConvertedEntitiesInfo();
        KORXConvertedEntitiesInfo(const KORXConvertedEntitiesInfo& other);
        KORXConvertedEntitiesInfo& operator=(const KORXConvertedEntitiesInfo& other) = default;

        /// Takes every count of other.
        void init(const KORXConvertedEntitiesInfo& other);

        int32_t pointBodies;  // "No. of Point Bodies"
        int32_t curves;       // "No. of Curves"
        int32_t surfaces;     // "No. of Surfaces"
        int32_t wireBodies;   // "No. of Wire Bodies"
        int32_t sheetBodies;  // "No. of Sheet Bodies"
        int32_t solidBodies;  // "No. of Solid Bodies"
        int32_t faces;        // "No. of Faces"
        int32_t edges;        // "No. of Edges"
        int32_t vertices;     // "No. of Vertices"
    };

    /// The event's counts start as a copy of info.
    KORXEndConversionTaskEvent(KORIResult& result, const KORXConvertedEntitiesInfo& info);
    ~KORXEndConversionTaskEvent() override;

    static void Fire(const KORXConvertedEntitiesInfo& info, KORIResult& result);

    /// Adds info's counts times times (a part converted once and used times times); a sum
    /// beyond the int range stays at its largest value. 0x1000001, nothing added, for a
    /// negative times.
    KORIResult append(const KORXConvertedEntitiesInfo& info, int times);
    const KORXConvertedEntitiesInfo& GetConvertedEntitiesInfo() const { return m_info; }

    void GetFormattedDescription(KORXOutputStream* stream) const override;

private:
    KORXConvertedEntitiesInfo m_info;
};

/// A step of the conversion, without identifier (so never timed as a task):
/// "Conversion Stage : <type>, <count> entities, <percent with two decimals> %".
class KORX_API KORXStartConversionStageEvent : public KORXStartTaskEvent {
public:
    KORXStartConversionStageEvent(const char* entityType, int entityCount, double stagePercent,
                                  bool leaf);
    ~KORXStartConversionStageEvent() override;

    /// Null when given null or empty.
    const char* GetEntityType() const { return m_entityType.get(); }
    int GetEntityCount() const { return m_entityCount; }
    double GetStagePercent() const { return m_stagePercent; }
    bool GetLeaf() const { return m_leaf; }
    /// False until SetFinished(true).
    bool GetFinished() const { return m_finished; }
    void SetFinished(bool finished) { m_finished = finished; }

    void GetFormattedDescription(KORXOutputStream* stream) const override;

private:
    KORXEventMessage m_entityType;
    int32_t m_entityCount;
    double m_stagePercent;
    bool m_leaf;
    bool m_finished;
};

// ---- Translation and repair -------------------------------------------------------------------

/// The result line, then "Failed Entities : <count>" between two lines of 80 '-'.
class KORX_API KORXEndTranslationTaskEvent : public KORXEndTaskEvent {
public:
    KORXEndTranslationTaskEvent(KORIResult& result, int failedEntities);
    ~KORXEndTranslationTaskEvent() override;

    /// No failed entities.
    static void Fire(KORIResult& result);
    /// The result of that code, no failed entities.
    static void Fire(long resultCode);

    int GetFailedEntities() const { return m_failedEntities; }
    void GetFormattedDescription(KORXOutputStream* stream) const override;

private:
    int32_t m_failedEntities;
};

/// "Repairing <type> <number> (<representation>)".
class KORX_API KORXStartTranslateRepairEvent : public KORXStartTaskEvent {
public:
    KORXStartTranslateRepairEvent(const char* entityType, const char* representation,
                                  int entityNumber, KORXEventLevel level);
    ~KORXStartTranslateRepairEvent() override;

    /// Fires at level 30 (verbose): loggers at the usual 50 leave repairs out.
    static void Fire(const char* entityType, const char* representation, int entityNumber);

    /// Null when given null or empty.
    const char* GetEntityType() const { return m_entityType.get(); }
    const char* GetRepresentation() const { return m_representation.get(); }
    int GetEntityNumber() const { return m_entityNumber; }

    void GetFormattedDescription(KORXOutputStream* stream) const override;

private:
    KORXEventMessage m_entityType;
    KORXEventMessage m_representation;
    int32_t m_entityNumber;
};

// ---- Writing ----------------------------------------------------------------------------------

/// "Writing File <path>", the path as the file path stores it.
class KORX_API KORXStartWriteFileTaskEvent : public KORXStartTaskEvent {
public:
    /// Keeps a copy of the path's text.
    explicit KORXStartWriteFileTaskEvent(KORXFilePath& path);
    ~KORXStartWriteFileTaskEvent() override;

    void GetFormattedDescription(KORXOutputStream* stream) const override;

private:
    KORXString m_path;
};

/// "File Successfully Written", "File Writing Aborted" (code 0x2000003), or
/// "File Writing Failed with code<code>" (no blank before the code).
class KORX_API KORXEndWriteFileTaskEvent : public KORXEndTaskEvent {
public:
    explicit KORXEndWriteFileTaskEvent(KORIResult& result);
    ~KORXEndWriteFileTaskEvent() override;

    void GetFormattedDescription(KORXOutputStream* stream) const override;
};

// ---- Outside progress -------------------------------------------------------------------------

/// The progress an outside component reports, for progress displays: not a task event, not
/// timed, and it describes itself with nothing so that logs are not flooded.
class KORX_API KORXThirdPartyProgressEvent : public KORXEvent {
public:
    explicit KORXThirdPartyProgressEvent(double progress);
    ~KORXThirdPartyProgressEvent() override;

    static void Fire(double progress);

    /// Always 0.
    KORIResult GetProgress(double& progress) const;

private:
    double m_progress;
};

#endif
