#include <korx/KORXFilePath.h>

#include <korx/Gk_Exception.h>

#include "internal/FileSystem.h"

#include <algorithm>
#include <string>

namespace {

constexpr KORXWChar kBlank = ' ';
constexpr KORXWChar kBackslash = '\\';
constexpr KORXWChar kSlash = '/';
constexpr KORXWChar kDot = '.';
constexpr KORXWChar kColon = ':';
constexpr KORXWChar kReadMode[] = {'r', 0};

// The fixed buffers of the file services hold 260 characters with their terminator.
constexpr int kPathBufferChars = 260;
constexpr int kNumberedTemporaryTries = 25;
constexpr const char* kTemporaryDirectory = "./";
constexpr const char* kTemporaryPrefix = "KORXTemp";

bool isSeparator(KORXWChar c) { return c == kBackslash || c == kSlash; }

bool endsWithIgnoreCase(const KORXString& text, const KORXString& suffix) {
    const int n = text.length();
    const int m = suffix.length();
    return m > 0 && m <= n && text.substring(n - m).equalsIgnoreCase(suffix);
}

KORXString withLeadingDot(const KORXString& ext) {
    return ext.charAt(0) == kDot ? ext : KORXString(kDot) + ext;
}

// dir cut to its first k characters; a shorter dir has nothing to cut.
KORXString cutTo(const KORXString& dir, int k) {
    return k < dir.length() ? dir.substring(0, k) : dir;
}

// "KORXTemp_1", "KORXTemp_2", ...: the first name that does not open for reading.
std::string numberedTemporaryName() {
    std::string name;
    for (int i = 1; i <= kNumberedTemporaryTries; ++i) {
        name = std::string(kTemporaryPrefix) + "_" + std::to_string(i);
        FILE* file = korx::detail::OpenPath(name.c_str(), "r");
        if (file == nullptr)
            break;
        std::fclose(file);
    }
    // The search is bounded and never fails: callers rely on getting the last name even when
    // that file exists.
    return name;
}

}  // namespace

// ---- Construction and assignment ----------------------------------------------------------

KORXFilePath::KORXFilePath() { Initialize(); }

KORXFilePath::KORXFilePath(const KORXFilePath& other) { store(other.GetPath()); }

KORXFilePath::KORXFilePath(const KORXFilePath* other) {
    store(other != nullptr ? other->GetPath() : KORXString());
}

KORXFilePath::KORXFilePath(const KORXString& text) { store(text); }

KORXFilePath::KORXFilePath(const char* text) { store(KORXString(text)); }

KORXFilePath::KORXFilePath(const KORXWChar* text) {
    if (text == nullptr)
        KORXAssert::Printf("Invalid KORXFilePath");
    store(KORXString(text));
}

#if KORX_WCHAR_IS_UTF32
KORXFilePath::KORXFilePath(const wchar_t* text) {
    if (text == nullptr)
        KORXAssert::Printf("Invalid KORXFilePath");
    store(KORXString(text));
}
#endif

KORXFilePath::KORXFilePath(const char* path, const char* newExtension) {
    if (path == nullptr || newExtension == nullptr) {
        Initialize();
        return;
    }
    KORXString text(path);
    FixSeparator(text);
    // The first dot of the last component, not the last one: ("a.tar.gz", ".zip") is "a.zip".
    const int lastSeparator = text.lastIndexOf(kBackslash);
    const int firstDot = text.indexOf(kDot, lastSeparator < 0 ? 0 : lastSeparator);
    const KORXString stem = firstDot < 0 ? text : text.substring(0, firstDot);
    // The extension is appended as the caller gave it, separators included.
    m_path = stem + KORXString(newExtension);
    Initialize();
}

KORXFilePath& KORXFilePath::operator=(const KORXFilePath& other) {
    // The source text is taken first, so that assigning a path to itself keeps it.
    assign(other.IsValid() ? other.GetPath() : KORXString(), false);
    return *this;
}

KORXFilePath& KORXFilePath::operator=(const KORXString& text) {
    assign(KORXString(text), true);
    return *this;
}

