# Sources of the library, by subsystem folder.

set(KORX_PLATFORM_SOURCES
    source_utilities/ind/internal/Format.cpp
    source_utilities/ind/internal/Platform.cpp
)

set(KORX_SOURCES
    source_utilities/ind/KORXArray.cpp
    source_utilities/ind/KORXMemoryBound.cpp
    source_utilities/ind/KORXCodePage.cpp
)

# Text: the wide string, Unicode conversion, the numeric locale switch, the trace printer.
list(APPEND KORX_SOURCES
    source_utilities/ind/KORXString.cpp
    source_utilities/ind/KORXUnicode.cpp
    source_utilities/ind/KORXLocale.cpp
    source_utilities/ind/internal/Trace.cpp
)

# Events: the result type, the event root, the bus and its listeners, the observer base.
list(APPEND KORX_SOURCES
    source_utilities/ind/KORIResult.cpp
    source_utilities/ind/KORXObject.cpp
    source_utilities/ind/KORXEvent.cpp
    source_utilities/ind/KORXEventBus.cpp
    source_utilities/ind/Gk_Observer.cpp
    source_utilities/ind/KORXEntityCallback.cpp
)

# Exceptions, assertions and errors.
list(APPEND KORX_SOURCES
    source_utilities/ind/Gk_Marker.cpp
    source_utilities/ind/Gk_ErrMgr.cpp
    source_utilities/ind/KORXAssert.cpp
    source_utilities/ind/KORXError.cpp
    source_utilities/ind/KORXErrorTracker.cpp
    source_utilities/ind/internal/MessageText.cpp
)

# The stream formatter and its HTML form.
list(APPEND KORX_SOURCES
    source_stream/ind/KORXStreamFormatter.cpp
    source_stream/ind/KORXHTMLStreamFormatter.cpp
    source_utilities/ind/internal/ValueText.cpp
)

# Byte strings, file descriptors and the stream hierarchy.
list(APPEND KORX_SOURCES
    source_utilities/ind/Gk_String.cpp
    source_utilities/ind/Gk_ROString.cpp
    source_utilities/ind/KORXFileDescriptor.cpp
    source_stream/ind/KORXInputStream.cpp
    source_stream/ind/KORXOutputStream.cpp
    source_stream/ind/KORXFilterStream.cpp
    source_stream/ind/KORXFileInputStream.cpp
    source_stream/ind/KORXFileOutputStream.cpp
    source_stream/ind/KORXStringInputStream.cpp
    source_stream/ind/KORXStringOutputStream.cpp
)

# The numeric-text parser, its locale-independent number reading, and the tokenizer.
list(APPEND KORX_SOURCES
    source_utilities/ind/Gk_StringParser.cpp
    source_utilities/ind/KORXFloatUtil.cpp
    source_utilities/ind/KORXStringTokenizer.cpp
)

# Messages and loggers, and the message-reporting service they forward to.
list(APPEND KORX_SOURCES
    source_utilities/ind/KORXMessageEvents.cpp
    source_utilities/ind/KORXReporters.cpp
    source_utilities/ind/KORXLogger.cpp
    source_utilities/ind/KORXTimingLogger.cpp
    source_utilities/ind/MessageHandler.cpp
)

# File paths and the file-system calls behind them.
list(APPEND KORX_SOURCES
    source_utilities/ind/KORXFilePath.cpp
    source_utilities/ind/internal/FileSystem.cpp
)

# Properties, environment variables, and the task and progress events.
list(APPEND KORX_SOURCES
    source_utilities/ind/KORXProperties.cpp
    source_utilities/ind/KORXEnvironment.cpp
    source_utilities/ind/internal/Environment.cpp
    source_utilities/ind/KORXTaskEvent.cpp
    source_utilities/ind/KORXTaskEvents.cpp
)

# Containers: the list, the keyed list, the pointer stack and the string array.
list(APPEND KORX_SOURCES
    source_utilities/ind/KORXList.cpp
    source_utilities/ind/KORXMap.cpp
    source_utilities/ind/KORXStack.cpp
    source_utilities/ind/KORXStringArray.cpp
)
