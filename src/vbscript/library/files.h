#pragma once

#include "vbscript/surroundings/disk.h"
#include "vbscript/values/object.h"

#include <memory>
#include <string>

namespace vbscript {

/// A Scripting.FileSystemObject on these files.
Value makeFileSystem(std::shared_ptr<Disk> disk);

enum class FileMode { Read = 1, Write = 2, Append = 8 };
/// An open text file, `size` bytes long before. Throws Fault 53, 70, 76 and what else the disk
/// answers. `unicode`: UTF-16 instead of Windows-1252.
Value openTextStream(std::shared_ptr<Disk> disk, const std::string& path, FileMode mode,
                     bool unicode, std::uint64_t size);
/// Throws what went wrong.
DiskAnswer asked(Disk& disk, const DiskOrder& order);

} // namespace vbscript
