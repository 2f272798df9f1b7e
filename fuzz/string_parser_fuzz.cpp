// Gk_StringParser over arbitrary bytes: every classification at several starts and every
// conversion, on the text up to the first 0 byte (terminated) and on all the bytes without a
// terminator.
//
// For the terminated text the answers are checked against the C runtime: digit counts and
// where they stop, the integer form (sign, then "0x" and hexadecimal digits or decimal digits,
// to the end), the values and end pointers of strtol / strtoul / korxstrtod, and the
// assertions the conversions publish (line 69 for ERANGE, line 73 for text left over). A few
// relations hold between the classifications whatever their details. The unterminated text
// is only required not to crash or read outside its buffer.
#include <korx/Gk_Exception.h>
#include <korx/Gk_String.h>
#include <korx/Gk_StringParser.h>
#include <korx/KORXEventBus.h>
#include <korx/KORXFloatUtil.h>

#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void check(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "string_parser_fuzz: %s\n", what);
    std::abort();
}

// Records the parser's assertions (the assert events naming its source).
class SpillListener : public KORXEventListener {
public:
    void HandleEvent(KORXEvent& event) override {
        if (!event.IsA("KORXAssertEvent"))
            return;
        const char* message = static_cast<KORXAssertEvent&>(event).GetMessage();
        if (message == nullptr)
            return;
        if (std::strcmp(message, "source_utilities/ind/KORXStringParser [69]") == 0)
            range = true;
        else if (std::strcmp(message, "source_utilities/ind/KORXStringParser [73]") == 0)
            leftOver = true;
    }

    void reset() { range = leftOver = false; }

    bool range = false;
    bool leftOver = false;
};

SpillListener& listener() {
    static SpillListener* const instance = [] {
        auto* l = new SpillListener;
        KORXEventBus::GetEventBus().AddListener(l);
        return l;
    }();
    return *instance;
}

int run(const std::string& text, size_t from, int (*accepts)(int)) {
    size_t i = from;
    while (i < text.size() && accepts(static_cast<unsigned char>(text[i])) != 0)
        ++i;
    return static_cast<int>(i - from);
}

// A sign (when allowed), then "0x" and hexadecimal digits or decimal digits, up to the end.
bool integerForm(const std::string& text, size_t from, bool sign) {
    size_t i = from;
    if (sign && i < text.size() && (text[i] == '+' || text[i] == '-'))
        ++i;
    if (i + 1 < text.size() && text[i] == '0' && text[i + 1] == 'x')
        return i + 2 + static_cast<size_t>(run(text, i + 2, isxdigit)) == text.size();
    return i + static_cast<size_t>(run(text, i, isdigit)) == text.size();
}

bool sameDouble(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::memcmp(&a, &b, sizeof a) == 0;
}

// Runs a conversion, catching whatever the assertion path might throw.
template <class Convert> void converting(Gk_StringParser& parser, Convert convert) {
    errno = 0;
    try {
        convert(parser);
    } catch (const Gk_Exception&) {
    } catch (const KORXAbortException&) {
    } catch (...) {
    }
}

void checkCounts(Gk_StringParser& parser, const std::string& text, int start) {
    const int n = parser.len();
    const int digits = parser.countDigits(start);
    const int hexDigits = parser.countHexDigits(start);
    if (start >= n) {
        check(digits == 0 && hexDigits == 0, "a count from past the end");
        return;
    }
    const auto from = static_cast<size_t>(start);
    check(digits == run(text, from, isdigit), "countDigits");
    check(hexDigits == run(text, from, isxdigit), "countHexDigits");
    check(digits <= hexDigits && hexDigits <= n - start, "count bounds");
    // The hexadecimal run was counted last; it stops on a byte of the buffer (the terminator
    // at the latest), where the end pointer now is.
    check(parser.endPointer() == static_cast<char*>(parser) + start + hexDigits,
          "end pointer after a count");
}

void checkClassifications(Gk_StringParser& parser, const std::string& text, int start) {
    const auto from = static_cast<size_t>(start);
    const bool integer = parser.isInteger(start);
    const bool unsignedInteger = parser.isUnsignedInteger(start);
    const bool real = parser.isReal(start);

    check(integer == integerForm(text, from, true), "isInteger");
    check(unsignedInteger == integerForm(text, from, false), "isUnsignedInteger");
    check(!unsignedInteger || integer, "an unsigned integer is an integer");

    size_t i = from;
    if (i < text.size() && (text[i] == '+' || text[i] == '-'))
        ++i;
    const auto digitAt = [&](size_t k) {
        return k < text.size() && std::isdigit(static_cast<unsigned char>(text[k])) != 0;
    };
    // A real begins with a digit, or with '.' and a digit.
    if (real)
        check(digitAt(i) || (i < text.size() && text[i] == '.' && digitAt(i + 1)),
              "a real without digits");
    // A decimal integer with at least one digit is a real.
    if (integer && digitAt(i) && !(text[i] == '0' && i + 1 < text.size() && text[i + 1] == 'x'))
        check(real, "a decimal integer that is not a real");
}

