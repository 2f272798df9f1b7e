// FileSystem.h
//
// The file-system calls behind KORXFilePath and KORXFileDescriptor. Paths arrive as UTF-8 and may
// separate with '\': each one is handed to the operating system as '/' here, and only here. A
// directory is not a file: it never opens for reading. Internal: not installed.
#ifndef KORX_INTERNAL_FILESYSTEM_H
#define KORX_INTERNAL_FILESYSTEM_H

#include <cstdio>
#include <string>

namespace korx::detail {

/// fopen of the path with mode; null when it fails or when the path names a directory.
FILE* OpenPath(const char* path, const char* mode);

/// Removes the file; true on success.
bool RemovePath(const char* path);

/// The current working directory as UTF-8; false when it cannot be read.
bool CurrentDirectory(std::string& out);

/// A name made of directory, prefix and a few letters or digits that names nothing at the
/// time of the call; false when no such name was found after a bounded number of tries.
bool UnusedPathName(const char* directory, const char* prefix, std::string& out);

/// A descriptor number on the path, for reading or for writing (created or emptied); -1 when
/// it cannot be opened, and for reading a directory.
int OpenDescriptor(const char* path, bool forWriting);
void CloseDescriptor(int number);
/// The descriptor behind an open FILE.
int DescriptorOfFile(FILE* file);

/// One read or write of at most n bytes at offset, or at the current position for offset -1,
/// retried when a signal interrupts it. The bytes moved, or -1.
long ReadDescriptor(int number, char* buffer, size_t n, long offset);
long WriteDescriptor(int number, const char* buffer, size_t n, long offset);

/// The new position after moving to offset from the start, or by offset from the current
/// position; -1 when it cannot move.
long SeekDescriptor(int number, long offset, bool fromCurrent);
/// The size of the open file, or -1.
long DescriptorSize(int number);

}  // namespace korx::detail

#endif
