#include <korx/KORXStream.h>
#include <korx/KORXStreamFormatter.h>
#include <korx/KORXString.h>

#include <cstdarg>
#include <cstring>
#include <memory>
#include <type_traits>

#include "internal/Platform.h"
#include "internal/ValueText.h"

namespace {

constexpr const char* kDoubleFormat = "%lf";
constexpr const char* kIntFormat = "%d";
constexpr const char* kUIntFormat = "%u";
// An unsigned decimal followed by the letter l: callers rely on this default as it stands.
constexpr const char* kULongFormat = "%ul";
constexpr const char* kLongFormat = "%ld";
constexpr int kDefaultPrecision = 10;

// The one buffer behind every format() object of the process.
char g_formatBuffer[4096];

enum class ArgumentWidth { Int, Long, LongLong };

// What the first conversion of format reads, so a value is passed with that type: the default
// "%ul" reads an unsigned int, "%lu" an unsigned long.
ArgumentWidth argumentWidth(const char* format) {
    const char* p = std::strchr(format, '%');
    while (p != nullptr && p[1] == '%')
        p = std::strchr(p + 2, '%');
    if (p == nullptr)
        return ArgumentWidth::Int;
    p += 1 + std::strspn(p + 1, "-+ #'0123456789.*");
    if (p[0] == 'l' && p[1] == 'l')
        return ArgumentWidth::LongLong;
    if (p[0] == 'q' || p[0] == 'L' || std::strncmp(p, "I64", 3) == 0)
        return ArgumentWidth::LongLong;
    if (p[0] == 'l' || p[0] == 'z' || p[0] == 'j' || p[0] == 't')
        return ArgumentWidth::Long;
    return ArgumentWidth::Int;
}

}  // namespace

// ---- Objects ----------------------------------------------------------------------------------

KORXStreamFormatter::KORXStreamFormatterObject::KORXStreamFormatterObject(const char* text)
    : m_text(text) {}

KORXStreamFormatter::KORXStreamFormatterObject::~KORXStreamFormatterObject() = default;

void KORXStreamFormatter::KORXStreamFormatterObject::dump(KORXStreamFormatter& formatter) const {
    formatter << m_text;
}

KORXStreamFormatter::KORXStreamFormatterMargin::KORXStreamFormatterMargin(
    KORXStreamFormatter* formatter)
    : m_level(0), m_formatter(formatter) {}

void KORXStreamFormatter::KORXStreamFormatterMargin::dump(KORXStreamFormatter& formatter) const {
    for (int i = 0; i < m_level; ++i)
        formatter << "    ";
}

void KORXStreamFormatter::KORXStreamFormatterMargin::incr() { ++m_level; }

void KORXStreamFormatter::KORXStreamFormatterMargin::decr() { --m_level; }

void KORXStreamFormatterSpace::dump(KORXStreamFormatter& formatter) const { formatter << " "; }

void KORXStreamFormatterEndline::dump(KORXStreamFormatter& formatter) const { formatter << "\n"; }

void KORXStreamFormatterLong::dump(KORXStreamFormatter& formatter) const { formatter << m_value; }

void KORXStreamFormatterPtr::dump(KORXStreamFormatter& formatter) const {
    formatter << static_cast<long long>(reinterpret_cast<intptr_t>(m_pointer));
}

// ---- Formatter --------------------------------------------------------------------------------

KORXStreamFormatter::KORXStreamFormatter(KORXOutputStream* out)
    : m_out(out), m_doubleFormat(kDoubleFormat), m_intFormat(kIntFormat), m_uintFormat(kUIntFormat),
      m_ulongFormat(kULongFormat), m_longFormat(kLongFormat), m_withPrecision(false),
      m_precision(kDefaultPrecision), m_buffer(), m_margin(new KORXStreamFormatterMargin(this)),
      m_space(new KORXStreamFormatterSpace()), m_endline(new KORXStreamFormatterEndline()),
      m_empty(new KORXStreamFormatterObject("")) {}

