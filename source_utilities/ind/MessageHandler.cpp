#include <korx/MessageHandler.h>

#include <cstdarg>
#include <cstring>
#include <sstream>

#include "internal/MessageText.h"
#include "internal/Platform.h"

namespace {

const char* const kSeverityNames[] = {"debug", "info", "warning", "error"};

}  // namespace

MessageHandler::MessageHandler(const char* const* categories, int categoryCount,
                               const char* /*logFile*/, int /*options*/, void* /*context*/,
                               const char* /*echo*/)
    : m_written{false, false, false, false}, m_sink(stderr) {
    for (int i = 0; categories != nullptr && i < categoryCount; ++i)
        m_categories.emplace_back(categories[i] != nullptr ? categories[i] : "");
}

MessageHandler::~MessageHandler() = default;

void MessageHandler::SetLogReporting(const char* text) {
    std::istringstream words(text != nullptr ? text : "");
    std::string word;
    while (words >> word) {
        for (int s = Debug; s <= Error; ++s) {
            if (word == "all" || word == kSeverityNames[s])
                m_written[s] = true;
        }
    }
}

void MessageHandler::SetSink(FILE* sink) { m_sink = sink; }

void MessageHandler::report(Severity severity, const char* category, const char* format,
                            va_list args) {
    char text[korx::detail::kMessageBytes];
    korx::detail::FormatV(text, sizeof text, format, args);
    m_reports.push_back({category != nullptr ? category : "", severity, text});
    if (m_written[severity] && m_sink != nullptr) {
        std::fprintf(m_sink, "%s %s: %s\n", m_reports.back().category.c_str(),
                     kSeverityNames[severity], text);
    }
}

#define KORX_MESSAGE_HANDLER_REPORT(name, severity)                                                \
    void MessageHandler::name(const char* category, const char* format, ...) {                     \
        va_list args;                                                                              \
        va_start(args, format);                                                                    \
        report(severity, category, format, args);                                                  \
        va_end(args);                                                                              \
    }
KORX_MESSAGE_HANDLER_REPORT(ReportDebug2, Debug)
KORX_MESSAGE_HANDLER_REPORT(ReportInfo2, Info)
KORX_MESSAGE_HANDLER_REPORT(ReportWarning2, Warning)
KORX_MESSAGE_HANDLER_REPORT(ReportError2, Error)
#undef KORX_MESSAGE_HANDLER_REPORT
