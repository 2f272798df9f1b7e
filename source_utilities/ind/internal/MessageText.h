// MessageText.h
//
// The formatted messages that events own. Every message is bounded at 1,024 bytes (longer
// text is cut, never overrun) and kept as a new[] copy, or as null when it comes out empty.
// Internal: not installed.
#ifndef KORX_INTERNAL_MESSAGETEXT_H
#define KORX_INTERNAL_MESSAGETEXT_H

#include <cstdarg>
#include <cstddef>

namespace korx::detail {

constexpr size_t kMessageBytes = 1024;

/// format filled with args.
char* NewFormattedMessage(const char* format, va_list args);

/// A text that was formatted before, formatted a second time without arguments: "%%" becomes
/// "%" and every other conversion stays as written.
char* NewReformattedMessage(const char* text);

}  // namespace korx::detail

#endif
