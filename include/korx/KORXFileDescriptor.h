// KORXFileDescriptor.h
//
// KORXFileDescriptor is an open file that the file streams share: made from a path or name
// (mode 1 read, 2 write), from a caller's FILE*, or from a descriptor number. It reads and
// writes either at its own position (offset -1) or at a given offset without moving that
// position, which lets several streams read one file independently.
//
// A descriptor that could not be opened (a missing or unreadable file, a directory opened for
// reading, an unknown mode) still exists: every operation on it reports failure with -1.
//
// The descriptor is reference-counted; KORXFileDescriptorHandle holds one reference, and the
// last handle to go deletes it. Only a descriptor opened from a path or name is closed then:
// those made from a number (0, 1, 2 or any the caller passes) or from a caller's FILE* stay
// open, they belong to the caller.
#ifndef KORX_KORXFILEDESCRIPTOR_H
#define KORX_KORXFILEDESCRIPTOR_H

#include <korx/KORXExport.h>
#include <korx/KORXReferenceCount.h>

#include <cstdint>
#include <cstdio>

class KORX_API KORXFileDescriptor : public KORXReferenceCount {
public:
    static constexpr int READ_MODE = 1;
    static constexpr int WRITE_MODE = 2;

    /// Opens the UTF-8 path name; write mode creates or empties the file.
    KORXFileDescriptor(const char* name, int mode);
    /// Uses file's descriptor, starting at file's position. file stays the caller's.
    KORXFileDescriptor(FILE* file, int mode);
    /// Uses the descriptor number as it is; the caller keeps it.
    KORXFileDescriptor(int number, int mode);

    KORXFileDescriptor(const KORXFileDescriptor&) = delete;
    KORXFileDescriptor& operator=(const KORXFileDescriptor&) = delete;

    /// Whether the descriptor could be opened.
    bool isOpen() const { return m_number >= 0; }
    int mode() const { return m_mode; }

    /// Reads up to n bytes at offset (-1: at the current position, which then advances).
    /// The count read, 0 at the end, -1 on failure.
    int readBytes(char* buffer, int n, long offset = -1);
    /// Writes the n bytes at offset (-1: at the current position, which then advances).
    /// The count written (below n only when the file took part of them), or -1 on failure.
    int writeBytes(const char* buffer, int n, long offset = -1);
    /// Moves the current position by d; the new position, or -1.
    long offset(long d);
    /// Moves the current position to o; the new position, or -1.
    long seek(long o);
    /// The size of the file in bytes, or -1.
    long fileSize();

protected:
    ~KORXFileDescriptor() override;

private:
    int32_t m_number;  // -1 when not open
    int32_t m_mode;
    bool m_owned;  // opened from a path by the library, so closed by it
};

/// One shared reference to a descriptor.
class KORX_API KORXFileDescriptorHandle : public KORXReferenceHandle<KORXFileDescriptor> {
public:
    KORXFileDescriptorHandle() = default;
    /// Takes a reference to descriptor (which may be null).
    KORXFileDescriptorHandle(KORXFileDescriptor* descriptor)
        : KORXReferenceHandle<KORXFileDescriptor>(descriptor) {}

    bool holdsDescriptor() const { return get() != nullptr; }
};

#endif