KORXFilePath& KORXFilePath::operator=(const char* text) {
    assign(KORXString(text), true);
    return *this;
}

KORXFilePath::~KORXFilePath() { clearIndices(); }

// Stores text as a constructor does: fixed when non-empty, then indexed.
void KORXFilePath::store(const KORXString& text) {
    m_path = text;
    if (m_path.length() > 0)
        FixSeparator(m_path);
    Initialize();
}

void KORXFilePath::assign(const KORXString& text, bool resetSeparator) {
    if (IsValid()) {
        m_path = KORXString();
        clearIndices();
    }
    if (resetSeparator)
        m_separator = kBlank;
    // Empty text skips Initialize, so a valid path emptied here keeps all indices at 0, not
    // -1: callers rely on it, and every accessor still gives empty text.
    if (text.length() < 1)
        return;
    m_path = text;
    FixSeparator(m_path);
    Initialize();
}

void KORXFilePath::clearIndices() {
    m_length = 0;
    m_lastSeparatorIndex = 0;
    m_nameIndex = 0;
    m_firstDotIndex = 0;
    m_lastDotIndex = 0;
}

void KORXFilePath::FixSeparator(KORXString& text) {
    m_separator = kBackslash;
    text = text.replace(kSlash, kBackslash);
    // Never true here: the hook by which a derived path kind that sets '/' gets forward slashes.
    if (m_separator == kSlash)
        text = text.replace(kBackslash, kSlash);
}

void KORXFilePath::Initialize() {
    m_length = m_path.length();
    m_lastSeparatorIndex = m_path.lastIndexOf(m_separator);
    m_nameIndex = m_lastSeparatorIndex + 1 < m_length ? m_lastSeparatorIndex + 1 : -1;
    if (m_lastSeparatorIndex == -1) {
        m_firstDotIndex = m_path.indexOf(kDot);
        m_lastDotIndex = m_path.lastIndexOf(kDot);
    } else {
        // Only the last component counts: dots in directory names are not extensions.
        m_firstDotIndex = m_path.indexOf(kDot, m_lastSeparatorIndex);
        m_lastDotIndex = m_path.lastIndexOfAfter(kDot, m_lastSeparatorIndex);
    }
}

// ---- Accessors ----------------------------------------------------------------------------

const KORXString& KORXFilePath::GetPath() const { return m_path; }

KORXString KORXFilePath::GetName() {
    return m_nameIndex == -1 ? KORXString() : m_path.substring(m_nameIndex);
}

KORXString KORXFilePath::GetNameWithoutExtension() {
    if (m_nameIndex == -1)
        return KORXString();
    return m_firstDotIndex == -1 ? m_path.substring(m_nameIndex)
                                 : m_path.substring(m_nameIndex, m_firstDotIndex);
}

KORXString KORXFilePath::GetNameWithoutLastExtension() {
    if (m_nameIndex == -1)
        return KORXString();
    return m_lastDotIndex == -1 ? m_path.substring(m_nameIndex)
                                : m_path.substring(m_nameIndex, m_lastDotIndex);
}

KORXString KORXFilePath::GetLastExtension() {
    return m_lastDotIndex == -1 ? KORXString() : m_path.substring(m_lastDotIndex + 1);
}

KORXString KORXFilePath::GetDirectory() {
    return m_lastSeparatorIndex == -1 ? KORXString() : m_path.substring(0, m_lastSeparatorIndex);
}

bool KORXFilePath::IsValid() const { return m_length > 0; }

bool KORXFilePath::IsAbsolute() const {
    if (!IsValid())
        return false;
    if (isSeparator(m_path.charAt(0)))
        return true;
    // A drive: any character, ':' and a separator. "C:" and "C:name" are relative.
    return m_path.charAt(1) == kColon && isSeparator(m_path.charAt(2));
}

bool KORXFilePath::HasExtension(const KORXString& ext) const {
    if (ext.length() < 1)
        return false;
    return endsWithIgnoreCase(m_path, withLeadingDot(ext));
}

void KORXFilePath::GetChars(KORXWChar* buffer, int count) const {
    if (buffer != nullptr)
        m_path.getChars(0, count, buffer, 0);
}

