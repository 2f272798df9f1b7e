#include <korx/KORXFileDescriptor.h>

#include <cerrno>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

constexpr int kNotOpen = -1;
constexpr long kCurrentPosition = -1;

// Stored paths may separate with '\'; the operating system is given '/'.
std::string osPath(const char* name) {
    std::string path(name);
    for (char& c : path) {
        if (c == '\\')
            c = '/';
    }
    return path;
}

bool isDirectory(int number) {
    struct stat info {};
    return ::fstat(number, &info) == 0 && S_ISDIR(info.st_mode);
}

int openForReading(const std::string& path) {
    const int number = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (number < 0)
        return kNotOpen;
    // POSIX opens a directory for reading; the library treats a directory as not openable.
    if (isDirectory(number)) {
        ::close(number);
        return kNotOpen;
    }
    return number;
}

int openForWriting(const std::string& path) {
    const int number = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    return number < 0 ? kNotOpen : number;
}

int openPath(const char* name, int mode) {
    if (name == nullptr)
        return kNotOpen;
    if (mode == KORXFileDescriptor::READ_MODE)
        return openForReading(osPath(name));
    if (mode == KORXFileDescriptor::WRITE_MODE)
        return openForWriting(osPath(name));
    return kNotOpen;
}

ssize_t readOnce(int number, char* buffer, size_t n, long offset) {
    if (offset == kCurrentPosition)
        return ::read(number, buffer, n);
    return ::pread(number, buffer, n, static_cast<off_t>(offset));
}

ssize_t writeOnce(int number, const char* buffer, size_t n, long offset) {
    if (offset == kCurrentPosition)
        return ::write(number, buffer, n);
    return ::pwrite(number, buffer, n, static_cast<off_t>(offset));
}

long moveTo(int number, long offset, int whence) {
    const off_t position = ::lseek(number, static_cast<off_t>(offset), whence);
    return position < 0 ? -1 : static_cast<long>(position);
}

}  // namespace

KORXFileDescriptor::KORXFileDescriptor(const char* name, int mode)
    : m_number(openPath(name, mode)), m_mode(mode), m_owned(true) {}

KORXFileDescriptor::KORXFileDescriptor(FILE* file, int mode)
    : m_number(kNotOpen), m_mode(mode), m_owned(false) {
    if (file == nullptr)
        return;
    // Start where the caller's FILE stands, with what it buffered for writing already out.
    const long position = std::ftell(file);
    std::fflush(file);
    m_number = ::fileno(file);
    if (position >= 0)
        moveTo(m_number, position, SEEK_SET);
}

KORXFileDescriptor::KORXFileDescriptor(int number, int mode)
    : m_number(number < 0 ? kNotOpen : number), m_mode(mode), m_owned(false) {}

KORXFileDescriptor::~KORXFileDescriptor() {
    if (m_owned && isOpen())
        ::close(m_number);
}

int KORXFileDescriptor::readBytes(char* buffer, int n, long offset) {
    if (!isOpen() || n < 0 || (buffer == nullptr && n > 0) || offset < kCurrentPosition)
        return -1;
    ssize_t got = 0;
    do {
        got = readOnce(m_number, buffer, static_cast<size_t>(n), offset);
    } while (got < 0 && errno == EINTR);
    return got < 0 ? -1 : static_cast<int>(got);
}

int KORXFileDescriptor::writeBytes(const char* buffer, int n, long offset) {
    if (!isOpen() || n < 0 || (buffer == nullptr && n > 0) || offset < kCurrentPosition)
        return -1;
    int done = 0;
    while (done < n) {
        const long at = offset == kCurrentPosition ? offset : offset + done;
        const ssize_t put = writeOnce(m_number, buffer + done, static_cast<size_t>(n - done), at);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return done > 0 ? done : -1;
        done += static_cast<int>(put);
    }
    return done;
}

long KORXFileDescriptor::offset(long d) { return isOpen() ? moveTo(m_number, d, SEEK_CUR) : -1; }

long KORXFileDescriptor::seek(long o) {
    return isOpen() && o >= 0 ? moveTo(m_number, o, SEEK_SET) : -1;
}

long KORXFileDescriptor::fileSize() {
    struct stat info {};
    if (!isOpen() || ::fstat(m_number, &info) != 0)
        return -1;
    return static_cast<long>(info.st_size);
}
