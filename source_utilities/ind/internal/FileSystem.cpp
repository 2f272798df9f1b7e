#include "internal/FileSystem.h"

#include <cerrno>
#include <random>
#include <vector>

#include <sys/stat.h>
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

bool isDirectory(FILE* file) {
    struct stat info {};
    return ::fstat(::fileno(file), &info) == 0 && S_ISDIR(info.st_mode);
}

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

}  // namespace korx::detail
