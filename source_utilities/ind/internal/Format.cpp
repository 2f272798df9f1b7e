#include "internal/Platform.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <string>
#include <string_view>

namespace korx::detail {

namespace {

// Output into a caller's fixed buffer that remembers whether anything was cut.
class BoundedText {
public:
    BoundedText(char* buffer, size_t size) : m_buffer(buffer), m_size(size) {
        if (m_size > 0)
            m_buffer[0] = '\0';
    }

    void append(std::string_view text) {
        const size_t room = m_size > m_length ? m_size - m_length - 1 : 0;
        const size_t n = text.size() < room ? text.size() : room;
        if (n < text.size())
            m_cut = true;
        if (m_size == 0)
            return;
        std::memcpy(m_buffer + m_length, text.data(), n);
        m_length += n;
        m_buffer[m_length] = '\0';
    }

    template <class Value> void appendFormatted(const std::string& spec, Value value) {
        if (m_size == 0) {
            m_cut = true;
            return;
        }
        const size_t room = m_size - m_length;
        const int n = std::snprintf(m_buffer + m_length, room, spec.c_str(), value);
        if (n < 0) {
            m_buffer[m_length] = '\0';
        } else if (static_cast<size_t>(n) >= room) {
            m_length = m_size - 1;
            m_cut = true;
        } else {
            m_length += static_cast<size_t>(n);
        }
    }

