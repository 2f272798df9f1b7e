// KORXWChar.h
//
// KORXWChar is the library's 16-bit UTF-16 code unit: wchar_t where wchar_t is 16 bits wide,
// char16_t elsewhere. Where wchar_t is 32 bits (Linux), interfaces that take KORXWChar text
// also take wchar_t text (UTF-32) and convert it at the boundary, so both u"..." and L"..."
// literals work.
#ifndef KORX_KORXWCHAR_H
#define KORX_KORXWCHAR_H

#include <cwchar>

#if WCHAR_MAX > 0xFFFF
#define KORX_WCHAR_IS_UTF32 1
typedef char16_t KORXWChar;
#else
#define KORX_WCHAR_IS_UTF32 0
typedef wchar_t KORXWChar;
#endif

#endif
