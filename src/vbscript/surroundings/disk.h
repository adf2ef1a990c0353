// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace vbscript {

/// What a script wants of its files. Paths are UTF-8 and as scripts write them.
struct DiskOrder {
    enum class What : std::uint8_t {
        Look,
        Read,
        Write, ///< replaces what is there
        Append,
        Copy,
        CopyOver, ///< also over what is there already
        Move,
        RemoveFile,
        RemoveFolder,
        MakeFolder,
        List,       ///< what is in a folder
        Modified,   ///< when a file or folder was written to
        MoveFolder, ///< to a name that is free
    };
    What what;
    std::string path;
    std::string to = {};         ///< of what is copied or moved
    std::string_view bytes = {}; ///< to be written
};

struct DiskAnswer {
    enum class Kind : std::uint8_t { Nothing, File, Folder };
    int fault = 0; ///< an error number of the language; 0: done
    Kind kind = Kind::Nothing;
    std::uint64_t size = 0; ///< of a file that was looked at; when: seconds since 1970, local time
    /// That were read. Of a list: for each, in the order of names, "f" (file) or "d" (folder), the
    /// name and a zero.
    std::string bytes = {};
    friend bool operator==(const DiskAnswer&, const DiskAnswer&) = default;
};

/// The files of scripts. Every order is done at once and holds nothing open.
class Disk {
  public:
    virtual ~Disk() = default;
    [[nodiscard]] virtual DiskAnswer ask(const DiskOrder& order) = 0;
};

/// What a script may let a file grow to, and read: a loop gone wild must not fill the disk.
inline constexpr std::uint64_t largestFile = std::uint64_t{32} << 20;

/// What a list may have; more is error 67.
inline constexpr std::size_t mostListed = 10'000;

/// One folder and nothing above it: whatever path a script names is taken from there, drive letters
/// and leading slashes away.
class FolderDisk final : public Disk {
  public:
    explicit FolderDisk(std::string folder) : folder_(std::move(folder)) {}
    [[nodiscard]] DiskAnswer ask(const DiskOrder& order) override;

  private:
    std::string folder_;
};

} // namespace vbscript
