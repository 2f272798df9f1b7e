#include <korx/KORXStreamFormatter.h>
#include <korx/KORXTaskEvent.h>

#include "internal/OwnedText.h"

namespace {
constexpr long kFailure = 0x1000001;
}  // namespace

// ---- KORXTaskEvent ----------------------------------------------------------------------------

KORXTaskEvent::KORXTaskEvent(const char* name, const char* taskIdentifier, KORXEventLevel level)
    : KORXEvent(name, level), m_reserved(0),
      m_taskIdentifier(korx::detail::CopyText(taskIdentifier)) {}

KORXTaskEvent::~KORXTaskEvent() = default;

bool KORXTaskEvent::IsTimed() const { return true; }

KORIResult KORXTaskEvent::GetTaskIdentifier(KORXString& identifier) const {
    if (m_taskIdentifier.get() == nullptr)
        return KORIResult(kFailure);
    identifier = KORXString(m_taskIdentifier.get());
    return KORIResult(0);
}

// ---- KORXStartTaskEvent -----------------------------------------------------------------------

KORXStartTaskEvent::KORXStartTaskEvent(const char* name, const char* taskIdentifier,
                                       KORXEventLevel level)
    : KORXTaskEvent(name, taskIdentifier, level) {}

KORXStartTaskEvent::~KORXStartTaskEvent() = default;

KORXTaskEventKind KORXStartTaskEvent::GetKind() const { return KORX_TASK_START; }

// ---- KORXEndTaskEvent -------------------------------------------------------------------------

KORXEndTaskEvent::KORXEndTaskEvent(KORIResult& result, const char* name, const char* taskIdentifier,
                                   KORXEventLevel level)
    : KORXTaskEvent(name, taskIdentifier, level), m_taskResult(result) {}

KORXEndTaskEvent::~KORXEndTaskEvent() = default;

void KORXEndTaskEvent::Fire(KORIResult& result, const char* name, const char* taskIdentifier,
                            KORXEventLevel level) {
    KORXEndTaskEvent event(result, name, taskIdentifier, level);
    KORXEventBus::Fire(event);
}

KORXTaskEventKind KORXEndTaskEvent::GetKind() const { return KORX_TASK_END; }

void KORXEndTaskEvent::GetFormattedDescription(KORXOutputStream* stream) const {
    KORXStreamFormatter f(stream);
    const char* name = GetName();
    f << (name != nullptr ? name : "") << " Result : " << m_taskResult.GetMessage()
      << f.getEndline();
}

// ---- KORXThirdPartyProgressEvent --------------------------------------------------------------

KORXThirdPartyProgressEvent::KORXThirdPartyProgressEvent(double progress)
    : KORXEvent("KORXThirdPartyProgressEvent", KORX_LEVEL_INFO), m_progress(progress) {}

KORXThirdPartyProgressEvent::~KORXThirdPartyProgressEvent() = default;

void KORXThirdPartyProgressEvent::Fire(double progress) {
    KORXThirdPartyProgressEvent event(progress);
    KORXEventBus::Fire(event);
}

KORIResult KORXThirdPartyProgressEvent::GetProgress(double& progress) const {
    progress = m_progress;
    return KORIResult(0);
}
