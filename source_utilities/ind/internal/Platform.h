// Platform.h
//
// The one place where the library meets the C runtime and the operating system: bounded
// formatting with the contract every printf-style path of the library relies on, the second
// formatting pass, the argument-shifting formatter, clocks, and allocator queries.
// Internal: not installed.
#ifndef KORX_INTERNAL_PLATFORM_H
#define KORX_INTERNAL_PLATFORM_H

#include <korx/KORXExport.h>
#include <korx/KORXWChar.h>

#include <cstdarg>
#include <cstddef>

namespace korx::detail {

/// Formats into buffer[0 .. size-1]. Returns the length written, or -1 when the text was cut
/// (a text of exactly size bytes is cut too). The buffer is always terminated when size > 0.
int FormatV(char* buffer, size_t size, const char* format, va_list args);
int Format(char* buffer, size_t size, const char* format, ...) KORX_PRINTF_FORMAT(3, 4);

/// Formats an already formatted text a second time without arguments: "%%" becomes "%" and
/// every other conversion specification is copied as it stands. Same contract as FormatV.
int Reformat(char* buffer, size_t size, const char* text);

/// Formats with the arguments shifted by one: the first conversion of format receives format
/// itself (as a text pointer), each later conversion the caller argument meant for the
/// conversion before it. The last argument is never read, so a caller whose arguments match
/// format is never read past. Same contract as FormatV.
int FormatShiftedV(char* buffer, size_t size, const char* format, va_list args);

/// Formats with exactly two arguments, an int precision and then a double value, each
/// conversion taking the next one. A conversion of another type renders the bits it was
/// given (the int read by "%lf" is a tiny double), and one past the two renders zero bits:
/// nothing is ever read that was not passed. Same contract as FormatV.
int FormatPrecisionAndDouble(char* buffer, size_t size, const char* format, int precision,
                             double value);

/// Milliseconds of monotonic time since the library was loaded.
long ClockMilliseconds();

/// A monotonic counter and its ticks per second.
long long HighResolutionCounter();
long long HighResolutionFrequency();

/// The n UTF-16 units in the current locale's multibyte form, through the C runtime's wcstombs
/// (surrogate pairs are combined where wchar_t is 32 bits). Writes at most size bytes, not
/// terminated; returns the count, or -1 when the locale cannot represent the text.
long ToLocaleMultibyte(const KORXWChar* units, int n, char* out, size_t size);

/// strtod read in the "C" locale whatever the current one: "." is the decimal point.
double StrtodClassic(const char* text, char** end);

/// Usable bytes of a block returned by malloc (at least what was asked for).
size_t AllocatedSize(void* block);

}  // namespace korx::detail

#endif
