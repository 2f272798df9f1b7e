// FileSystem.h
//
// The file-system calls behind KORXFilePath. Paths arrive as UTF-8 and may separate with '\':
// each one is handed to the operating system as '/' here, and only here. A directory is not a
// file: it never opens for reading. Internal: not installed.
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

}  // namespace korx::detail

#endif
