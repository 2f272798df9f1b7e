#include <korx/Gk_Exception.h>

#include <cstring>

namespace {

// A missing token reads as the empty text.
const char* textOf(const char* token) { return token != nullptr ? token : ""; }

unsigned char lowered(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte - 'A' + 'a') : byte;
}

// Steps over a run of '#' in one token: each one cancels a '#' the other token left pending,
// or is left pending itself.
void skipHashes(const char*& p, bool& mine, bool& theirs) {
    while (*p == '#') {
        if (theirs)
            theirs = false;
        else
            mine = true;
        ++p;
    }
}

}  // namespace

bool Gk_Marker::operator==(const Gk_Marker& other) const {
    return std::strcmp(textOf(m_token), textOf(other.m_token)) == 0;
}

bool Gk_Marker::operator<(const Gk_Marker& other) const {
    return std::strcmp(textOf(m_token), textOf(other.m_token)) < 0;
}

int Gk_Marker::compare(const Gk_Marker& other) const {
    const char* a = textOf(m_token);
    const char* b = textOf(other.m_token);
    bool pendingA = false;
    bool pendingB = false;
    for (;; ++a, ++b) {
        skipHashes(a, pendingA, pendingB);
        skipHashes(b, pendingB, pendingA);
        const unsigned char ca = lowered(*a);
        const unsigned char cb = lowered(*b);
        // A token that is a proper prefix of the other compares as greater; callers rely on it.
        if (ca == 0)
            return cb == 0 || pendingB ? 0 : 1;
        if (cb == 0)
            return pendingA ? 0 : -1;
        if (ca != cb)
            return ca < cb ? -1 : 1;
    }
}

Gk_Exception::Gk_Exception(const char* message, Gk_Exception* /*cause*/) : Gk_Marker(message) {}

Gk_IOException::Gk_IOException(const char* message, Gk_Exception* cause)
    : Gk_Exception(message, cause) {}