    int result() const { return m_cut ? -1 : static_cast<int>(m_length); }

private:
    char* m_buffer;
    size_t m_size;
    size_t m_length = 0;
    bool m_cut = false;
};

// ---- Conversion specifications ------------------------------------------------------------

enum class Length { None, Char, Short, Long, LongLong, IntMax, Size, PtrDiff, LongDouble };

struct Conversion {
    std::string_view written;  // the specification as it stands in the format
    std::string_view flags;
    bool starWidth = false;
    bool starPrecision = false;
    bool hasWidth = false;
    bool hasPrecision = false;
    int width = 0;
    int precision = 0;
    Length length = Length::None;
    char type = '\0';  // '\0' when the specification is cut short or unknown
};

int readNumber(std::string_view text, size_t& pos) {
    long long value = 0;
    while (pos < text.size() && text[pos] >= '0' && text[pos] <= '9') {
        if (value < 100000000)
            value = value * 10 + (text[pos] - '0');
        ++pos;
    }
    return static_cast<int>(value);
}

bool startsAt(std::string_view text, size_t pos, std::string_view word) {
    return text.substr(pos, word.size()) == word;
}

Length readLength(std::string_view text, size_t& pos) {
    struct Token {
        std::string_view word;
        Length length;
    };
    static const Token tokens[] = {
        {"hh", Length::Char},      {"h", Length::Short},    {"ll", Length::LongLong},
        {"l", Length::Long},       {"q", Length::LongLong}, {"L", Length::LongDouble},
        {"j", Length::IntMax},     {"z", Length::Size},     {"t", Length::PtrDiff},
        {"I64", Length::LongLong}, {"I32", Length::None},   {"I", Length::Size},
    };
    for (const Token& token : tokens) {
        if (startsAt(text, pos, token.word)) {
            pos += token.word.size();
            return token.length;
        }
    }
    return Length::None;
}

// Parses the specification that starts with the '%' at text[start].
Conversion parseConversion(std::string_view text, size_t start) {
    Conversion c;
    size_t pos = start + 1;
    const size_t flagsStart = pos;
    while (pos < text.size() && std::strchr("-+ #0'", text[pos]) != nullptr && text[pos] != '\0')
        ++pos;
    c.flags = text.substr(flagsStart, pos - flagsStart);
    if (pos < text.size() && text[pos] == '*') {
        c.starWidth = c.hasWidth = true;
        ++pos;
    } else if (pos < text.size() && text[pos] >= '0' && text[pos] <= '9') {
        c.hasWidth = true;
        c.width = readNumber(text, pos);
    }
    if (pos < text.size() && text[pos] == '.') {
        ++pos;
        c.hasPrecision = true;
        if (pos < text.size() && text[pos] == '*') {
            c.starPrecision = true;
            ++pos;
        } else {
            c.precision = readNumber(text, pos);
        }
    }
    c.length = readLength(text, pos);
    if (pos < text.size() && std::strchr("diouxXcsSCpnfFeEgGaA", text[pos]) != nullptr) {
        c.type = text[pos];
        ++pos;
    }
    c.written = text.substr(start, pos - start);
    return c;
}

bool isSignedInteger(char type) { return type == 'd' || type == 'i'; }
bool isUnsignedInteger(char type) { return std::strchr("ouxX", type) != nullptr; }
bool isFloating(char type) { return std::strchr("fFeEgGaA", type) != nullptr; }
bool isWideText(const Conversion& c) {
    return c.type == 'S' || (c.type == 's' && c.length == Length::Long);
}
bool isWideChar(const Conversion& c) {
    return c.type == 'C' || (c.type == 'c' && c.length == Length::Long);
}

// ---- Argument values ------------------------------------------------------------------------

// One argument as it was passed, kept as raw bits so any conversion can render it.
struct Value {
    enum Kind { Integer, Floating, LongFloating, Address, Text, WideText } kind = Integer;
    unsigned long long bits = 0;
    long double extended = 0;
};

unsigned long long doubleBits(double d) {
    unsigned long long bits = 0;
    std::memcpy(&bits, &d, sizeof d);
    return bits;
}

double bitsAsDouble(unsigned long long bits) {
    double d = 0;
    std::memcpy(&d, &bits, sizeof d);
    return d;
}

Value pointerValue(Value::Kind kind, const void* p) {
    Value v;
    v.kind = kind;
    v.bits = static_cast<unsigned long long>(reinterpret_cast<uintptr_t>(p));
    return v;
}

Value integerValue(unsigned long long bits) {
    Value v;
    v.bits = bits;
    return v;
}

// Reads the argument a conversion of this shape was given, with exactly the type it was given.
Value readSigned(va_list& args, Length length) {
    switch (length) {
    case Length::Long:
        return integerValue(static_cast<unsigned long long>(va_arg(args, long)));
    case Length::LongLong:
    case Length::LongDouble:
        return integerValue(static_cast<unsigned long long>(va_arg(args, long long)));
    case Length::IntMax:
        return integerValue(static_cast<unsigned long long>(va_arg(args, intmax_t)));
    case Length::Size:
    case Length::PtrDiff:
        return integerValue(static_cast<unsigned long long>(va_arg(args, ptrdiff_t)));
    default:
        return integerValue(static_cast<unsigned long long>(va_arg(args, int)));
    }
}

Value readUnsigned(va_list& args, Length length) {
    switch (length) {
    case Length::Long:
        return integerValue(va_arg(args, unsigned long));
    case Length::LongLong:
    case Length::LongDouble:
        return integerValue(va_arg(args, unsigned long long));
    case Length::IntMax:
        return integerValue(va_arg(args, uintmax_t));
    case Length::Size:
    case Length::PtrDiff:
        return integerValue(va_arg(args, size_t));
    default:
        return integerValue(va_arg(args, unsigned int));
    }
}

Value readValue(va_list& args, const Conversion& c) {
    if (isWideText(c))
        return pointerValue(Value::WideText, va_arg(args, const wchar_t*));
    if (c.type == 's')
        return pointerValue(Value::Text, va_arg(args, const char*));
    if (c.type == 'p' || c.type == 'n')
        return pointerValue(Value::Address, va_arg(args, void*));
    if (isWideChar(c))
        return integerValue(va_arg(args, wint_t));
    if (isFloating(c.type)) {
        Value v;
        if (c.length == Length::LongDouble) {
            v.kind = Value::LongFloating;
            v.extended = va_arg(args, long double);
            v.bits = doubleBits(static_cast<double>(v.extended));
        } else {
            v.kind = Value::Floating;
            v.bits = doubleBits(va_arg(args, double));
        }
        return v;
    }
    if (isUnsignedInteger(c.type))
        return readUnsigned(args, c.length);
    return readSigned(args, c.length);
}

// What a conversion consumes, in order: a '*' width, a '*' precision, then its value.
enum class Need { Width, Precision, Value };

// Hands each consumption the argument meant for the consumption before it; the first one
// receives the format itself. An argument is read only when the next consumption comes, so the
// last one is never read.
class ShiftedArguments {
public:
    ShiftedArguments(const char* format, va_list& args)
        : m_args(args), m_format(pointerValue(Value::Text, format)) {}

