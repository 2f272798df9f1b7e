// Gk_StringParser.h
//
// Classifies and converts the numeric text of a Gk_String it shares. The classifications are
// lenient on purpose (an empty text, a lone sign and a bare "0x" count as integers; a real
// needs digits only before its first unexpected byte); the conversions are the C runtime's,
// and report what they could not use through the library's assertion.
//
// The parser remembers where the last count or conversion stopped (the end pointer) and
// whether the last conversion used the whole text (the clean flag).
#ifndef KORX_GK_STRINGPARSER_H
#define KORX_GK_STRINGPARSER_H

#include <korx/Gk_String.h>
#include <korx/KORXExport.h>

class KORX_API Gk_StringParser : public Gk_String {
public:
    /// Shares text's buffer.
    explicit Gk_StringParser(const Gk_String& text);

    /// Consecutive decimal / hexadecimal digits from start; 0 when start >= len(). A run
    /// that stops inside the buffer leaves the end pointer on the byte that stopped it.
    int countDigits(int start);
    int countHexDigits(int start);

    /// An optional sign, then "0x" and hexadecimal digits or decimal digits, up to the end of
    /// the text.
    bool isInteger(int start = 0);
    /// isInteger without the sign.
    bool isUnsignedInteger(int start = 0);
    /// A sign, digits, a fraction and an exponent, as far as they go; see the source.
    bool isReal(int start = 0);
    /// strcmp equality of the text with s.
    bool isString(const char* s) const;

    /// strtol / strtoul of the text in base 0, then testSpill().
    long intValue();
    unsigned long uIntValue();
    /// The locale-independent conversion (a second '.' starts a fraction that is added),
    /// then testSpill().
    double realValue();

    /// Asserts (source_utilities/ind/KORXStringParser, line 69) when errno is ERANGE and
    /// (line 73) when text is left after the end pointer; the clean flag is set when neither
    /// assertion throws. errno is the caller's: it is not reset before a conversion.
    void testSpill();

    char firstChar() const;

    /// Where the last count or conversion stopped; null before any.
    const char* endPointer() const { return m_end; }
    bool isClean() const { return m_clean; }

private:
    char byteAt(int i) const;
    int countRun(int start, int (*accepts)(int));
    bool digitsReachEnd(int start, bool takeSign);

    char* m_end;
    bool m_clean;
};

#endif
