#pragma once

#include "script/vbscript/object.h"

#include <string>

namespace vbscript {

/// A Scripting.FileSystemObject that sees one folder and nothing above it: whatever path a script
/// names is taken from there, drive letters and leading slashes away.
Value makeFileSystem(std::string folder);

enum class FileMode { Read = 1, Write = 2, Append = 8 };
/// An open text file. Throws Fault 53, 70, 76. `unicode`: UTF-16 instead of Windows-1252.
Value openTextStream(const std::string& path, FileMode mode, bool unicode);

} // namespace vbscript
