#include <korx/Gk_Exception.h>
#include <korx/KORXError.h>
#include <korx/KORXStreamFormatter.h>

#include <cstdlib>

#include "internal/MessageText.h"
#include "internal/Platform.h"

namespace {
constexpr const char* kEventName = "KORXAssertEvent";
}  // namespace

KORXAssert::~KORXAssert() = default;

void KORXAssert::Printf(const char* format, ...) {
    if (format == nullptr)
        return;
    char text[korx::detail::kMessageBytes];
    va_list args;
    va_start(args, format);
    korx::detail::FormatV(text, sizeof text, format, args);
    va_end(args);
    KORXAssertEvent event(KORXAssertEvent::Reformatted{text});
    KORXEventBus::Fire(event);
}

KORXAssertEvent::KORXAssertEvent(const char* format, ...)
    : KORXEvent(kEventName, KORX_LEVEL_VERBOSE) {
    va_list args;
    va_start(args, format);
    m_message = KORXEventMessage(korx::detail::NewFormattedMessage(format, args));
    va_end(args);
}

KORXAssertEvent::KORXAssertEvent(va_list arguments, const char* format)
    : KORXEvent(kEventName, KORX_LEVEL_VERBOSE),
      m_message(korx::detail::NewFormattedMessage(format, arguments)) {}

KORXAssertEvent::KORXAssertEvent(Reformatted text)
    : KORXEvent(kEventName, KORX_LEVEL_VERBOSE),
      m_message(korx::detail::NewReformattedMessage(text.text)) {}

KORXAssertEvent::~KORXAssertEvent() = default;

void KORXAssertEvent::Fire(const char* format, ...) {
    va_list args;
    va_start(args, format);
    KORXAssertEvent event(args, format);
    va_end(args);
    KORXEventBus::Fire(event);
}

void KORXAssertEvent::GetFormattedDescription(KORXOutputStream* out) const {
    KORXStreamFormatter formatter(out);
    formatter << "Assert : " << m_message.get() << formatter.getEndline();
}

void KORXAssert(bool condition, const char* format, ...) {
    if (condition)
        return;
    if (format != nullptr) {
        // The first conversion receives the format itself and the later ones the caller's
        // arguments shifted by one: callers rely on this exact text.
        char text[korx::detail::kMessageBytes];
        va_list args;
        va_start(args, format);
        korx::detail::FormatShiftedV(text, sizeof text, format, args);
        va_end(args);
        KORXError::PublishReformatted(text);
    }
    std::exit(0);
}
