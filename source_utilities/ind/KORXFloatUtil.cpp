#include <korx/KORXFloatUtil.h>

#include "internal/Platform.h"

double KORXFloatUtil::korxstrtod(const char* text, char** end) {
    return korx::detail::StrtodClassic(text, end);
}

double KORXFloatUtil::korxatof(const char* text) {
    return text != nullptr ? korxstrtod(text, nullptr) : 0.0;
}