    Value take(Need need, const Conversion& c) {
        const Value given = m_first ? m_format : readPrevious();
        m_first = false;
        m_previousNeed = need;
        m_previous = c;
        return given;
    }

private:
    Value readPrevious() {
        if (m_previousNeed == Need::Value)
            return readValue(m_args, m_previous);
        return integerValue(static_cast<unsigned long long>(va_arg(m_args, int)));
    }

    va_list& m_args;
    Value m_format;
    bool m_first = true;
    Need m_previousNeed = Need::Value;
    Conversion m_previous;
};

// ---- Rendering --------------------------------------------------------------------------------

std::string_view lengthWord(char type) {
    return isSignedInteger(type) || isUnsignedInteger(type) ? "ll" : "";
}

// The specification rebuilt with explicit numbers in place of '*' and a uniform length.
std::string rebuild(const Conversion& c, int width, bool hasPrecision, int precision,
                    std::string_view length, char type) {
    std::string spec = "%";
    spec.append(c.flags);
    if (c.hasWidth)
        spec += std::to_string(width);
    if (hasPrecision)
        spec += "." + std::to_string(precision);
    spec.append(length);
    spec += type;
    return spec;
}

long long signedAs(Length length, unsigned long long bits) {
    switch (length) {
    case Length::Char:
        return static_cast<signed char>(bits);
    case Length::Short:
        return static_cast<short>(bits);
    case Length::Long:
        return static_cast<long>(bits);
    case Length::LongLong:
    case Length::LongDouble:
        return static_cast<long long>(bits);
    case Length::IntMax:
        return static_cast<intmax_t>(bits);
    case Length::Size:
    case Length::PtrDiff:
        return static_cast<ptrdiff_t>(bits);
    default:
        return static_cast<int>(bits);
    }
}

unsigned long long unsignedAs(Length length, unsigned long long bits) {
    switch (length) {
    case Length::Char:
        return static_cast<unsigned char>(bits);
    case Length::Short:
        return static_cast<unsigned short>(bits);
    case Length::Long:
        return static_cast<unsigned long>(bits);
    case Length::LongLong:
    case Length::LongDouble:
        return bits;
    case Length::IntMax:
        return static_cast<uintmax_t>(bits);
    case Length::Size:
    case Length::PtrDiff:
        return static_cast<size_t>(bits);
    default:
        return static_cast<unsigned int>(bits);
    }
}

void render(BoundedText& out, const Conversion& c, const std::string& spec, const Value& v) {
    const auto* pointer = reinterpret_cast<const void*>(static_cast<uintptr_t>(v.bits));
    if (isWideText(c)) {
        // Only a wide text is read as one; anything else would be read through a bad pointer.
        const auto* text =
            v.kind == Value::WideText ? static_cast<const wchar_t*>(pointer) : nullptr;
        out.appendFormatted(spec, text != nullptr ? text : L"(null)");
    } else if (c.type == 's') {
        const auto* text = v.kind == Value::Text ? static_cast<const char*>(pointer) : nullptr;
        out.appendFormatted(spec, text != nullptr ? text : "(null)");
    } else if (c.type == 'p') {
        out.appendFormatted(spec, pointer);
    } else if (isWideChar(c)) {
        out.appendFormatted(spec, static_cast<wint_t>(v.bits));
    } else if (c.type == 'c') {
        out.appendFormatted(spec, static_cast<int>(static_cast<unsigned char>(v.bits)));
    } else if (isFloating(c.type) && c.length == Length::LongDouble) {
        const long double x = v.kind == Value::LongFloating
                                  ? v.extended
                                  : static_cast<long double>(bitsAsDouble(v.bits));
        out.appendFormatted(spec, x);
    } else if (isFloating(c.type)) {
        out.appendFormatted(spec, bitsAsDouble(v.bits));
    } else if (isUnsignedInteger(c.type)) {
        out.appendFormatted(spec, unsignedAs(c.length, v.bits));
    } else {
        out.appendFormatted(spec, signedAs(c.length, v.bits));
    }
}

// A width or precision taken from an argument may be anything: keep it within the buffer so
// a stray value cannot make the formatter pad for gigabytes.
int clampToBuffer(long long value, size_t size) {
    const long long limit = static_cast<long long>(size < 0x7fffffff ? size : 0x7fffffff);
    return static_cast<int>(value < -limit ? -limit : (value > limit ? limit : value));
}

std::string_view lengthFor(const Conversion& c) {
    if (isFloating(c.type) && c.length == Length::LongDouble)
        return "L";
    if (isWideText(c) || isWideChar(c))
        return "l";
    return lengthWord(c.type);
}

char typeFor(const Conversion& c) {
    if (c.type == 'S')
        return 's';
    if (c.type == 'C')
        return 'c';
    return c.type;
}

// Renders one conversion with the values its source hands out for it, in order.
template <class Arguments>
void renderConversion(BoundedText& out, const Conversion& c, Arguments& args, size_t size) {
    auto take = [&](Need need) { return args.take(need, c); };
    int width = c.width;
    int precision = c.precision;
    bool hasPrecision = c.hasPrecision;
    if (c.starWidth)
        width = clampToBuffer(static_cast<int>(take(Need::Width).bits), size);
    if (c.starPrecision) {
        precision = clampToBuffer(static_cast<int>(take(Need::Precision).bits), size);
        hasPrecision = precision >= 0;
    }
    const Value value = take(Need::Value);
    if (c.type == 'n')
        return;  // never writes through an argument
    render(out, c, rebuild(c, width, hasPrecision, precision, lengthFor(c), typeFor(c)), value);
}

// Hands out a fixed list of values in order; a conversion past the end receives zero bits.
class ListedArguments {
public:
    ListedArguments(const Value* values, int count) : m_values(values), m_count(count) {}

