#include "internal/Trace.h"

#include <korx/KORXLogger.h>

#include <cstdarg>

#include "internal/MessageText.h"
#include "internal/Platform.h"

namespace korx::detail {

// Each piece is one trace report. KORXTrace::Printf formats its text a second time, which is
// what "%s" of the piece filled in gives: the same text as the piece's own format would.
void TracePrintf(const char* format, ...) {
    char piece[kMessageBytes];
    va_list args;
    va_start(args, format);
    FormatV(piece, sizeof piece, format, args);
    va_end(args);
    KORXTrace::Printf("%s", piece);
}

}  // namespace korx::detail