// intValue or uIntValue against the C library's strtol or strtoul of the same text.
template <class Reference, class Convert>
void checkIntegerValue(Gk_StringParser& parser, const std::string& text, Reference reference,
                       Convert convert) {
    errno = 0;
    char* end = nullptr;
    const auto expected = reference(text.c_str(), &end, 0);
    const bool range = errno == ERANGE;
    const size_t stop = static_cast<size_t>(end - text.c_str());

    decltype(expected + 0) value = 0;
    listener().reset();
    converting(parser, [&](Gk_StringParser& p) { value = convert(p); });
    check(value == expected, "integer value");
    check(parser.endPointer() == static_cast<char*>(parser) + stop, "integer end pointer");
    check(listener().range == range, "integer range assertion");
    check(listener().leftOver == (stop < text.size()), "integer left-over assertion");
}

void checkRealValue(Gk_StringParser& parser, const std::string& text) {
    // A conversion that stops at a '.' goes on from there, and the two values are added.
    errno = 0;
    char* end = nullptr;
    double expected = KORXFloatUtil::korxstrtod(text.c_str(), &end);
    if (*end == '.')
        expected += KORXFloatUtil::korxstrtod(end, &end);
    const bool range = errno == ERANGE;
    const size_t stop = static_cast<size_t>(end - text.c_str());

    double value = 0.0;
    listener().reset();
    converting(parser, [&](Gk_StringParser& p) { value = p.realValue(); });
    check(sameDouble(value, expected), "realValue");
    check(parser.endPointer() == static_cast<char*>(parser) + stop, "realValue end pointer");
    check(listener().range == range, "realValue range assertion");
    check(listener().leftOver == (stop < text.size()), "realValue left-over assertion");
}

void terminatedText(const std::string& text) {
    const Gk_String source(text.c_str());
    Gk_StringParser parser(source);
    const int n = parser.len();
    check(n == static_cast<int>(text.size()) + 1, "len of a terminated text");
    check(parser.endPointer() == nullptr && !parser.isClean(), "a new parser");
    check(parser.firstChar() == text.c_str()[0], "firstChar");
    check(parser.isString(text.c_str()), "isString of the text itself");
    check(!parser.isString((text + "0").c_str()), "isString of a longer text");

    const int starts[] = {0, 1, 2, n / 2, n - 2, n - 1, n, n + 1, n + 100, INT_MAX};
    for (const int start : starts) {
        if (start < 0)
            continue;
        checkCounts(parser, text, start);
        if (start < n)
            checkClassifications(parser, text, start);
    }

    const auto toLong = [](const char* s, char** end, int base) { return std::strtol(s, end, base); };
    const auto toUnsigned = [](const char* s, char** end, int base) {
        return std::strtoul(s, end, base);
    };
    checkIntegerValue(parser, text, toLong, [](Gk_StringParser& p) { return p.intValue(); });
    checkIntegerValue(parser, text, toUnsigned, [](Gk_StringParser& p) { return p.uIntValue(); });
    checkRealValue(parser, text);
}

// All the bytes, 0 bytes included, and no terminator: nothing is checked but that every call
// returns.
void unterminatedText(const uint8_t* data, size_t size) {
    const Gk_String source(reinterpret_cast<const char*>(data), static_cast<int>(size));
    Gk_StringParser parser(source);
    const int n = parser.len();
    const int starts[] = {0, 1, n / 2, n - 1, n, n + 1, INT_MAX};
    int sum = 0;
    for (const int start : starts) {
        if (start < 0)
            continue;
        sum += parser.countDigits(start) + parser.countHexDigits(start);
        if (start < n)
            sum += parser.isInteger(start) + parser.isUnsignedInteger(start) + parser.isReal(start);
    }
    sum += parser.isString("0x1F");
    if (n > 0)
        sum += parser.firstChar();
    converting(parser, [&](Gk_StringParser& p) { sum += static_cast<int>(p.intValue() & 1); });
    converting(parser, [&](Gk_StringParser& p) { sum += static_cast<int>(p.uIntValue() & 1); });
    converting(parser, [&](Gk_StringParser& p) { sum += p.realValue() > 0.0; });
    volatile int sink = sum;
    static_cast<void>(sink);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    listener();
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    terminatedText(std::string(bytes.c_str()));
    unterminatedText(data, size);
    return 0;
}
