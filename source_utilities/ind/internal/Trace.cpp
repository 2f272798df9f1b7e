#include "internal/Trace.h"

#include <cstdarg>
#include <cstdio>

namespace korx::detail {

// Writes to standard output with vprintf until the trace reporter takes this over; pieces are
// not bounded or buffered here, so a dump reads exactly as it was written.
void TracePrintf(const char* format, ...) {
    va_list args;
    va_start(args, format);
    std::vprintf(format, args);
    va_end(args);
}

}  // namespace korx::detail
