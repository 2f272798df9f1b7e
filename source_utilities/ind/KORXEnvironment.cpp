#include <korx/KORXEnvironment.h>
#include <korx/KORXLogger.h>
#include <korx/KORXString.h>

#include <cstring>
#include <vector>

#include "internal/Environment.h"
#include "internal/Platform.h"

namespace {

// Every empty name is the same name, whether or not its string holds a buffer.
bool sameNameIgnoringCase(const KORXString& a, const KORXString& b) {
    if (a.length() == 0 || b.length() == 0)
        return a.length() == b.length();
    return a.equalsIgnoreCase(b);
}

// The false words ("False", "No", "Off") and every other text read as false.
bool isTrueWord(const KORXString& value) {
    return value.equalsIgnoreCase(KORX_TRUE) || value.equalsIgnoreCase(KORX_YES) ||
           value.equalsIgnoreCase(KORX_ON);
}

}  // namespace

KORXEnvironment* KORXEnvironment::_pVariables = nullptr;

KORXEnvironment::KORXEnvironment() {
    korx::detail::WalkEnvironment([this](const char* entry) {
        KORXProperties::Set(KORXString(entry));
        return true;
    });
}

KORXEnvironment::~KORXEnvironment() = default;

KORXEnvironment& KORXEnvironment::GetEnv() {
    // Never released: readers may reach it from at-exit code.
    if (_pVariables == nullptr)
        _pVariables = new KORXEnvironment();
    return *_pVariables;
}

KORIResult KORXEnvironment::GetVariable(const KORXString& name, KORXString& value) {
    KORIResult result = KORIResult::E_FAIL_RESULT;
    korx::detail::WalkEnvironment([&](const char* entry) {
        const KORXString text(entry);
        const int equals = text.indexOf(KORXWChar('='));
        if (equals < 0 || !sameNameIgnoringCase(text.substring(0, equals), name))
            return true;
        // The first match wins, even where the environment holds the name in several cases.
        value = text.substring(equals + 1);
        result = 0;
        return false;
    });
    return result;
}

KORIResult KORXEnvironment::GetVariable(const KORXString& name, bool& flag) {
    KORXString value;
    const KORIResult result = GetVariable(name, value);
    flag = result == 0 && isTrueWord(value);
    return result;
}

KORIResult KORXEnvironment::PutVariable(const KORXString& name, KORXString& value) {
    if (name.length() == 0)
        return KORIResult::E_FAIL_RESULT;
    const KORXString entry = name + KORXString("=") + value;
    const char* text = entry;
    KORXInfo::Printf("Environment variable: %s\n", text);
    // The text is formatted once more as its own format, as callers have always had it: "%%"
    // is stored as "%". Every other conversion stays as written, so no argument that was never
    // passed is read. The result is never longer than the text.
    std::vector<char> stored(std::strlen(text) + 1);
    korx::detail::Reformat(stored.data(), stored.size(), text);
    if (!korx::detail::PutEnvironmentText(stored.data()))
        return KORIResult::E_FAIL_RESULT;
    return KORIResult(0);
}
