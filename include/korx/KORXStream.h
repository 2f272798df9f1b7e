// KORXStream.h
//
// All byte input and output of the library goes through KORXInputStream and
// KORXOutputStream. File streams read and write through a shared KORXFileDescriptor; string
// streams read from a Gk_String or collect output into one; filter streams forward every
// operation to an inner stream (which they do not own) and are the base of the packet and
// indexed streams. No stream buffers data of its own.
//
// A stream that cannot support an operation (the base available, add, getCurrentOffset and
// setOffset) raises Gk_IOException through Gk_ErrMgr::raise. readChar answers -1 at the end or
// on failure. File streams pass on what their descriptor reports; a file that could not be
// opened reads -1 and takes no bytes, it never crashes.
//
// A file input stream follows its descriptor's position until duplicate() is called on it;
// from then on it, and every duplicate, keeps a private position, so duplicates read the same
// file independently. A file stream's descriptor closes when the last stream holding it goes.
#ifndef KORX_KORXSTREAM_H
#define KORX_KORXSTREAM_H

#include <korx/Gk_String.h>
#include <korx/KORXExport.h>
#include <korx/KORXFileDescriptor.h>

#include <cstdint>
#include <cstdio>

class KORXFilePath;

class KORX_API KORXInputStream {
public:
    virtual ~KORXInputStream();

    /// A new stream owned by the caller, or null when the stream cannot be duplicated.
    virtual KORXInputStream* duplicate() = 0;
    /// The next byte (0 .. 255), or -1 at the end or on failure.
    virtual int readChar();
    /// The number of bytes read into buffer (at most n), 0 at the end, -1 on failure.
    virtual int read(char* const buffer, int n) = 0;
    /// Reads and discards up to n bytes; the number skipped.
    virtual long skip(long n);
    virtual int available() const;
    /// Steps back over bytes just read.
    virtual bool add(const Gk_String& bytes);
    virtual long getCurrentOffset() const;
    virtual void setOffset(long offset);

protected:
    KORXInputStream();
    explicit KORXInputStream(KORXInputStream* inner);
    KORXInputStream(const KORXInputStream& other);
    KORXInputStream& operator=(const KORXInputStream& other);

    KORXInputStream* innerStream() const { return m_innerStream; }

private:
    KORXInputStream* m_innerStream;  // not owned
};

class KORX_API KORXOutputStream {
public:
    virtual ~KORXOutputStream();

    virtual void writeChar(char c);
    virtual void write(char* const buffer, int n) = 0;
    virtual void flush() = 0;
    virtual void close() = 0;

    /// For constant bytes: forwards to write(char*, int).
    void write(const char* buffer, int n) { write(const_cast<char*>(buffer), n); }

protected:
    KORXOutputStream();
    explicit KORXOutputStream(KORXOutputStream* inner);
    KORXOutputStream(const KORXOutputStream& other);
    KORXOutputStream& operator=(const KORXOutputStream& other);

    KORXOutputStream* innerStream() const { return m_innerStream; }

private:
    KORXOutputStream* m_innerStream;  // not owned
};

/// Forwards every operation, its arguments and its result to the inner stream. Without an
/// inner stream it answers as the base stream does (read gives -1).
class KORX_API KORXFilterInputStream : public KORXInputStream {
public:
    explicit KORXFilterInputStream(KORXInputStream* inner);
    KORXFilterInputStream(const KORXFilterInputStream& other);

    /// A new filter over the inner stream's duplicate, which that filter owns; null when the
    /// inner stream gives none.
    KORXInputStream* duplicate() override;
    int readChar() override;
    int read(char* const buffer, int n) override;
    long skip(long n) override;
    int available() const override;
    bool add(const Gk_String& bytes) override;
    long getCurrentOffset() const override;
    void setOffset(long offset) override;
};

/// Forwards every operation to the inner stream; without one the bytes are dropped.
class KORX_API KORXFilterOutputStream : public KORXOutputStream {
public:
    explicit KORXFilterOutputStream(KORXOutputStream* inner);
    KORXFilterOutputStream(const KORXFilterOutputStream& other);

