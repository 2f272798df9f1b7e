// Platform.h
//
// The one place where the library meets the C runtime and the operating system: bounded
// formatting with the contract every printf-style path of the library relies on, the second
// formatting pass, the argument-shifting formatter, clocks, and allocator queries.
// Internal: not installed.
#ifndef KORX_INTERNAL_PLATFORM_H
#define KORX_INTERNAL_PLATFORM_H

#include <cstdarg>
#include <cstddef>

namespace korx::detail {

/// Formats into buffer[0 .. size-1]. Returns the length written, or -1 when the text was cut
/// (a text of exactly size bytes is cut too). The buffer is always terminated when size > 0.
int FormatV(char* buffer, size_t size, const char* format, va_list args);
int Format(char* buffer, size_t size, const char* format, ...)
#if defined(__GNUC__)
    __attribute__((format(printf, 3, 4)))
#endif
    ;

/// Formats an already formatted text a second time without arguments: "%%" becomes "%" and
/// every other conversion specification is copied as it stands. Same contract as FormatV.
int Reformat(char* buffer, size_t size, const char* text);

/// Formats with the arguments shifted by one: the first conversion of format receives format
/// itself (as a text pointer), each later conversion the caller argument meant for the
/// conversion before it. The last argument is never read, so a caller whose arguments match
/// format is never read past. Same contract as FormatV.
int FormatShiftedV(char* buffer, size_t size, const char* format, va_list args);

/// Milliseconds of monotonic time since the library was loaded.
long ClockMilliseconds();

/// A monotonic counter and its ticks per second.
long long HighResolutionCounter();
long long HighResolutionFrequency();

/// Usable bytes of a block returned by malloc (at least what was asked for).
size_t AllocatedSize(void* block);

}  // namespace korx::detail

#endif
