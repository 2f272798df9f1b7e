// KORXString.h
//
// Text: single-byte code pages mapped to Unicode.
#ifndef KORX_KORXSTRING_H
#define KORX_KORXSTRING_H

#include <korx/KORXExport.h>

/// The Unicode code point of byte code in single-byte code page page (1 .. 15: ISO 8859-n).
/// Codes 32 .. 127 read printable ASCII whatever the page; 0xFFFF when unmappable (and for
/// pages outside 0 .. 15); -1 for codes outside 32 .. 127 and 160 .. 255.
KORX_API int MapPageCodeToUnicodeRune(int page, int code);

#endif
