// KORXStreamFormatter.h
//
// Every textual dump of the library goes through a KORXStreamFormatter: it wraps an output
// stream (which may be null: then nothing is written), turns numbers, byte texts and wide
// strings into bytes with configurable printf formats, and writes small shared formatter
// objects (margin, space, end of line, numbers and pointers) whose text depends on the kind
// of formatter. Write with the free operator<<, which chains:
//
//     KORXStreamFormatter f(&out);
//     f << "Error " << 42L << f.getEndline();
//
// The formats are not copied: whoever sets one keeps its text alive. The default unsigned long
// format is "%ul" (an unsigned decimal followed by the letter l), kept as it stands.
//
// KORXHTMLStreamFormatter writes the same content as an HTML page: its space, end of line and
// margin objects are HTML ones, and define/refer give anchors and links.
#ifndef KORX_KORXSTREAMFORMATTER_H
#define KORX_KORXSTREAMFORMATTER_H

#include <korx/KORXExport.h>
#include <korx/KORXReferenceCount.h>

#include <cstdint>

class KORXOutputStream;
class KORXString;
class KORXValue;

class KORX_API KORXStreamFormatter {
public:
    /// A formatter object: written by its own dump, freed when the last handle lets go.
    class KORX_API KORXStreamFormatterObject : public KORXReferenceCount {
    public:
        /// Keeps the pointer, not a copy: the text must outlive the object.
        explicit KORXStreamFormatterObject(const char* text = "");
        virtual void dump(KORXStreamFormatter& formatter) const;

    protected:
        ~KORXStreamFormatterObject() override;

    private:
        const char* m_text;
    };

    /// Four blanks per level; nothing at level 0 or below.
    class KORX_API KORXStreamFormatterMargin : public KORXStreamFormatterObject {
    public:
        explicit KORXStreamFormatterMargin(KORXStreamFormatter* formatter);
        void dump(KORXStreamFormatter& formatter) const override;
        virtual void incr();
        /// No lower bound.
        virtual void decr();
        int level() const { return m_level; }

    protected:
        int32_t m_level;
        KORXStreamFormatter* m_formatter;
    };

    using ObjectHandle = KORXReferenceHandle<KORXStreamFormatterObject>;
    using MarginHandle = KORXReferenceHandle<KORXStreamFormatterMargin>;

    explicit KORXStreamFormatter(KORXOutputStream* out);
    /// Copies share the stream and the shared objects.
    KORXStreamFormatter(const KORXStreamFormatter& other);
    KORXStreamFormatter& operator=(const KORXStreamFormatter& other);

    /// Returns the stream installed before.
    KORXOutputStream* installOutputStream(KORXOutputStream* out);

    /// Each returns the format installed before. A double format with a precision takes it as
    /// a '*' argument before the value.
    const char* setDoubleFormat(const char* format, bool withPrecision, int precision);
    const char* setIntFormat(const char* format);
    const char* setUIntFormat(const char* format);
    const char* setLongFormat(const char* format);
    const char* setULongFormat(const char* format);
    /// Restores the five default formats; the precision flag and value stay as they are.
    void resetFormat();

    MarginHandle getMargin() const { return m_margin; }
    ObjectHandle getSpace() const { return m_space; }
    ObjectHandle getEndline() const { return m_endline; }
    ObjectHandle getEmpty() const { return m_empty; }

    virtual ~KORXStreamFormatter();
    /// An object naming a number or a pointer; the plain formatter writes the value.
    virtual ObjectHandle define(long value);
    virtual ObjectHandle define(const void* pointer);
    virtual ObjectHandle refer(long value);
    virtual ObjectHandle refer(const void* pointer);
    /// A text object over one buffer shared by every formatter of the process: a later
    /// format() changes what earlier objects print. Callers rely on that.
    virtual ObjectHandle format(const char* format, ...) KORX_PRINTF_FORMAT(2, 3);

protected:
    virtual void dump(unsigned long long value);
    virtual void dump(long long value);
    virtual void dump(const KORXValue& value);
    /// The locale's multibyte form; nothing when it cannot be converted.
    virtual void dump(const KORXString& text);
    virtual void dump(const KORXStreamFormatterObject* object);
    virtual void dump(const void* pointer);
    virtual void dump(const char* text);
    virtual void dump(double value);
    virtual void dump(unsigned long value);
    virtual void dump(long value);
    virtual void dump(unsigned int value);
    virtual void dump(int value);
    virtual void dump(char c);

    void replaceObjects(const ObjectHandle& space, const ObjectHandle& endline,
                        const MarginHandle& margin);
    void writeBytes(const char* bytes, int n);

private:
    template <class Value> void dumpNumber(const char* format, Value value);

