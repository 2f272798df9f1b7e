#include <korx/KORXEventBus.h>
#include <korx/KORXString.h>

#include <cstring>

#include "internal/OwnedText.h"

using korx::detail::CopyText;

namespace {

constexpr long kStampMissing = 0x1000001;

struct LevelName {
    const char* text;
    KORXEventLevel level;
};

// There is deliberately no text for KORX_LEVEL_WARNING: callers rely on "WARNING" (and "TRACE")
// giving their default level.
constexpr LevelName kLevelNames[] = {
    {"ALL", KORX_LEVEL_ALL},         {"ABORT", KORX_LEVEL_ABORT}, {"DEBUG", KORX_LEVEL_DEBUG},
    {"ERROR", KORX_LEVEL_ERROR},     {"INFO", KORX_LEVEL_INFO},   {"NONE", KORX_LEVEL_NONE},
    {"VERBOSE", KORX_LEVEL_VERBOSE},
};

bool startsWithLevelLetter(const char* bytes) { return bytes[0] >= 'A' && bytes[0] <= 'V'; }

KORIResult stampResult(bool timeSet) { return timeSet ? KORIResult(0) : KORIResult(kStampMissing); }

}  // namespace

// The stamps start at 0; they read as unset until SetClock or SetTime.
KORXEvent::KORXEvent(const char* name, KORXEventLevel level)
    : KORXObject("KORXEvent"), m_name(CopyText(name)), m_level(level), m_timeSet(false), m_time(0),
      m_clock(0) {}

KORXEvent::KORXEvent(const KORXEvent& other)
    : KORXObject(other), m_name(CopyText(other.m_name)), m_level(other.m_level),
      m_timeSet(other.m_timeSet), m_time(other.m_time), m_clock(other.m_clock) {}

KORXEvent& KORXEvent::operator=(const KORXEvent& other) {
    if (this == &other)
        return *this;
    KORXObject::operator=(other);
    char* name = CopyText(other.m_name);
    delete[] m_name;
    m_name = name;
    m_level = other.m_level;
    m_timeSet = other.m_timeSet;
    m_time = other.m_time;
    m_clock = other.m_clock;
    return *this;
}

KORXEvent::~KORXEvent() { delete[] m_name; }

void KORXEvent::GetFormattedDescription(KORXOutputStream* /*stream*/) const {}

bool KORXEvent::IsTimed() const { return false; }

bool KORXEvent::IsA(const char* name) const { return korx::detail::SameText(m_name, name); }

KORXEventLevel KORXEvent::GetLevel(KORXString& text, KORXEventLevel defaultLevel) {
    const char* bytes = text;
    if (text.length() == 0 || bytes == nullptr || !startsWithLevelLetter(bytes))
        return defaultLevel;
    for (const LevelName& name : kLevelNames) {
        if (std::strcmp(bytes, name.text) == 0)
            return name.level;
    }
    return defaultLevel;
}

// One flag covers both stamps: callers rely on GetClock succeeding after SetTime alone.
KORIResult KORXEvent::SetClock(long& ticks) {
    m_clock = static_cast<int32_t>(ticks);
    m_timeSet = true;
    return KORIResult(0);
}

KORIResult KORXEvent::SetTime(long long& seconds) {
    m_time = static_cast<int64_t>(seconds);
    m_timeSet = true;
    return KORIResult(0);
}

KORIResult KORXEvent::GetClock(long& ticks) const {
    ticks = m_clock;
    return stampResult(m_timeSet);
}

KORIResult KORXEvent::GetTime(long long& seconds) const {
    seconds = m_time;
    return stampResult(m_timeSet);
}

KORXEventMessage::KORXEventMessage(const KORXEventMessage& other)
    : m_text(CopyText(other.m_text)) {}

KORXEventMessage& KORXEventMessage::operator=(const KORXEventMessage& other) {
    if (this != &other) {
        char* text = CopyText(other.m_text);
        delete[] m_text;
        m_text = text;
    }
    return *this;
}

KORXEventMessage::~KORXEventMessage() { delete[] m_text; }
