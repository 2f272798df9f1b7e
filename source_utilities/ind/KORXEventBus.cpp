#include <korx/KORXEventBus.h>

#include <ctime>

#include "internal/Platform.h"

namespace {

using ListenerArray = KORXDynamicArray<KORXEventListener*>;

// Set when the bus is destroyed at exit. Static destructors that run later may still remove
// listeners or send events: they find an empty bus, and additions are ignored since nothing
// would free them.
bool g_busDestroyed = false;

void stamp(KORXEvent& event) {
    long ticks = korx::detail::ClockMilliseconds();
    event.SetClock(ticks);
    long long seconds = static_cast<long long>(std::time(nullptr));
    event.SetTime(seconds);
}

// Send asks at every step, so the header is read here rather than through a library call.
// No header yet (nothing ever registered) counts as no listeners.
int currentCount(const ListenerArray& listeners) {
    const KORXArrayHeader* header = listeners.getHeader();
    return header != nullptr && header->check == header->data ? header->count : 0;
}

// A slot past the current end (listeners removed during a dispatch) reads as empty.
KORXEventListener* listenerAt(const ListenerArray& listeners, int i) {
    if (i >= currentCount(listeners))
        return nullptr;
    return static_cast<KORXEventListener* const*>(listeners.getHeader()->data)[i];
}

int indexOf(const ListenerArray& listeners, const KORXEventListener* listener) {
    const int count = currentCount(listeners);
    for (int i = 0; i < count; ++i) {
        if (listenerAt(listeners, i) == listener)
            return i;
    }
    return -1;
}

}  // namespace

KORXEventListener::~KORXEventListener() = default;

KORXEventBus KORXEventBus::s_bus;

KORXEventBus::~KORXEventBus() {
    g_busDestroyed = true;
    m_listeners.clear();
}

KORXEventBus& KORXEventBus::GetEventBus() { return s_bus; }

void KORXEventBus::Fire(KORXEvent& event) { GetEventBus().Send(event); }

void KORXEventBus::AddListener(KORXEventListener* listener) {
    if (listener == nullptr || g_busDestroyed || indexOf(m_listeners, listener) >= 0)
        return;
    m_listeners.add(listener);
}

void KORXEventBus::RemoveListener(KORXEventListener* listener) {
    if (listener == nullptr)
        return;
    const int i = indexOf(m_listeners, listener);
    if (i >= 0)
        m_listeners.removeAt(i);
}

void KORXEventBus::Send(KORXEvent& event) {
    if (event.IsTimed())
        stamp(event);
    // Read once: a listener added during the dispatch is first called for the next event.
    const int count = currentCount(m_listeners);
    if (count == 0)
        return;
    // Adding and removing listeners keep the header (only its block may move), so it is taken
    // once; its block and count are read afresh for every slot.
    const KORXArrayHeader* header = m_listeners.getHeader();
    for (int i = 0; i < count; ++i) {
        // After a removal the later listeners have moved down one place, so one of them is
        // skipped for this event; callers rely on that. A slot past the end reads as empty.
        if (i >= header->count)
            break;
        KORXEventListener* listener = static_cast<KORXEventListener* const*>(header->data)[i];
        if (listener != nullptr)
            listener->HandleEvent(event);
    }
}
