// KORXStringTokenizer.h
//
// Splits a KORXString at every occurrence of one delimiter unit. Empty pieces are tokens
// too: adjacent delimiters give an empty token between them, and a delimiter at the end a
// final empty token; an empty text gives none. Copies share the token array.
#ifndef KORX_KORXSTRINGTOKENIZER_H
#define KORX_KORXSTRINGTOKENIZER_H

#include <korx/KORIResult.h>
#include <korx/KORXDynamicArray.h>
#include <korx/KORXExport.h>
#include <korx/KORXString.h>
#include <korx/KORXWChar.h>

class KORX_API KORXStringTokenizer {
public:
    KORXStringTokenizer(const KORXString& text, KORXWChar delimiter);
    /// text is UTF-8.
    KORXStringTokenizer(const char* text, KORXWChar delimiter);

    /// Replaces the tokens with those of text.
    void Initialize(const KORXString& text, KORXWChar delimiter);

    int GetTokenCount() const;
    /// Success (0) with token i in out; the failure result 0x1000001, out untouched, when i
    /// is outside 0 .. GetTokenCount() - 1.
    KORIResult GetToken(int i, KORXString& out) const;

private:
    KORXDynamicArray<KORXString> m_tokens;
};

#endif
