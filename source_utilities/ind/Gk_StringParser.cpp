#include <korx/Gk_Exception.h>
#include <korx/Gk_StringParser.h>
#include <korx/KORXFloatUtil.h>

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>

#include "internal/ByteText.h"

namespace {

constexpr const char* kSource = "source_utilities/ind/KORXStringParser";
constexpr int kOutOfRangeLine = 69;
constexpr int kTextLeftLine = 73;

int isDecimal(int c) { return std::isdigit(c); }
int isHexadecimal(int c) { return std::isxdigit(c); }

bool isSign(char c) { return c == '+' || c == '-'; }
bool isExponentMark(char c) { return c == 'E' || c == 'e'; }

// The text as far as a C string reader sees it, never past the count.
std::string_view textOf(const Gk_String& s) {
    return korx::detail::TextUpToZero(static_cast<const char*>(s), static_cast<size_t>(s.len()));
}

// convert(text, &end) applied to the bytes from index from; end is left on the byte where the
// conversion stopped, or null when it used every byte of an unterminated buffer.
template <class Convert>
auto convertFrom(Gk_String& s, int from, Convert convert, char*& end) {
    char* bytes = s;
    const std::string_view text = textOf(s).substr(static_cast<size_t>(from));
    if (from + static_cast<long>(text.size()) < s.len())
        return convert(bytes + from, &end);
    // A terminated copy stands in for a buffer without terminator.
    const std::string copy(text);
    char* stop = nullptr;
    const auto value = convert(copy.c_str(), &stop);
    const auto used = static_cast<size_t>(stop - copy.c_str());
    end = used < text.size() ? bytes + from + used : nullptr;
    return value;
}

void assertAt(int line) {
    Gk_ErrMgr::checkAbort();
    Gk_ErrMgr::doAssert(kSource, line);
}

}  // namespace

Gk_StringParser::Gk_StringParser(const Gk_String& text)
    : Gk_String(text), m_end(nullptr), m_clean(false) {}

char Gk_StringParser::byteAt(int i) const { return i >= 0 && i < len() ? (*this)[i] : '\0'; }

int Gk_StringParser::countRun(int start, int (*accepts)(int)) {
    if (start < 0 || start >= len())
        return 0;
    int i = start;
    while (i < len() && accepts(static_cast<unsigned char>((*this)[i])) != 0)
        ++i;
    if (i < len())
        m_end = &(*this)[i];
    return i - start;
}

int Gk_StringParser::countDigits(int start) { return countRun(start, isDecimal); }

int Gk_StringParser::countHexDigits(int start) { return countRun(start, isHexadecimal); }

// Only the digits' reaching the end is tested, so an empty text, a lone sign and a bare "0x"
// pass: callers rely on that leniency.
bool Gk_StringParser::digitsReachEnd(int start, bool takeSign) {
    int p = start;
    if (takeSign && isSign(byteAt(p)))
        ++p;
    if (byteAt(p) == '0' && byteAt(p + 1) == 'x') {
        p += 2;
        return p + countHexDigits(p) == dataLen();
    }
    return p + countDigits(p) == dataLen();
}

bool Gk_StringParser::isInteger(int start) { return digitsReachEnd(start, true); }

bool Gk_StringParser::isUnsignedInteger(int start) { return digitsReachEnd(start, false); }

// Text after the digits is not examined (callers rely on "1.5x" being a real); only the
// exponent, when there is one, must be an integer.
bool Gk_StringParser::isReal(int start) {
    int p = start;
    if (isSign(byteAt(p)))
        ++p;
    const int whole = countDigits(p);
    p += whole;
    if (byteAt(p) == '.') {
        ++p;
        const int fraction = countDigits(p);
        p += fraction;
        if (fraction > 0)
            return isExponentMark(byteAt(p)) ? isInteger(p + 1) : true;
    }
    if (whole == 0)
        return false;
    return isExponentMark(byteAt(p)) ? isInteger(p + 1) : true;
}

bool Gk_StringParser::isString(const char* s) const {
    return s != nullptr && textOf(*this) == s;
}

long Gk_StringParser::intValue() {
    const auto toLong = [](const char* s, char** end) { return std::strtol(s, end, 0); };
    const long value = convertFrom(*this, 0, toLong, m_end);
    testSpill();
    return value;
}

unsigned long Gk_StringParser::uIntValue() {
    const auto toUnsigned = [](const char* s, char** end) { return std::strtoul(s, end, 0); };
    const unsigned long value = convertFrom(*this, 0, toUnsigned, m_end);
    testSpill();
    return value;
}

double Gk_StringParser::realValue() {
    const auto toDouble = [](const char* s, char** end) {
        return KORXFloatUtil::korxstrtod(s, end);
    };
    double value = convertFrom(*this, 0, toDouble, m_end);
    // A fraction the conversion left behind is counted still.
    if (m_end != nullptr && *m_end == '.') {
        const int from = static_cast<int>(m_end - static_cast<char*>(*this));
        value += convertFrom(*this, from, toDouble, m_end);
    }
    testSpill();
    return value;
}

void Gk_StringParser::testSpill() {
    m_clean = false;
    if (errno == ERANGE)
        assertAt(kOutOfRangeLine);
    if (m_end != nullptr && *m_end != '\0')
        assertAt(kTextLeftLine);
    m_clean = true;
}

char Gk_StringParser::firstChar() const { return byteAt(0); }