KORXStreamFormatter::KORXStreamFormatter(const KORXStreamFormatter& other) = default;

KORXStreamFormatter& KORXStreamFormatter::operator=(const KORXStreamFormatter& other) = default;

KORXStreamFormatter::~KORXStreamFormatter() = default;

KORXOutputStream* KORXStreamFormatter::installOutputStream(KORXOutputStream* out) {
    KORXOutputStream* previous = m_out;
    m_out = out;
    return previous;
}

const char* KORXStreamFormatter::setDoubleFormat(const char* format, bool withPrecision,
                                                 int precision) {
    const char* previous = m_doubleFormat;
    m_doubleFormat = format;
    m_withPrecision = withPrecision;
    m_precision = precision;
    return previous;
}

namespace {
const char* exchange(const char*& slot, const char* format) {
    const char* previous = slot;
    slot = format;
    return previous;
}
}  // namespace

const char* KORXStreamFormatter::setIntFormat(const char* f) { return exchange(m_intFormat, f); }
const char* KORXStreamFormatter::setUIntFormat(const char* f) { return exchange(m_uintFormat, f); }
const char* KORXStreamFormatter::setLongFormat(const char* f) { return exchange(m_longFormat, f); }
const char* KORXStreamFormatter::setULongFormat(const char* f) {
    return exchange(m_ulongFormat, f);
}

// The precision flag and value stay as they are; callers rely on that.
void KORXStreamFormatter::resetFormat() {
    m_doubleFormat = kDoubleFormat;
    m_intFormat = kIntFormat;
    m_uintFormat = kUIntFormat;
    m_ulongFormat = kULongFormat;
    m_longFormat = kLongFormat;
}

// The plain formatter names a number or a pointer by writing it; define and refer are alike.
KORXStreamFormatter::ObjectHandle KORXStreamFormatter::define(long value) {
    return ObjectHandle(new KORXStreamFormatterLong(value));
}

KORXStreamFormatter::ObjectHandle KORXStreamFormatter::define(const void* pointer) {
    return ObjectHandle(new KORXStreamFormatterPtr(pointer));
}

KORXStreamFormatter::ObjectHandle KORXStreamFormatter::refer(long value) {
    return ObjectHandle(new KORXStreamFormatterLong(value));
}

KORXStreamFormatter::ObjectHandle KORXStreamFormatter::refer(const void* pointer) {
    return ObjectHandle(new KORXStreamFormatterPtr(pointer));
}

KORXStreamFormatter::ObjectHandle KORXStreamFormatter::format(const char* format, ...) {
    va_list args;
    va_start(args, format);
    korx::detail::FormatV(g_formatBuffer, sizeof g_formatBuffer, format, args);
    va_end(args);
    return ObjectHandle(new KORXStreamFormatterObject(g_formatBuffer));
}

void KORXStreamFormatter::replaceObjects(const ObjectHandle& space, const ObjectHandle& endline,
                                         const MarginHandle& margin) {
    m_space = space;
    m_endline = endline;
    m_margin = margin;
}

void KORXStreamFormatter::writeBytes(const char* bytes, int n) {
    if (m_out != nullptr && n > 0)
        m_out->write(const_cast<char*>(bytes), n);
}

