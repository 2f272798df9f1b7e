// OwnedText.h
//
// The names that objects and events keep: their own new[] copy of a text, or null when the
// text is null or empty. Internal: not installed.
#ifndef KORX_INTERNAL_OWNEDTEXT_H
#define KORX_INTERNAL_OWNEDTEXT_H

#include <cstring>

namespace korx::detail {

/// A new[] copy of text, or null for a null or empty text.
inline char* CopyText(const char* text) {
    if (text == nullptr || text[0] == '\0')
        return nullptr;
    const size_t size = std::strlen(text) + 1;
    char* copy = new char[size];
    std::memcpy(copy, text, size);
    return copy;
}

/// True when both texts exist and are equal byte for byte.
inline bool SameText(const char* kept, const char* asked) {
    return kept != nullptr && asked != nullptr && std::strcmp(kept, asked) == 0;
}

}  // namespace korx::detail

#endif