    template <class Value> KORXStreamFormatter& put(Value value) {
        dump(value);
        return *this;
    }

    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, const char*);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, char);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, int);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, unsigned int);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, long);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, unsigned long);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, long long);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, unsigned long long);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, double);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, const KORXString&);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&, const KORXValue&);
    friend KORXStreamFormatter& operator<<(KORXStreamFormatter&,
                                           const KORXStreamFormatterObject*);

    KORXOutputStream* m_out;
    const char* m_doubleFormat;
    const char* m_intFormat;
    const char* m_uintFormat;
    const char* m_ulongFormat;
    const char* m_longFormat;
    bool m_withPrecision;
    int32_t m_precision;
    char m_buffer[128];
    MarginHandle m_margin;
    ObjectHandle m_space;
    ObjectHandle m_endline;
    ObjectHandle m_empty;
};

using KORXStreamFormatterObjectHandle = KORXStreamFormatter::ObjectHandle;
using KORXStreamFormatterMarginHandle = KORXStreamFormatter::MarginHandle;

/// " ".
class KORX_API KORXStreamFormatterSpace : public KORXStreamFormatter::KORXStreamFormatterObject {
public:
    void dump(KORXStreamFormatter& formatter) const override;
};

/// A line feed.
class KORX_API KORXStreamFormatterEndline
    : public KORXStreamFormatter::KORXStreamFormatterObject {
public:
    void dump(KORXStreamFormatter& formatter) const override;
};

/// The number, in the formatter's long format.
class KORX_API KORXStreamFormatterLong : public KORXStreamFormatter::KORXStreamFormatterObject {
public:
    explicit KORXStreamFormatterLong(long value) : m_value(value) {}
    void dump(KORXStreamFormatter& formatter) const override;

private:
    long m_value;
};

/// The pointer's value as a 64-bit integer.
class KORX_API KORXStreamFormatterPtr : public KORXStreamFormatter::KORXStreamFormatterObject {
public:
    explicit KORXStreamFormatterPtr(const void* pointer) : m_pointer(pointer) {}
    void dump(KORXStreamFormatter& formatter) const override;

private:
    const void* m_pointer;
};

KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, const char* text);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, char c);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, int value);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, unsigned int value);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, long value);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, unsigned long value);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, long long value);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, unsigned long long value);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, double value);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, const KORXString& text);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f, const KORXValue& value);
KORX_API KORXStreamFormatter& operator<<(KORXStreamFormatter& f,
                                         const KORXStreamFormatter::KORXStreamFormatterObject* o);

// ---- HTML -------------------------------------------------------------------------------------

/// "<br>" with a carriage return and a line feed.
class KORX_API Gk_HTMLEndline : public KORXStreamFormatter::KORXStreamFormatterObject {
public:
    void dump(KORXStreamFormatter& formatter) const override;
};

/// "&nbsp;".
class KORX_API Gk_HTMLSpace : public KORXStreamFormatter::KORXStreamFormatterObject {
public:
    void dump(KORXStreamFormatter& formatter) const override;
};

/// Four non-breaking spaces per level.
class KORX_API Gk_HTMLMargin : public KORXStreamFormatter::KORXStreamFormatterMargin {
public:
    explicit Gk_HTMLMargin(KORXStreamFormatter* formatter);
    void dump(KORXStreamFormatter& formatter) const override;
};

/// <a name= "NAME">NAME</a>, NAME being what the plain object writes.
class KORX_API Gk_HTMLAnchor : public KORXStreamFormatter::KORXStreamFormatterObject {
public:
    explicit Gk_HTMLAnchor(const KORXStreamFormatterObjectHandle& name);
    void dump(KORXStreamFormatter& formatter) const override;

private:
    KORXStreamFormatterObjectHandle m_name;
};

/// <a href="#NAME">NAME</a>.
class KORX_API Gk_HTMLTag : public KORXStreamFormatter::KORXStreamFormatterObject {
public:
    explicit Gk_HTMLTag(const KORXStreamFormatterObjectHandle& name);
    void dump(KORXStreamFormatter& formatter) const override;

private:
    KORXStreamFormatterObjectHandle m_name;
};

class KORX_API KORXHTMLStreamFormatter : public KORXStreamFormatter {
public:
    /// Writes the page's head and the opening of its body.
    KORXHTMLStreamFormatter(KORXOutputStream* out, const char* title, const char* background);
    /// Writes the end of the page.
    ~KORXHTMLStreamFormatter() override;

    ObjectHandle define(long value) override;
    ObjectHandle define(const void* pointer) override;
    ObjectHandle refer(long value) override;
    ObjectHandle refer(const void* pointer) override;
};

#endif
