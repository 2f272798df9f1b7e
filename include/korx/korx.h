// korx.h
//
// The whole KORX library in one include. Each class family also has a header of its own.
#ifndef KORX_KORX_H
#define KORX_KORX_H

#include <korx/Gk_Observer.h>
#include <korx/KORIResult.h>
#include <korx/KORXDynamicArray.h>
#include <korx/KORXEventBus.h>
#include <korx/KORXExport.h>
#include <korx/KORXString.h>
#include <korx/KORXWChar.h>

#endif
