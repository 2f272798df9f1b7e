#include <korx/KORXError.h>

namespace {
KORXErrorTracker* g_tracker = nullptr;
}  // namespace

KORXErrorTracker::KORXErrorTracker() = default;

KORXErrorTracker::~KORXErrorTracker() {
    KORXEventBus::GetEventBus().RemoveListener(this);
    if (g_tracker == this)
        g_tracker = nullptr;
    ClearErrorList();
}

KORIResult KORXErrorTracker::Initialize() {
    if (g_tracker == nullptr) {
        g_tracker = new KORXErrorTracker();
        KORXEventBus::GetEventBus().AddListener(g_tracker);
    }
    return KORIResult(0);
}

KORXErrorTracker* KORXErrorTracker::GetInstance() { return g_tracker; }

KORIResult KORXErrorTracker::Reset() {
    if (g_tracker != nullptr)
        g_tracker->ClearErrorList();
    return KORIResult(0);
}

void KORXErrorTracker::HandleEvent(KORXEvent& event) {
    // An event that only borrows the name carries no error record to copy.
    const auto* error = dynamic_cast<const KORXErrorEvent*>(&event);
    if (error != nullptr && event.IsA("KORXErrorEvent"))
        m_errors.add(error->GetError());
}

KORXError* KORXErrorTracker::GetLastError() {
    const int count = m_errors.size();
    return count > 0 ? &m_errors[count - 1] : nullptr;
}

void KORXErrorTracker::ClearErrorList() { m_errors.clear(); }

KORXError* KORXErrorTracker::GetError(int i) {
    return i >= 0 && i < m_errors.size() ? &m_errors[i] : nullptr;
}

int KORXErrorTracker::GetCount() const { return m_errors.size(); }
