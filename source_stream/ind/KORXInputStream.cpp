#include <korx/Gk_Exception.h>
#include <korx/KORXStream.h>

namespace {

constexpr long kSkipChunk = 8192;

// One scratch buffer for every stream's skip, kept for the life of the process.
char* skipScratch() {
    static char scratch[kSkipChunk];
    return scratch;
}

[[noreturn]] void raiseUnsupported() { Gk_ErrMgr::raise(Gk_IOException("Gk_IOException")); }

}  // namespace

KORXInputStream::KORXInputStream() : m_innerStream(nullptr) {}

KORXInputStream::KORXInputStream(KORXInputStream* inner) : m_innerStream(inner) {}

KORXInputStream::KORXInputStream(const KORXInputStream& other) = default;

KORXInputStream& KORXInputStream::operator=(const KORXInputStream& other) = default;

KORXInputStream::~KORXInputStream() { m_innerStream = nullptr; }

int KORXInputStream::readChar() {
    char byte = 0;
    if (read(&byte, 1) <= 0)
        return -1;
    // The byte as 0 .. 255, so that a 0xFF byte is not taken for the end.
    return static_cast<unsigned char>(byte);
}

long KORXInputStream::skip(long n) {
    if (n < 1)
        return 0;
    char* scratch = skipScratch();
    long remaining = n;
    while (remaining > 0) {
        const long chunk = remaining < kSkipChunk ? remaining : kSkipChunk;
        const int got = read(scratch, static_cast<int>(chunk));
        // A read of 0 ends the skip as well as a failure: a stream at its end keeps giving 0.
        if (got <= 0)
            break;
        remaining -= got;
    }
    return n - remaining;
}

int KORXInputStream::available() const { raiseUnsupported(); }

bool KORXInputStream::add(const Gk_String&) { raiseUnsupported(); }

long KORXInputStream::getCurrentOffset() const { raiseUnsupported(); }

void KORXInputStream::setOffset(long) { raiseUnsupported(); }
