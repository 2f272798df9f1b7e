#include "internal/Environment.h"

#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>

#if !defined(_WIN32)
extern char** environ;
#endif

namespace korx::detail {

namespace {

char** liveEnvironment() {
#if defined(_WIN32)
    return _environ;
#else
    return environ;
#endif
}

int putText(char* text) {
#if defined(_WIN32)
    return _putenv(text);
#else
    return putenv(text);
#endif
}

// putenv keeps the pointer it is given (glibc does), so each variable's text lives here until
// the variable is set again. Never destroyed: the environment may be read by at-exit code.
std::map<std::string, std::unique_ptr<char[]>>& keptTexts() {
    static auto* const texts = new std::map<std::string, std::unique_ptr<char[]>>();
    return *texts;
}

std::string variableName(const char* text) {
    const char* equals = std::strchr(text, '=');
    return equals != nullptr ? std::string(text, equals) : std::string(text);
}

}  // namespace

void WalkEnvironment(const std::function<bool(const char* entry)>& visit) {
    char** entries = liveEnvironment();
    if (entries == nullptr)
        return;
    for (char** entry = entries; *entry != nullptr; ++entry) {
        if (!visit(*entry))
            return;
    }
}

bool PutEnvironmentText(const char* text) {
    const size_t size = std::strlen(text) + 1;
    std::unique_ptr<char[]> copy(new char[size]);
    std::memcpy(copy.get(), text, size);
    // The slot exists before putenv runs, so keeping the text cannot fail after it succeeded.
    std::unique_ptr<char[]>& slot = keptTexts()[variableName(text)];
    if (putText(copy.get()) != 0)
        return false;
    slot = std::move(copy);  // the variable's previous text is out of the environment now
    return true;
}

}  // namespace korx::detail
