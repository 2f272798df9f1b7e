// korx.h
//
// The whole KORX library in one include. Each class family also has a header of its own.
#ifndef KORX_KORX_H
#define KORX_KORX_H

#include <korx/KORXDynamicArray.h>
#include <korx/KORXExport.h>
#include <korx/KORXString.h>
#include <korx/KORXWChar.h>

#endif
