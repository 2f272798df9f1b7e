#include <korx/Gk_Exception.h>
#include <korx/KORXStream.h>

namespace {

// Assertions report this source and these lines; log readers search for them.
constexpr const char* kSource = "source_stream/ind/KORXStringInputStream";
constexpr int kMalformedTextLine = 29;
constexpr int kDuplicateLine = 36;

bool isTerminatedText(const Gk_String& text) {
    return text.len() > 0 && text[text.len() - 1] == '\0';
}

}  // namespace

KORXStringInputStream::KORXStringInputStream(const Gk_String& text) : m_text(text), m_position(0) {
    Gk_ErrMgr::checkAbort();
    // A text without terminator or an empty one is reported and read as far as it goes.
    if (!isTerminatedText(m_text))
        Gk_ErrMgr::doAssert(kSource, kMalformedTextLine);
}

KORXStringInputStream::KORXStringInputStream(const KORXStringInputStream& other) = default;

KORXStringInputStream::~KORXStringInputStream() = default;

KORXInputStream* KORXStringInputStream::duplicate() {
    Gk_ErrMgr::checkAbort();
    Gk_ErrMgr::doAssert(kSource, kDuplicateLine);
    return nullptr;
}

int KORXStringInputStream::read(char* const buffer, int n) {
    if (buffer == nullptr)
        return n > 0 ? -1 : 0;
    int count = 0;
    while (count < n && available()) {
        buffer[count] = m_text[m_position];
        ++count;
        ++m_position;
    }
    return count;
}

int KORXStringInputStream::available() const {
    // Yes or no, not a byte count: callers rely on the 0/1 answer.
    return m_text.len() - m_position - 1 > 0 ? 1 : 0;
}

bool KORXStringInputStream::add(const Gk_String& bytes) {
    // The bytes are not compared with those read: only their count steps back.
    m_position -= bytes.len();
    if (m_position < 0)
        m_position = 0;
    return true;
}

Gk_String KORXStringInputStream::contents() const {
    const int remaining = m_text.len() - m_position;
    if (remaining <= 0)
        return Gk_String();
    return Gk_String(static_cast<char*>(m_text) + m_position, remaining);
}
