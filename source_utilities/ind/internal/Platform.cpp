#include "internal/Platform.h"

#include <chrono>

#include <malloc.h>

namespace korx::detail {

namespace {

using Clock = std::chrono::steady_clock;

const Clock::time_point& loadTime() {
    static const Clock::time_point start = Clock::now();
    return start;
}

// Pins the start of the millisecond clock to library load, not to its first use.
[[maybe_unused]] const bool g_clockStarted = (loadTime(), true);

}  // namespace

long ClockMilliseconds() {
    const auto elapsed = Clock::now() - loadTime();
    return static_cast<long>(
        std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

long long HighResolutionCounter() {
    return static_cast<long long>(Clock::now().time_since_epoch().count());
}

long long HighResolutionFrequency() {
    return static_cast<long long>(Clock::period::den / Clock::period::num);
}

size_t AllocatedSize(void* block) {
#if defined(_WIN32)
    return _msize(block);
#else
    return malloc_usable_size(block);
#endif
}

}  // namespace korx::detail
