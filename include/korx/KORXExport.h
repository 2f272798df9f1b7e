// KORXExport.h
//
// KORX_API marks every exported class and free function. Everything else stays hidden in the
// shared library. Define KORX_STATIC when linking the static library (the CMake package and
// korx.pc do it for you).
//
// KORX_PRINTF_FORMAT(f, v) lets the compiler check the arguments of a printf-style function:
// the format is argument f and the values start at argument v (members count this as 1).
#ifndef KORX_KORXEXPORT_H
#define KORX_KORXEXPORT_H

#if defined(KORX_STATIC)
#define KORX_API
#elif defined(_WIN32)
#if defined(KORX_BUILDING)
#define KORX_API __declspec(dllexport)
#else
#define KORX_API __declspec(dllimport)
#endif
#else
#define KORX_API __attribute__((visibility("default")))
#endif

#if defined(__GNUC__)
#define KORX_PRINTF_FORMAT(f, v) __attribute__((format(printf, f, v)))
#else
#define KORX_PRINTF_FORMAT(f, v)
#endif

#endif
