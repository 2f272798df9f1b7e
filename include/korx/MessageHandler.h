// MessageHandler.h
//
// The message-reporting service that KORXLogger forwards every event to (through
// VantorMessageHandler). It keeps each report it receives (category, severity, text) for
// inspection, and writes those whose severity SetLogReporting enabled to its sink: standard
// error unless another FILE* is set, one line "<category> <severity>: <text>" a report.
#ifndef KORX_MESSAGEHANDLER_H
#define KORX_MESSAGEHANDLER_H

#include <korx/KORXExport.h>

#include <cstdarg>
#include <cstdio>
#include <string>
#include <vector>

class KORX_API MessageHandler {
public:
    enum Severity { Debug = 0, Info = 1, Warning = 2, Error = 3 };

    struct Report {
        std::string category;
        Severity severity;
        std::string text;
    };

    /// categories: categoryCount names. The further settings (a log file name, options, a
    /// context and an echo switch) are accepted for compatibility and not used.
    MessageHandler(const char* const* categories, int categoryCount, const char* logFile,
                   int options, void* context, const char* echo);
    MessageHandler(const MessageHandler&) = delete;
    MessageHandler& operator=(const MessageHandler&) = delete;
    virtual ~MessageHandler();

    /// The words of text name the severities written to the sink: "debug", "info",
    /// "warning", "error"; "all" names every one. Other words are ignored.
    void SetLogReporting(const char* text);
    /// Where enabled reports are written; null writes nowhere.
    void SetSink(FILE* sink);

    void ReportDebug2(const char* category, const char* format, ...) KORX_PRINTF_FORMAT(3, 4);
    void ReportInfo2(const char* category, const char* format, ...) KORX_PRINTF_FORMAT(3, 4);
    void ReportWarning2(const char* category, const char* format, ...) KORX_PRINTF_FORMAT(3, 4);
    void ReportError2(const char* category, const char* format, ...) KORX_PRINTF_FORMAT(3, 4);

    const std::vector<Report>& GetReports() const { return m_reports; }
    const std::vector<std::string>& GetCategories() const { return m_categories; }
    bool IsWritten(Severity severity) const { return m_written[severity]; }

private:
    void report(Severity severity, const char* category, const char* format, va_list args);

    std::vector<std::string> m_categories;
    bool m_written[4];
    FILE* m_sink;
    std::vector<Report> m_reports;
};

#endif
