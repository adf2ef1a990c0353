// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/disk.h"
#include "vbscript/values/runtime.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace vbscript {

/// A Scripting.FileSystemObject on these files.
Value makeFileSystem(std::shared_ptr<Disk> disk);
/// A File or a Folder of that path. Throws Fault 53, 76 when it does not exist.
Value makeFile(Runtime& rt, std::shared_ptr<Disk> disk, std::string_view path);
Value makeFolder(Runtime& rt, std::shared_ptr<Disk> disk, std::string_view path);

enum class FileMode { Read = 1, Write = 2, Append = 8 };
/// An open text file, `size` bytes long before. Throws Fault 53, 70, 76 and what else the disk
/// answers. `unicode`: UTF-16 instead of Windows-1252.
Value openTextStream(Runtime& rt, std::shared_ptr<Disk> disk, const std::string& path,
                     FileMode mode, bool unicode, std::uint64_t size);
/// FSO.OpenTextFile and File.OpenAsTextStream: `mode` as scripts say it.
Value openAs(Runtime& rt, std::shared_ptr<Disk> disk, const std::string& path, std::int64_t mode,
             bool createIt, bool unicode);
/// Throws what went wrong. Every question counts against the time of the run.
DiskAnswer asked(Runtime& rt, Disk& disk, const DiskOrder& order);

/// The part behind the last separator, and the part before it.
std::string lastPart(const std::string& path);
std::string parentPart(const std::string& path);
/// From the script's folder on: "\a\b.txt", without a drive, "." and "..".
std::string absolutePath(std::string_view path);

} // namespace vbscript
