#include <korx/KORXString.h>

#include <clocale>
#include <cstring>

namespace {

// The one save slot: a heap copy of the LC_NUMERIC name that SetNumericC replaced.
char* g_savedNumeric = nullptr;

char* copyName(const char* name) {
    if (name == nullptr)
        return nullptr;
    char* copy = new char[std::strlen(name) + 1];
    std::strcpy(copy, name);
    return copy;
}

}  // namespace

// Calls do not nest: a second SetNumericC saves "C" over the first name, and callers keep to
// one SetNumericC before each RestoreNumeric.
void KORXLocale::SetNumericC() {
    delete[] g_savedNumeric;
    g_savedNumeric = copyName(std::setlocale(LC_NUMERIC, nullptr));
    std::setlocale(LC_NUMERIC, "C");
}

void KORXLocale::RestoreNumeric() {
    if (g_savedNumeric == nullptr)
        return;  // setlocale with a null name would only ask
    std::setlocale(LC_NUMERIC, g_savedNumeric);
    delete[] g_savedNumeric;
    g_savedNumeric = nullptr;
}
