#include <korx/KORXStream.h>

KORXStringOutputStream::KORXStringOutputStream() = default;

KORXStringOutputStream::KORXStringOutputStream(const KORXStringOutputStream& other) = default;

KORXStringOutputStream::~KORXStringOutputStream() = default;

void KORXStringOutputStream::write(char* const buffer, int n) {
    if (buffer == nullptr)
        return;
    // Byte by byte and without terminator: callers add a 0 byte when they want a C string.
    for (int i = 0; i < n; ++i)
        m_bytes.append(buffer[i]);
}

void KORXStringOutputStream::flush() {}

void KORXStringOutputStream::close() {}

char* KORXStringOutputStream::contents() const { return m_bytes; }

int KORXStringOutputStream::len() const { return m_bytes.len(); }

void KORXStringOutputStream::chop(int n) { m_bytes.chop(n); }
