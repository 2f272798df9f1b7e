// KORXFloatUtil.h
//
// Number parsing that does not depend on the C runtime's locale: "." is always the decimal
// point. Otherwise the forms strtod accepts (leading blanks, a sign, exponents, hexadecimal,
// "inf", "nan").
#ifndef KORX_KORXFLOATUTIL_H
#define KORX_KORXFLOATUTIL_H

#include <korx/KORXExport.h>

class KORX_API KORXFloatUtil {
public:
    /// As strtod; errno is ERANGE when the value overflows or underflows.
    static double korxstrtod(const char* text, char** end);
    /// korxstrtod without the end; 0 for a null text.
    static double korxatof(const char* text);
};

#endif
