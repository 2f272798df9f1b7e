#include <korx/KORXStream.h>

#include <korx/KORXFilePath.h>

#include <cstdint>

namespace {

constexpr int32_t kFollowsDescriptor = -1;

KORXFileDescriptor* openForReading(const char* name) {
    return new KORXFileDescriptor(name, KORXFileDescriptor::READ_MODE);
}

// The size is kept in 32 bits: a larger file reads as the largest size that fits.
int32_t sizeOf(KORXFileDescriptor& descriptor) {
    const long size = descriptor.fileSize();
    return size > INT32_MAX ? INT32_MAX : static_cast<int32_t>(size);
}

}  // namespace

KORXFileInputStream::KORXFileInputStream()
    : m_fileSize(0), m_offset(kFollowsDescriptor),
      m_descriptor(new KORXFileDescriptor(0, KORXFileDescriptor::READ_MODE)) {
    m_fileSize = sizeOf(*m_descriptor);
}

KORXFileInputStream::KORXFileInputStream(const char* name)
    : m_fileSize(0), m_offset(kFollowsDescriptor), m_descriptor(openForReading(name)) {
    m_fileSize = sizeOf(*m_descriptor);
}

KORXFileInputStream::KORXFileInputStream(KORXFilePath& path)
    : KORXFileInputStream(static_cast<const char*>(path)) {}

KORXFileInputStream::KORXFileInputStream(FILE* file)
    : m_fileSize(0), m_offset(kFollowsDescriptor),
      m_descriptor(new KORXFileDescriptor(file, KORXFileDescriptor::READ_MODE)) {
    m_fileSize = sizeOf(*m_descriptor);
}

KORXFileInputStream::KORXFileInputStream(const KORXFileDescriptorHandle& descriptor,
                                         int32_t fileSize, int32_t offset)
    : m_fileSize(fileSize), m_offset(offset), m_descriptor(descriptor) {}

KORXFileInputStream::KORXFileInputStream(const KORXFileInputStream& other) = default;

KORXFileInputStream::~KORXFileInputStream() = default;

KORXInputStream* KORXFileInputStream::duplicate() {
    // From now on this stream keeps its own position. A stream that keeps one already goes
    // on from it (the descriptor's position belongs to another stream); a descriptor that
    // cannot tell its position leaves both streams following it.
    const long position = getCurrentOffset();
    if (position >= 0)
        movePrivateOffset(position);
    return new KORXFileInputStream(m_descriptor, m_fileSize, m_offset);
}

int KORXFileInputStream::read(char* const buffer, int n) {
    const int got = m_descriptor->readBytes(buffer, n, m_offset);
    if (keepsPrivateOffset() && got > 0)
        movePrivateOffset(static_cast<long>(m_offset) + got);
    return got;
}

long KORXFileInputStream::skip(long n) {
    // Answers the new position, not the count skipped: callers rely on it.
    if (!keepsPrivateOffset())
        return m_descriptor->offset(n);
    movePrivateOffset(m_offset + n);
    return m_offset;
}

int KORXFileInputStream::available() const {
    return static_cast<int>(m_fileSize - getCurrentOffset());
}

bool KORXFileInputStream::add(const Gk_String& bytes) {
    const long back = bytes.len();
    if (keepsPrivateOffset())
        movePrivateOffset(m_offset - back);
    else if (m_descriptor->offset(-back) < 0)
        m_descriptor->seek(0);  // past the start it stops at the start, as a private position
    return true;
}

long KORXFileInputStream::getCurrentOffset() const {
    return keepsPrivateOffset() ? m_offset : m_descriptor->offset(0);
}

void KORXFileInputStream::setOffset(long offset) {
    if (keepsPrivateOffset())
        movePrivateOffset(offset);
    else
        m_descriptor->seek(offset);
}

// A private position never goes below 0: -1 would hand the position back to the descriptor.
void KORXFileInputStream::movePrivateOffset(long offset) {
    if (offset < 0)
        offset = 0;
    m_offset = offset > INT32_MAX ? INT32_MAX : static_cast<int32_t>(offset);
}