// Formats into the scratch buffer (cut at its size) and writes what it holds. The value is
// passed with the width the format's conversion reads, so a format never reads an argument of
// another size.
template <class Value> void KORXStreamFormatter::dumpNumber(const char* format, Value value) {
    if (m_out == nullptr || format == nullptr)
        return;
    constexpr bool kSigned = std::is_signed_v<Value>;
    using Int = std::conditional_t<kSigned, int, unsigned int>;
    using Long = std::conditional_t<kSigned, long, unsigned long>;
    using LongLong = std::conditional_t<kSigned, long long, unsigned long long>;
    switch (argumentWidth(format)) {
    case ArgumentWidth::Int:
        korx::detail::Format(m_buffer, sizeof m_buffer, format, static_cast<Int>(value));
        break;
    case ArgumentWidth::Long:
        korx::detail::Format(m_buffer, sizeof m_buffer, format, static_cast<Long>(value));
        break;
    case ArgumentWidth::LongLong:
        korx::detail::Format(m_buffer, sizeof m_buffer, format, static_cast<LongLong>(value));
        break;
    }
    writeBytes(m_buffer, static_cast<int>(std::strlen(m_buffer)));
}

void KORXStreamFormatter::dump(unsigned long long value) { dumpNumber("%llu", value); }

void KORXStreamFormatter::dump(long long value) { dumpNumber("%lld", value); }

void KORXStreamFormatter::dump(const KORXValue& value) {
    if (m_out != nullptr)
        korx::detail::WriteValueText(*this, value);
}

void KORXStreamFormatter::dump(const KORXString& text) {
    const int n = text.length();
    if (m_out == nullptr || n == 0)
        return;
    const size_t size = 4 * static_cast<size_t>(n) + 4;
    std::unique_ptr<char[]> bytes(new char[size]);
    const long written = korx::detail::ToLocaleMultibyte(text, n, bytes.get(), size);
    if (written > 0)
        writeBytes(bytes.get(), static_cast<int>(written));
}

void KORXStreamFormatter::dump(const KORXStreamFormatterObject* object) {
    if (object != nullptr)
        object->dump(*this);
}

void KORXStreamFormatter::dump(const void* pointer) {
    dump(static_cast<long long>(reinterpret_cast<intptr_t>(pointer)));
}

void KORXStreamFormatter::dump(const char* text) {
    if (text != nullptr)
        writeBytes(text, static_cast<int>(std::strlen(text)));
}

void KORXStreamFormatter::dump(double value) {
    if (m_out == nullptr || m_doubleFormat == nullptr)
        return;
    // A precision-taking format gets the precision as an extra argument before the value.
    if (m_withPrecision)
        korx::detail::FormatPrecisionAndDouble(m_buffer, sizeof m_buffer, m_doubleFormat,
                                               m_precision, value);
    else
        korx::detail::Format(m_buffer, sizeof m_buffer, m_doubleFormat, value);
    writeBytes(m_buffer, static_cast<int>(std::strlen(m_buffer)));
}

void KORXStreamFormatter::dump(unsigned long value) { dumpNumber(m_ulongFormat, value); }

void KORXStreamFormatter::dump(long value) { dumpNumber(m_longFormat, value); }

void KORXStreamFormatter::dump(unsigned int value) { dumpNumber(m_uintFormat, value); }

void KORXStreamFormatter::dump(int value) { dumpNumber(m_intFormat, value); }

void KORXStreamFormatter::dump(char c) { writeBytes(&c, 1); }

// ---- Output operators -------------------------------------------------------------------------

KORXStreamFormatter& operator<<(KORXStreamFormatter& f, const char* text) { return f.put(text); }
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, char c) { return f.put(c); }
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, int value) { return f.put(value); }
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, unsigned int value) { return f.put(value); }
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, long value) { return f.put(value); }
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, unsigned long value) {
    return f.put(value);
}
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, long long value) { return f.put(value); }
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, unsigned long long value) {
    return f.put(value);
}
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, double value) { return f.put(value); }
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, const KORXString& text) {
    return f.put<const KORXString&>(text);
}
KORXStreamFormatter& operator<<(KORXStreamFormatter& f, const KORXValue& value) {
    return f.put<const KORXValue&>(value);
}
KORXStreamFormatter& operator<<(KORXStreamFormatter& f,
                                const KORXStreamFormatter::KORXStreamFormatterObject* object) {
    return f.put(object);
}
