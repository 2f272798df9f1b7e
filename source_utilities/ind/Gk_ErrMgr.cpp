#include <korx/Gk_Exception.h>
#include <korx/KORXError.h>

#include <atomic>

#include "internal/Platform.h"

namespace {

// The one cross-thread hand-off of the library: a host may set the flag from another thread
// while the worker checks it.
std::atomic<bool> g_abort{false};

}  // namespace

bool (*KORXCallbackShared::m_AbortCallback)() = nullptr;

void Gk_ErrMgr::raise(const Gk_Exception& e) {
    // The token is the format of the published error. No argument exists for a conversion in
    // it, so conversions stay as written.
    char text[1024];
    korx::detail::Reformat(text, sizeof text, e.token());
    KORXError::PublishReformatted(text);
    // Thrown as its Gk_Exception part, whatever e is: handlers catch Gk_Exception.
    throw Gk_Exception(e);
}

void Gk_ErrMgr::doAssert(const char* file, int line) {
    KORXAssert::Printf("%s [%d]", file != nullptr ? file : "(null)", line);
}

void Gk_ErrMgr::setAbort() { g_abort.store(true, std::memory_order_relaxed); }

bool Gk_ErrMgr::shouldAbort() { return g_abort.load(std::memory_order_relaxed); }

void Gk_ErrMgr::checkAbort() {
    if (g_abort.exchange(false, std::memory_order_relaxed))
        throw KORXAbortException();
}

void Gk_ErrMgr::trap() {}

bool KORXCallbackShared::IsAborted() {
    const bool flag = Gk_ErrMgr::shouldAbort();
    if (m_AbortCallback == nullptr && !flag)
        return false;
    // Without a callback the flag alone decides. The flag stays set: every later call throws
    // until checkAbort() consumes it.
    const bool asked = m_AbortCallback != nullptr && m_AbortCallback();
    if (asked || flag)
        throw KORXAbortException();
    return false;
}
