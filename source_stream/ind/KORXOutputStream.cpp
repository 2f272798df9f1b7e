#include <korx/KORXStream.h>

KORXOutputStream::KORXOutputStream() : m_innerStream(nullptr) {}

KORXOutputStream::KORXOutputStream(KORXOutputStream* inner) : m_innerStream(inner) {}

KORXOutputStream::KORXOutputStream(const KORXOutputStream& other) = default;

KORXOutputStream& KORXOutputStream::operator=(const KORXOutputStream& other) = default;

KORXOutputStream::~KORXOutputStream() = default;

void KORXOutputStream::writeChar(char c) { write(&c, 1); }
