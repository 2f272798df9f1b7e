#include "internal/MessageText.h"

#include "internal/OwnedText.h"
#include "internal/Platform.h"

namespace korx::detail {

char* NewFormattedMessage(const char* format, va_list args) {
    char buffer[kMessageBytes] = {};
    FormatV(buffer, sizeof buffer, format, args);
    return CopyText(buffer);
}

char* NewReformattedMessage(const char* text) {
    char buffer[kMessageBytes] = {};
    Reformat(buffer, sizeof buffer, text);
    return CopyText(buffer);
}

}  // namespace korx::detail
