// Trace.h
//
// The trace printer that diagnostic dumps (KORXString::dump, ...) write through, one piece at
// a time. Internal: not installed.
#ifndef KORX_INTERNAL_TRACE_H
#define KORX_INTERNAL_TRACE_H

namespace korx::detail {

/// printf-style trace output of one piece of a dump.
void TracePrintf(const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

}  // namespace korx::detail

#endif
