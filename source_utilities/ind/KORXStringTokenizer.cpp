#include <korx/KORXStringTokenizer.h>

KORXStringTokenizer::KORXStringTokenizer(const KORXString& text, KORXWChar delimiter) {
    Initialize(text, delimiter);
}

KORXStringTokenizer::KORXStringTokenizer(const char* text, KORXWChar delimiter) {
    Initialize(KORXString(text), delimiter);
}

void KORXStringTokenizer::Initialize(const KORXString& text, KORXWChar delimiter) {
    m_tokens.clear();
    const int length = text.length();
    if (length < 1)
        return;
    // Every piece is a token, empty ones included: callers count fields by position.
    for (int p = 0;;) {
        const int found = text.indexOf(delimiter, p);
        m_tokens.add(text.substring(p, found >= 0 ? found : length));
        if (found < 0)
            return;
        p = found + 1;
    }
}

int KORXStringTokenizer::GetTokenCount() const { return m_tokens.size(); }

KORIResult KORXStringTokenizer::GetToken(int i, KORXString& out) const {
    if (i < 0 || i >= m_tokens.size())
        return KORIResult::E_FAIL_RESULT;
    out = m_tokens[i];
    return KORIResult(0);
}
