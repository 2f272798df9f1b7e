#include <korx/KORXError.h>
#include <korx/KORXStreamFormatter.h>

#include "internal/MessageText.h"
#include "internal/Platform.h"

namespace {
constexpr const char* kEventName = "KORXErrorEvent";
}  // namespace

// ---- KORXError ------------------------------------------------------------------------------

KORXError::KORXError() : m_code(0), m_line(0) {}

KORXError::KORXError(long code) : m_code(static_cast<int32_t>(code)), m_line(0) {}

KORXError::~KORXError() = default;

KORIResult KORXError::SetDescription(KORXString& description) {
    m_description = description;
    return KORIResult(0);
}

KORIResult KORXError::GetDescription(KORXString& description) {
    description = m_description;
    return KORIResult(0);
}

void KORXError::GetFormattedDescription(KORXOutputStream* out) const {
    if (m_code == 0)
        return;
    KORXStreamFormatter formatter(out);
    formatter << "Error " << static_cast<long>(m_code);
    if (m_description.length() > 0)
        formatter << " : " << m_description;
    formatter << formatter.getEndline();
}

void KORXError::SetSourceFileInfo(const char* file, int line) {
    m_sourceFile = KORXString(file);
    m_line = line;
}

void KORXError::Printf(const char* format, ...) {
    if (format == nullptr)
        return;
    char text[korx::detail::kMessageBytes];
    va_list args;
    va_start(args, format);
    korx::detail::FormatV(text, sizeof text, format, args);
    va_end(args);
    PublishReformatted(text);
}

void KORXError::PublishReformatted(const char* text) {
    KORXErrorEvent event(KORXErrorEvent::Reformatted{text});
    KORXEventBus::Fire(event);
}

int KORXError::GetErrorCount() {
    const KORXErrorTracker* tracker = KORXErrorTracker::GetInstance();
    return tracker != nullptr ? tracker->GetCount() : 0;
}

KORXError* KORXError::GetLastError() {
    KORXErrorTracker* tracker = KORXErrorTracker::GetInstance();
    return tracker != nullptr ? tracker->GetLastError() : nullptr;
}

KORXError& KORXError::GetDefaultError() {
    // Never destroyed: events may still point at it from at-exit code.
    static KORXError* const shared = new KORXError();
    return *shared;
}

// ---- KORXErrorEvent -------------------------------------------------------------------------

KORXErrorEvent::KORXErrorEvent(KORXError& e)
    : KORXEvent(kEventName, KORX_LEVEL_ERROR), m_error(&e) {}

KORXErrorEvent::KORXErrorEvent(const char* format, ...)
    : KORXEvent(kEventName, KORX_LEVEL_ERROR), m_error(&KORXError::GetDefaultError()) {
    va_list args;
    va_start(args, format);
    m_message = KORXEventMessage(korx::detail::NewFormattedMessage(format, args));
    va_end(args);
}

KORXErrorEvent::KORXErrorEvent(va_list arguments, const char* format)
    : KORXEvent(kEventName, KORX_LEVEL_ERROR),
      m_message(korx::detail::NewFormattedMessage(format, arguments)),
      m_error(&KORXError::GetDefaultError()) {}

KORXErrorEvent::KORXErrorEvent(Reformatted text)
    : KORXEvent(kEventName, KORX_LEVEL_ERROR),
      m_message(korx::detail::NewReformattedMessage(text.text)),
      m_error(&KORXError::GetDefaultError()) {}

KORXErrorEvent::~KORXErrorEvent() = default;

KORIResult KORXErrorEvent::Fire(KORXError& e, const char* file, int line) {
    e.SetSourceFileInfo(file, line);
    KORXErrorEvent event(e);
    KORXEventBus::Fire(event);
    return KORIResult(e.GetCode());
}

void KORXErrorEvent::Fire(const char* format, ...) {
    va_list args;
    va_start(args, format);
    KORXErrorEvent event(args, format);
    va_end(args);
    KORXEventBus::Fire(event);
}

void KORXErrorEvent::GetFormattedDescription(KORXOutputStream* out) const {
    if (m_message.get() == nullptr) {
        m_error->GetFormattedDescription(out);
        return;
    }
    KORXStreamFormatter formatter(out);
    formatter << "Error : " << m_message.get() << formatter.getEndline();
}

const KORXError& KORXErrorEvent::GetError() const { return *m_error; }
