#include <korx/KORXLogger.h>
#include <korx/KORXStreamFormatter.h>

#include "internal/MessageText.h"

namespace {

void describe(KORXOutputStream* out, const char* prefix, const char* message) {
    KORXStreamFormatter formatter(out);
    formatter << prefix << message << formatter.getEndline();
}

}  // namespace

// The four message events differ only in their name, their two levels and the prefix of
// their description. The public constructor formats its arguments, the protected one (used
// by Fire) an argument list, the private one a text formatted before.
#define KORX_DEFINE_MESSAGE_EVENT(Event, publicLevel, fireLevel, prefix)                           \
    Event::Event(const char* format, ...) : KORXEvent(#Event, publicLevel) {                       \
        va_list args;                                                                              \
        va_start(args, format);                                                                    \
        m_message = KORXEventMessage(korx::detail::NewFormattedMessage(format, args));             \
        va_end(args);                                                                              \
    }                                                                                              \
    Event::Event(va_list arguments, const char* format)                                            \
        : KORXEvent(#Event, fireLevel),                                                            \
          m_message(korx::detail::NewFormattedMessage(format, arguments)) {}                       \
    Event::Event(Reformatted text)                                                                 \
        : KORXEvent(#Event, publicLevel),                                                          \
          m_message(korx::detail::NewReformattedMessage(text.text)) {}                             \
    Event::~Event() = default;                                                                     \
    void Event::Fire(const char* format, ...) {                                                    \
        va_list args;                                                                              \
        va_start(args, format);                                                                    \
        Event event(args, format);                                                                 \
        va_end(args);                                                                              \
        KORXEventBus::Fire(event);                                                                 \
    }                                                                                              \
    void Event::GetFormattedDescription(KORXOutputStream* out) const {                             \
        describe(out, prefix, m_message.get());                                                    \
    }

KORX_DEFINE_MESSAGE_EVENT(KORXMessageEvent, KORX_LEVEL_INFO, KORX_LEVEL_INFO, "Message : ")
// Callers rely on the two levels: 70 for a warning built directly or by KORXWarning::Printf,
// 50 for one sent through Fire.
KORX_DEFINE_MESSAGE_EVENT(KORXWarningEvent, KORX_LEVEL_WARNING, KORX_LEVEL_INFO, "Warning : ")
KORX_DEFINE_MESSAGE_EVENT(KORXVerboseEvent, KORX_LEVEL_VERBOSE, KORX_LEVEL_VERBOSE, "")
KORX_DEFINE_MESSAGE_EVENT(KORXTraceEvent, KORX_LEVEL_DEBUG, KORX_LEVEL_DEBUG, "")

#undef KORX_DEFINE_MESSAGE_EVENT
