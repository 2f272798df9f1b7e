// korx.h
//
// The whole KORX library in one include. Each class family also has a header of its own.
#ifndef KORX_KORX_H
#define KORX_KORX_H

#include <korx/Gk_Exception.h>
#include <korx/Gk_Observer.h>
#include <korx/Gk_String.h>
#include <korx/Gk_StringParser.h>
#include <korx/KORIResult.h>
#include <korx/KORXContainers.h>
#include <korx/KORXDynamicArray.h>
#include <korx/KORXEnvironment.h>
#include <korx/KORXError.h>
#include <korx/KORXEventBus.h>
#include <korx/KORXExport.h>
#include <korx/KORXFileDescriptor.h>
#include <korx/KORXFilePath.h>
#include <korx/KORXFloatUtil.h>
#include <korx/KORXLogger.h>
#include <korx/KORXProperties.h>
#include <korx/KORXReferenceCount.h>
#include <korx/KORXStream.h>
#include <korx/KORXStreamFormatter.h>
#include <korx/KORXString.h>
#include <korx/KORXStringTokenizer.h>
#include <korx/KORXTaskEvent.h>
#include <korx/KORXWChar.h>
#include <korx/MessageHandler.h>

#endif