void KORXFilePath::GetChars(char* buffer, int count) const {
    if (buffer != nullptr)
        m_path.getChars(0, count, buffer, 0);
}

#if KORX_WCHAR_IS_UTF32
void KORXFilePath::GetChars(wchar_t* buffer, int count) const {
    if (buffer == nullptr)
        return;
    const int n = std::clamp(count, 0, m_path.length());
    const KORXWChar* units = m_path;
    int written = 0;
    for (int pos = 0; pos < n;) {
        const unsigned int cp = wcharNext(units, n, pos);
        if (cp == 0)
            break;
        buffer[written++] = static_cast<wchar_t>(cp == KORX_UTF_INVALID ? 0xFFFD : cp);
    }
    buffer[written] = 0;
}
#endif

KORXFilePath::operator const char*() const { return m_path; }

KORXFilePath::operator const KORXWChar*() const { return m_path; }

// ---- Derived paths ------------------------------------------------------------------------

KORXFilePath KORXFilePath::operator+(const KORXString& part) const {
    // part is examined before fixing: one that starts with '/' gets a '\' in front of it, and
    // callers rely on the two separators in a row that result.
    const bool joined =
        part.charAt(0) == kDot || m_path.endsWith(kBackslash) || part.charAt(0) == kBackslash;
    return KORXFilePath(joined ? m_path + part : m_path + KORXString(kBackslash) + part);
}

KORXFilePath KORXFilePath::ReplaceLastExtension(const char* ext) {
    const KORXString stem = m_lastDotIndex == -1 ? m_path : m_path.substring(0, m_lastDotIndex);
    return KORXFilePath(stem + withLeadingDot(KORXString(ext)));
}

KORXFilePath KORXFilePath::ResolveAgainst(KORXFilePath& base) {
    if (IsAbsolute())
        return KORXFilePath(*this);
    KORXString dir = base.GetDirectory();
    KORXString rel = GetPath();
    // Callers rely on this exact reading: each ".." drops three characters and cuts dir at the
    // position of the last '\' left in rel; any text starting with '.' drops two characters.
    for (;;) {
        if (rel.startsWith(KORXString(".."))) {
            rel = rel.substring(3);
            const int k = rel.lastIndexOf(kBackslash);
            if (k >= 1)
                dir = cutTo(dir, k);
        } else if (rel.startsWith(KORXString(kDot))) {
            rel = rel.substring(2);
        } else {
            break;
        }
    }
    if (dir.length() > 0 && !dir.endsWith(kBackslash))
        dir = dir + KORXString(kBackslash);
    return KORXFilePath(dir + rel);
}

// ---- File-system services -----------------------------------------------------------------

bool KORXFilePath::DoesFileExist() const {
    FILE* file = OpenFile(kReadMode);
    if (file == nullptr)
        return false;
    std::fclose(file);
    return true;
}

FILE* KORXFilePath::OpenFile(const KORXWChar* mode) const {
    const KORXString modeText(mode);
    return korx::detail::OpenPath(m_path, modeText);
}

#if KORX_WCHAR_IS_UTF32
FILE* KORXFilePath::OpenFile(const wchar_t* mode) const {
    const KORXString modeText(mode);
    return OpenFile(static_cast<const KORXWChar*>(modeText));
}
#endif

bool KORXFilePath::RemoveFile() const {
    // A path that does not fit the buffer is not removed: a cut name would name another file.
    if (m_path.length() >= kPathBufferChars)
        return false;
    return korx::detail::RemovePath(m_path);
}

KORXFilePath KORXFilePath::GetCurrentWorkingDirectory() {
    std::string directory;
    if (!korx::detail::CurrentDirectory(directory))
        return KORXFilePath();
    const KORXString text(directory.c_str());
    return text.length() < kPathBufferChars ? KORXFilePath(text) : KORXFilePath();
}

void KORXFilePath::GetTemporaryFilePath(KORXFilePath& out) {
    std::string name;
    if (!korx::detail::UnusedPathName(kTemporaryDirectory, kTemporaryPrefix, name))
        name = numberedTemporaryName();
    out = name.c_str();
}
