#include <korx/KORXStream.h>

#include <korx/KORXFilePath.h>

KORXFileOutputStream::KORXFileOutputStream()
    : m_descriptor(new KORXFileDescriptor(1, KORXFileDescriptor::WRITE_MODE)) {}

KORXFileOutputStream::KORXFileOutputStream(const char* name)
    : m_descriptor(new KORXFileDescriptor(name, KORXFileDescriptor::WRITE_MODE)) {}

KORXFileOutputStream::KORXFileOutputStream(KORXFilePath& path)
    : KORXFileOutputStream(static_cast<const char*>(path)) {}

KORXFileOutputStream::KORXFileOutputStream(FILE* file)
    : m_descriptor(new KORXFileDescriptor(file, KORXFileDescriptor::WRITE_MODE)) {}

KORXFileOutputStream::KORXFileOutputStream(KORXFileDescriptor* descriptor)
    : m_descriptor(descriptor) {}

KORXFileOutputStream::KORXFileOutputStream(const KORXFileOutputStream& other) = default;

KORXFileOutputStream::~KORXFileOutputStream() = default;

void KORXFileOutputStream::write(char* const buffer, int n) {
    if (m_descriptor.holdsDescriptor())
        m_descriptor->writeBytes(buffer, n, -1);
}

// Writes go straight to the descriptor: there is nothing to flush.
void KORXFileOutputStream::flush() {}

void KORXFileOutputStream::close() {}
