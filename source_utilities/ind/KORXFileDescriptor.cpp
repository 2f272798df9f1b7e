#include <korx/KORXFileDescriptor.h>

#include "internal/FileSystem.h"

using korx::detail::SeekDescriptor;

namespace {

constexpr int kNotOpen = -1;
constexpr long kCurrentPosition = -1;

int openPath(const char* name, int mode) {
    if (mode != KORXFileDescriptor::READ_MODE && mode != KORXFileDescriptor::WRITE_MODE)
        return kNotOpen;
    const int number = korx::detail::OpenDescriptor(name, mode == KORXFileDescriptor::WRITE_MODE);
    return number < 0 ? kNotOpen : number;
}

bool usableTransfer(const char* buffer, int n, long offset) {
    return n >= 0 && (buffer != nullptr || n == 0) && offset >= kCurrentPosition;
}

}  // namespace

KORXFileDescriptor::KORXFileDescriptor(const char* name, int mode)
    : m_number(openPath(name, mode)), m_mode(mode), m_owned(true) {}

KORXFileDescriptor::KORXFileDescriptor(FILE* file, int mode)
    : m_number(kNotOpen), m_mode(mode), m_owned(false) {
    if (file == nullptr)
        return;
    // Start where the caller's FILE stands, with what it buffered for writing already out.
    const long position = std::ftell(file);
    std::fflush(file);
    m_number = korx::detail::DescriptorOfFile(file);
    if (position >= 0)
        SeekDescriptor(m_number, position, false);
}

KORXFileDescriptor::KORXFileDescriptor(int number, int mode)
    : m_number(number < 0 ? kNotOpen : number), m_mode(mode), m_owned(false) {}

KORXFileDescriptor::~KORXFileDescriptor() {
    if (m_owned && isOpen())
        korx::detail::CloseDescriptor(m_number);
}

int KORXFileDescriptor::readBytes(char* buffer, int n, long offset) {
    if (!isOpen() || !usableTransfer(buffer, n, offset))
        return -1;
    return static_cast<int>(
        korx::detail::ReadDescriptor(m_number, buffer, static_cast<size_t>(n), offset));
}

int KORXFileDescriptor::writeBytes(const char* buffer, int n, long offset) {
    if (!isOpen() || !usableTransfer(buffer, n, offset))
        return -1;
    int done = 0;
    while (done < n) {
        const long at = offset == kCurrentPosition ? offset : offset + done;
        const long put = korx::detail::WriteDescriptor(m_number, buffer + done,
                                                       static_cast<size_t>(n - done), at);
        if (put <= 0)
            return done > 0 ? done : -1;
        done += static_cast<int>(put);
    }
    return done;
}

long KORXFileDescriptor::offset(long d) {
    return isOpen() ? SeekDescriptor(m_number, d, true) : -1;
}

long KORXFileDescriptor::seek(long o) {
    return isOpen() && o >= 0 ? SeekDescriptor(m_number, o, false) : -1;
}

long KORXFileDescriptor::fileSize() {
    return isOpen() ? korx::detail::DescriptorSize(m_number) : -1;
}
