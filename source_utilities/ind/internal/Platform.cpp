#include "internal/Platform.h"

#include <chrono>
#include <cstdlib>
#include <cwchar>
#include <vector>

#include <malloc.h>
#include <locale.h>
#include <stdlib.h>

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

long ToLocaleMultibyte(const KORXWChar* units, int n, char* out, size_t size) {
    std::vector<wchar_t> wide;
    wide.reserve(static_cast<size_t>(n) + 1);
    for (int i = 0; i < n; ++i) {
        auto unit = static_cast<unsigned long>(units[i]);
        const bool pair = unit >= 0xD800 && unit <= 0xDBFF && i + 1 < n &&
                          units[i + 1] >= 0xDC00 && units[i + 1] <= 0xDFFF;
        if (KORX_WCHAR_IS_UTF32 && pair) {
            unit = 0x10000 + ((unit - 0xD800) << 10) + (units[i + 1] - 0xDC00u);
            ++i;
        }
        wide.push_back(static_cast<wchar_t>(unit));
    }
    wide.push_back(0);
    const size_t written = std::wcstombs(out, wide.data(), size);
    return written == static_cast<size_t>(-1) ? -1 : static_cast<long>(written);
}

double StrtodClassic(const char* text, char** end) {
#if defined(_WIN32)
    static const _locale_t classic = _create_locale(LC_NUMERIC, "C");
    return _strtod_l(text, end, classic);
#else
    // Made once and kept: the library may parse numbers while static objects are destroyed.
    static const locale_t classic = newlocale(LC_NUMERIC_MASK, "C", locale_t{});
    return strtod_l(text, end, classic);
#endif
}

size_t AllocatedSize(void* block) {
#if defined(_WIN32)
    return _msize(block);
#else
    return malloc_usable_size(block);
#endif
}

}  // namespace korx::detail
