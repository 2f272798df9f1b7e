// Trace.h
//
// The trace printer that diagnostic dumps (KORXString::dump, ...) write through, one piece at
// a time. Internal: not installed.
#ifndef KORX_INTERNAL_TRACE_H
#define KORX_INTERNAL_TRACE_H

#include <korx/KORXExport.h>

namespace korx::detail {

/// printf-style trace output of one piece of a dump.
void TracePrintf(const char* format, ...) KORX_PRINTF_FORMAT(1, 2);

}  // namespace korx::detail

#endif
