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
        CopyOver, ///< also where something is there already
        Move,
        RemoveFile,
        RemoveFolder,
        MakeFolder,
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
    std::uint64_t size = 0; ///< of a file that was looked at
    std::string bytes = {}; ///< that were read
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