    Value take(Need, const Conversion&) { return m_next < m_count ? m_values[m_next++] : Value(); }

private:
    const Value* m_values;
    int m_count;
    int m_next = 0;
};

// Copies format with each conversion rendered from the values args hands out.
template <class Arguments>
int formatWith(char* buffer, size_t size, const char* format, Arguments& args) {
    BoundedText out(buffer, size);
    if (format == nullptr)
        return 0;
    const std::string_view text = format;
    size_t pos = 0;
    while (pos < text.size()) {
        const size_t percent = text.find('%', pos);
        out.append(text.substr(pos, percent == std::string_view::npos ? percent : percent - pos));
        if (percent == std::string_view::npos)
            break;
        if (percent + 1 < text.size() && text[percent + 1] == '%') {
            out.append("%");
            pos = percent + 2;
            continue;
        }
        const Conversion c = parseConversion(text, percent);
        if (c.type == '\0')
            out.append(c.written);  // not a conversion: kept as written, consumes nothing
        else
            renderConversion(out, c, args, size);
        pos = percent + c.written.size();
    }
    return out.result();
}

}  // namespace

int FormatV(char* buffer, size_t size, const char* format, va_list args) {
    if (format == nullptr) {
        if (size > 0)
            buffer[0] = '\0';
        return 0;
    }
    const int n = std::vsnprintf(buffer, size, format, args);
    if (n < 0) {
        if (size > 0)
            buffer[0] = '\0';
        return -1;
    }
    return static_cast<size_t>(n) < size ? n : -1;
}

int Format(char* buffer, size_t size, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int n = FormatV(buffer, size, format, args);
    va_end(args);
    return n;
}

int Reformat(char* buffer, size_t size, const char* text) {
    BoundedText out(buffer, size);
    std::string_view rest = text != nullptr ? text : "";
    for (size_t percent = rest.find('%'); percent != std::string_view::npos;
         percent = rest.find('%')) {
        out.append(rest.substr(0, percent + 1));
        // "%%" gives one '%'; any other specification is copied as it stands.
        const bool doubled = percent + 1 < rest.size() && rest[percent + 1] == '%';
        rest.remove_prefix(percent + (doubled ? 2 : 1));
    }
    out.append(rest);
    return out.result();
}

int FormatShiftedV(char* buffer, size_t size, const char* format, va_list args) {
    va_list own;
    va_copy(own, args);
    ShiftedArguments shifted(format, own);
    const int result = formatWith(buffer, size, format, shifted);
    va_end(own);
    return result;
}

int FormatPrecisionAndDouble(char* buffer, size_t size, const char* format, int precision,
                             double value) {
    Value values[2];
    values[0] = integerValue(static_cast<unsigned long long>(precision));
    values[1].kind = Value::Floating;
    values[1].bits = doubleBits(value);
    ListedArguments listed(values, 2);
    return formatWith(buffer, size, format, listed);
}

}  // namespace korx::detail
