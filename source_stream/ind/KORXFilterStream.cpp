#include <korx/KORXStream.h>

namespace {

// The filter that duplicate() makes: it owns the inner duplicate it reads from.
class OwningFilterInputStream final : public KORXFilterInputStream {
public:
    explicit OwningFilterInputStream(KORXInputStream* inner)
        : KORXFilterInputStream(inner), m_owned(inner) {}
    OwningFilterInputStream(const OwningFilterInputStream&) = delete;
    OwningFilterInputStream& operator=(const OwningFilterInputStream&) = delete;
    ~OwningFilterInputStream() override { delete m_owned; }

private:
    KORXInputStream* m_owned;
};

}  // namespace

// Input: each operation goes to the inner stream; without one the base stream answers.

KORXFilterInputStream::KORXFilterInputStream(KORXInputStream* inner) : KORXInputStream(inner) {}

KORXFilterInputStream::KORXFilterInputStream(const KORXFilterInputStream& other) = default;

KORXInputStream* KORXFilterInputStream::duplicate() {
    KORXInputStream* inner = innerStream();
    KORXInputStream* innerDuplicate = inner != nullptr ? inner->duplicate() : nullptr;
    if (innerDuplicate == nullptr)
        return nullptr;
    return new OwningFilterInputStream(innerDuplicate);
}

int KORXFilterInputStream::readChar() {
    KORXInputStream* inner = innerStream();
    return inner != nullptr ? inner->readChar() : KORXInputStream::readChar();
}

int KORXFilterInputStream::read(char* const buffer, int n) {
    KORXInputStream* inner = innerStream();
    return inner != nullptr ? inner->read(buffer, n) : -1;
}

long KORXFilterInputStream::skip(long n) {
    KORXInputStream* inner = innerStream();
    return inner != nullptr ? inner->skip(n) : KORXInputStream::skip(n);
}

int KORXFilterInputStream::available() const {
    KORXInputStream* inner = innerStream();
    return inner != nullptr ? inner->available() : KORXInputStream::available();
}

bool KORXFilterInputStream::add(const Gk_String& bytes) {
    KORXInputStream* inner = innerStream();
    return inner != nullptr ? inner->add(bytes) : KORXInputStream::add(bytes);
}

long KORXFilterInputStream::getCurrentOffset() const {
    KORXInputStream* inner = innerStream();
    return inner != nullptr ? inner->getCurrentOffset() : KORXInputStream::getCurrentOffset();
}

void KORXFilterInputStream::setOffset(long offset) {
    KORXInputStream* inner = innerStream();
    if (inner != nullptr)
        inner->setOffset(offset);
    else
        KORXInputStream::setOffset(offset);
}

// Output: each operation goes to the inner stream; without one nothing happens.

KORXFilterOutputStream::KORXFilterOutputStream(KORXOutputStream* inner) : KORXOutputStream(inner) {}

KORXFilterOutputStream::KORXFilterOutputStream(const KORXFilterOutputStream& other) = default;

void KORXFilterOutputStream::writeChar(char c) {
    if (KORXOutputStream* inner = innerStream())
        inner->writeChar(c);
}

void KORXFilterOutputStream::write(char* const buffer, int n) {
    if (KORXOutputStream* inner = innerStream())
        inner->write(buffer, n);
}

void KORXFilterOutputStream::flush() {
    if (KORXOutputStream* inner = innerStream())
        inner->flush();
}

void KORXFilterOutputStream::close() {
    if (KORXOutputStream* inner = innerStream())
        inner->close();
}
