// ByteText.h
//
// What a C string reader sees in a byte buffer that may have no terminator. Internal: not
// installed.
#ifndef KORX_INTERNAL_BYTETEXT_H
#define KORX_INTERNAL_BYTETEXT_H

#include <cstring>
#include <string_view>

namespace korx::detail {

/// The count bytes from bytes up to the first 0 byte; empty for null.
inline std::string_view TextUpToZero(const char* bytes, size_t count) {
    if (bytes == nullptr)
        return {};
    const void* zero = std::memchr(bytes, 0, count);
    return {bytes, zero != nullptr ? static_cast<size_t>(static_cast<const char*>(zero) - bytes)
                                   : count};
}

/// text up to its first 0 byte.
inline std::string_view TextUpToZero(std::string_view text) {
    return TextUpToZero(text.data(), text.size());
}

}  // namespace korx::detail

#endif
