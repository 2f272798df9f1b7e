#include "internal/FileSystem.h"

#include <cerrno>
#include <random>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

namespace korx::detail {

namespace {

constexpr int kNameTries = 100;
constexpr int kSuffixLength = 6;
constexpr size_t kLargestDirectory = 1 << 16;

// Stored paths separate with '\'; the operating system is given '/'.
std::string osPath(const char* path) {
    std::string text(path);
    for (char& c : text) {
        if (c == '\\')
            c = '/';
    }
    return text;
}

bool isDirectory(int number) {
    struct stat info {};
    return ::fstat(number, &info) == 0 && S_ISDIR(info.st_mode);
}

bool isDirectory(FILE* file) { return isDirectory(::fileno(file)); }

bool namesSomething(const std::string& path) {
    struct stat info {};
    return ::lstat(path.c_str(), &info) == 0 || errno != ENOENT;
}

std::string randomSuffix() {
    static const char letters[] = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    static std::minstd_rand engine(std::random_device{}());
    std::uniform_int_distribution<size_t> pick(0, sizeof letters - 2);
    std::string suffix;
    for (int i = 0; i < kSuffixLength; ++i)
        suffix += letters[pick(engine)];
    return suffix;
}

}  // namespace

FILE* OpenPath(const char* path, const char* mode) {
    if (path == nullptr || mode == nullptr)
        return nullptr;
    FILE* file = std::fopen(osPath(path).c_str(), mode);
    // POSIX opens a directory for reading; the library treats a directory as not openable.
    if (file != nullptr && isDirectory(file)) {
        std::fclose(file);
        return nullptr;
    }
    return file;
}

bool RemovePath(const char* path) {
    return path != nullptr && std::remove(osPath(path).c_str()) == 0;
}

bool CurrentDirectory(std::string& out) {
    std::vector<char> buffer(256);
    while (::getcwd(buffer.data(), buffer.size()) == nullptr) {
        if (errno != ERANGE || buffer.size() >= kLargestDirectory)
            return false;
        buffer.resize(buffer.size() * 2);
    }
    out = buffer.data();
    return true;
}

bool UnusedPathName(const char* directory, const char* prefix, std::string& out) {
    for (int i = 0; i < kNameTries; ++i) {
        const std::string name = std::string(directory) + prefix + randomSuffix();
        if (!namesSomething(osPath(name.c_str()))) {
            out = name;
            return true;
        }
    }
    return false;
}

// ---- Descriptors ------------------------------------------------------------------------------

namespace {

template <class Call> long retried(Call call) {
    ssize_t result = 0;
    do {
        result = call();
    } while (result < 0 && errno == EINTR);
    return result < 0 ? -1 : static_cast<long>(result);
}

}  // namespace

int OpenDescriptor(const char* path, bool forWriting) {
    if (path == nullptr)
        return -1;
    const std::string name = osPath(path);
    if (forWriting)
        return ::open(name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    const int number = ::open(name.c_str(), O_RDONLY | O_CLOEXEC);
    // POSIX opens a directory for reading; the library treats a directory as not openable.
    if (number >= 0 && isDirectory(number)) {
        ::close(number);
        return -1;
    }
    return number;
}

void CloseDescriptor(int number) { ::close(number); }

int DescriptorOfFile(FILE* file) { return ::fileno(file); }

long ReadDescriptor(int number, char* buffer, size_t n, long offset) {
    return retried([&] {
        return offset < 0 ? ::read(number, buffer, n)
                          : ::pread(number, buffer, n, static_cast<off_t>(offset));
    });
}

long WriteDescriptor(int number, const char* buffer, size_t n, long offset) {
    return retried([&] {
        return offset < 0 ? ::write(number, buffer, n)
                          : ::pwrite(number, buffer, n, static_cast<off_t>(offset));
    });
}

long SeekDescriptor(int number, long offset, bool fromCurrent) {
    const off_t position =
        ::lseek(number, static_cast<off_t>(offset), fromCurrent ? SEEK_CUR : SEEK_SET);
    return position < 0 ? -1 : static_cast<long>(position);
}

long DescriptorSize(int number) {
    struct stat info {};
    return ::fstat(number, &info) == 0 ? static_cast<long>(info.st_size) : -1;
}

}  // namespace korx::detail
