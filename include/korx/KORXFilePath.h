// KORXFilePath.h
//
// KORXFilePath is the value type of every file name in the library. It holds the path as a
// KORXString with one separator forced on it (every '/' is stored as '\'), and keeps the
// positions of the last separator and of the first and last dots of the last component, so
// that the name, directory and extension accessors are plain substrings. A stored path is
// never changed except by assignment: operator+, ReplaceLastExtension and ResolveAgainst
// return new paths.
//
// The operations are virtual so that a derived path kind can change the parsing, and the
// operations call one another through the virtual table: assignment calls IsValid,
// FixSeparator and Initialize; DoesFileExist calls OpenFile; IsAbsolute calls IsValid;
// ResolveAgainst calls IsAbsolute, GetPath and the base's GetDirectory. (Constructors call the
// base class's own FixSeparator and Initialize, as C++ does during construction.)
//
// The file-system services hand the operating system the UTF-8 form of the path with each
// stored '\' given as '/'. A directory is never openable for reading, so DoesFileExist is
// false for it.
#ifndef KORX_KORXFILEPATH_H
#define KORX_KORXFILEPATH_H

#include <korx/KORXExport.h>
#include <korx/KORXString.h>
#include <korx/KORXWChar.h>

#include <cstdint>
#include <cstdio>

class KORX_API KORXFilePath {
public:
    /// Empty: not valid, every accessor gives empty text.
    KORXFilePath();
    KORXFilePath(const KORXFilePath& other);
    /// As the copy constructor; null gives an empty path.
    explicit KORXFilePath(const KORXFilePath* other);
    KORXFilePath(const KORXString& text);
    /// The UTF-8 text; null gives an empty path.
    KORXFilePath(const char* text);
    /// Null publishes the assertion "Invalid KORXFilePath" and gives an empty path.
    KORXFilePath(const KORXWChar* text);
#if KORX_WCHAR_IS_UTF32
    KORXFilePath(const wchar_t* text);
#endif
    /// path with newExtension (which carries its own dot) in place of everything from the
    /// first dot of its last component: ("a.tar.gz", ".zip") gives "a.zip". Null for either
    /// gives an empty path.
    KORXFilePath(const char* path, const char* newExtension);

    /// Assigning empty text (or an invalid path) to a valid path leaves every index 0.
    KORXFilePath& operator=(const KORXFilePath& other);
    KORXFilePath& operator=(const KORXString& text);
    KORXFilePath& operator=(const char* text);

    virtual ~KORXFilePath();

    virtual const KORXString& GetPath() const;
    virtual KORXString GetName();
    /// The name up to its first dot.
    virtual KORXString GetNameWithoutExtension();
    /// The name up to its last dot.
    virtual KORXString GetNameWithoutLastExtension();
    /// The text after the last dot of the name, without the dot.
    virtual KORXString GetLastExtension();
    /// Everything before the last separator; empty when there is none.
    virtual KORXString GetDirectory();
    virtual bool IsValid() const;
    /// Starts with a separator, or with a character, ':' and a separator.
    virtual bool IsAbsolute() const;
    /// Whether the path ends with ext (a dot is put in front when it has none), ignoring case.
    virtual bool HasExtension(const KORXString& ext) const;
    /// A new path with ext (a dot is put in front when it has none) in place of the last
    /// extension.
    virtual KORXFilePath ReplaceLastExtension(const char* ext);
    /// A new path: this relative path read against the directory of base; an absolute path
    /// is returned as it is.
    virtual KORXFilePath ResolveAgainst(KORXFilePath& base);
    /// Whether the file opens for reading.
    virtual bool DoesFileExist() const;
    /// The open stream, owned by the caller, or null.
    virtual FILE* OpenFile(const KORXWChar* mode) const;
    /// Removes the file; false when it could not be removed or the path does not fit in
    /// 260 characters.
    virtual bool RemoveFile() const;
    /// Copies characters 0 .. count - 1 and a terminator: buffer holds count + 1 units.
    virtual void GetChars(KORXWChar* buffer, int count) const;
    /// The same characters as UTF-8: buffer holds 3 x count + 3 bytes.
    virtual void GetChars(char* buffer, int count) const;

#if KORX_WCHAR_IS_UTF32
    FILE* OpenFile(const wchar_t* mode) const;
    /// The same characters as UTF-32 (a surrogate pair gives one unit): buffer holds
    /// count + 1 units.
    void GetChars(wchar_t* buffer, int count) const;
#endif

    /// path + part, with a separator between them unless part starts with '.' or one of them
    /// already has a '\' at the join.
    KORXFilePath operator+(const KORXString& part) const;

    /// The UTF-8 form of the path; null for a path never given text.
    operator const char*() const;
    /// The wide text of the path; null for a path never given text.
    operator const KORXWChar*() const;

    /// The current working directory; an empty path when it cannot be read or does not fit
    /// in 260 characters.
    static KORXFilePath GetCurrentWorkingDirectory();
    /// A name in the current directory, beginning with "KORXTemp", that names no file at the
    /// time of the call. No file is created.
    static void GetTemporaryFilePath(KORXFilePath& out);

protected:
    /// Recomputes the indices from m_path and m_separator.
    virtual void Initialize();
    /// Sets the separator and turns every separator of text into it.
    virtual void FixSeparator(KORXString& text);

    KORXString m_path;
    KORXWChar m_separator = ' ';       // a blank until text is stored, then '\'
    int32_t m_length = 0;              // characters of m_path
    int32_t m_lastSeparatorIndex = 0;  // -1 when there is none
    int32_t m_nameIndex = 0;           // -1 when there is no name (empty, or a trailing separator)
    int32_t m_firstDotIndex = 0;       // first '.' of the last component, or -1
    int32_t m_lastDotIndex = 0;        // last '.' of the last component, or -1

private:
    void store(const KORXString& text);
    void assign(const KORXString& text, bool resetSeparator);
    void clearIndices();
};

#endif