    using KORXOutputStream::write;
    void writeChar(char c) override;
    void write(char* const buffer, int n) override;
    void flush() override;
    void close() override;
};

class KORX_API KORXFileInputStream : public KORXInputStream {
public:
    /// Standard input.
    KORXFileInputStream();
    /// The UTF-8 path name, read from its start.
    explicit KORXFileInputStream(const char* name);
    /// The file at path, read from its start.
    explicit KORXFileInputStream(KORXFilePath& path);
    /// The caller's open file, from its position; the file stays open after the stream.
    explicit KORXFileInputStream(FILE* file);
    /// Shares the descriptor and copies the position mode.
    KORXFileInputStream(const KORXFileInputStream& other);
    ~KORXFileInputStream() override;

    /// Makes this stream keep a private position, then a new stream at that position.
    KORXInputStream* duplicate() override;
    int read(char* const buffer, int n) override;
    /// Moves by n; the new position, or -1 on failure.
    long skip(long n) override;
    /// The file size less the current position.
    int available() const override;
    /// Steps back by bytes.len(); true.
    bool add(const Gk_String& bytes) override;
    long getCurrentOffset() const override;
    void setOffset(long offset) override;

private:
    KORXFileInputStream(const KORXFileDescriptorHandle& descriptor, int32_t fileSize,
                        int32_t offset);
    bool keepsPrivateOffset() const { return m_offset >= 0; }
    void movePrivateOffset(long offset);

    int32_t m_fileSize;  // taken once, at construction
    int32_t m_offset;    // private position; -1 follows the descriptor's own
    KORXFileDescriptorHandle m_descriptor;
};

class KORX_API KORXFileOutputStream : public KORXOutputStream {
public:
    /// Standard output.
    KORXFileOutputStream();
    /// Creates or empties the file at the UTF-8 path name.
    explicit KORXFileOutputStream(const char* name);
    /// Creates or empties the file at path.
    explicit KORXFileOutputStream(KORXFilePath& path);
    /// The caller's open file, from its position; the file stays open after the stream.
    explicit KORXFileOutputStream(FILE* file);
    /// Adopts descriptor: the stream's handle holds it from now on.
    explicit KORXFileOutputStream(KORXFileDescriptor* descriptor);
    KORXFileOutputStream(const KORXFileOutputStream& other);
    ~KORXFileOutputStream() override;

    using KORXOutputStream::write;
    /// Straight to the descriptor at its position; failures are the descriptor's.
    void write(char* const buffer, int n) override;
    void flush() override;
    /// Nothing: the descriptor closes with its last handle.
    void close() override;

private:
    KORXFileDescriptorHandle m_descriptor;
};

class KORX_API KORXStringInputStream : public KORXInputStream {
public:
    /// Shares text, which must be non-empty and end with a 0 byte (else an assertion).
    explicit KORXStringInputStream(const Gk_String& text);
    KORXStringInputStream(const KORXStringInputStream& other);
    ~KORXStringInputStream() override;

    /// Not supported: an assertion, and null.
    KORXInputStream* duplicate() override;
    /// The bytes before the terminator, from the position; their count.
    int read(char* const buffer, int n) override;
    /// 1 while bytes remain before the terminator, else 0.
    int available() const override;
    /// Steps back by bytes.len(), never below the start; true.
    bool add(const Gk_String& bytes) override;

    /// A new string of the bytes from the position to the end, terminator included.
    Gk_String contents() const;

private:
    Gk_String m_text;
    int32_t m_position;
};

class KORX_API KORXStringOutputStream : public KORXOutputStream {
public:
    KORXStringOutputStream();
    KORXStringOutputStream(const KORXStringOutputStream& other);
    ~KORXStringOutputStream() override;

    using KORXOutputStream::write;
    /// Appends the bytes; no terminator is added.
    void write(char* const buffer, int n) override;
    void flush() override;
    void close() override;

    /// The first collected byte, null when none. Write a 0 byte first to read a C string.
    char* contents() const;
    int len() const;
    /// Gk_String::chop(n) on the collected bytes.
    void chop(int n);

private:
    Gk_String m_bytes;
};

#endif
