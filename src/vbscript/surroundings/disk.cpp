// SPDX-License-Identifier: Apache-2.0
#include "vbscript/surroundings/disk.h"

#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <vector>

namespace vbscript {

namespace {

namespace fs = std::filesystem;
using What = DiskOrder::What;

// Links are followed before the check: one that leads out of the folder is as foreign as "..".
fs::path inside(const std::string& folder, std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    if (path.find('\0') != std::string::npos || path.size() > 1000)
        throw Fault(errors::badFileName);
    if (path.size() >= 2 && path[1] == ':') path.erase(0, 2);
    path.erase(0, std::min(path.find_first_not_of('/'), path.size()));
    std::error_code bad;
    const fs::path root = fs::weakly_canonical(folder, bad);
    if (bad) throw Fault(errors::pathNotFound);
    fs::path full = fs::weakly_canonical(root / path, bad);
    if (bad) throw Fault(errors::badFileName);
    const auto [end, rest] = std::mismatch(root.begin(), root.end(), full.begin(), full.end());
    if (end != root.end() && !(end->empty() && std::next(end) == root.end()))
        throw Fault(errors::permissionDenied);
    return full;
}

DiskAnswer look(const fs::path& path) {
    std::error_code bad;
    DiskAnswer a;
    if (fs::is_directory(path, bad)) {
        a.kind = DiskAnswer::Kind::Folder;
    } else if (fs::is_regular_file(path, bad)) {
        a.kind = DiskAnswer::Kind::File;
        a.size = fs::file_size(path, bad);
        if (bad) throw Fault(errors::permissionDenied);
    }
    return a;
}

std::string read(const fs::path& path) {
    std::error_code bad;
    if (!fs::is_regular_file(path, bad)) throw Fault(errors::fileNotFound); // a pipe would hold us
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    if (!in) throw Fault(errors::fileNotFound);
    const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(in.tellg(), 0));
    if (size > largestFile) throw Fault(errors::outOfMemory);
    std::string bytes(size, '\0');
    in.seekg(0);
    in.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(in.gcount(), 0)));
    return bytes;
}

void write(const fs::path& path, std::string_view bytes, std::ios::openmode how) {
    std::error_code bad;
    if (fs::exists(path, bad) && !fs::is_regular_file(path, bad)) throw Fault(errors::pathNotFound);
    std::ofstream out(path, std::ios::binary | std::ios::out | how);
    if (!out) throw Fault(errors::pathNotFound);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) throw Fault(errors::diskFull);
}

void copy(const fs::path& source, fs::path target, What what) {
    std::error_code bad;
    if (!fs::is_regular_file(source, bad)) throw Fault(errors::fileNotFound);
    if (fs::is_directory(target, bad)) target /= source.filename();
    if (what != What::CopyOver && fs::exists(target, bad)) throw Fault(errors::fileExists);
    if (!fs::is_directory(target.parent_path(), bad)) throw Fault(errors::pathNotFound);
    if (what == What::Move)
        fs::rename(source, target, bad);
    else
        fs::copy_file(source, target, fs::copy_options::overwrite_existing, bad);
    if (bad) throw Fault(errors::permissionDenied);
}

void remove(const fs::path& path, const std::string& folder, What what) {
    std::error_code bad;
    if (what == What::RemoveFolder ? !fs::is_directory(path, bad) : !fs::is_regular_file(path, bad))
        throw Fault(what == What::RemoveFolder ? errors::pathNotFound : errors::fileNotFound);
    if (fs::equivalent(path, folder, bad)) throw Fault(errors::permissionDenied);
    // Only an empty folder: a slip of a script shall not take a year of reports with it.
    fs::remove(path, bad);
    if (bad) throw Fault(errors::permissionDenied);
}

void makeFolder(const fs::path& path) {
    std::error_code bad;
    if (fs::exists(path, bad)) throw Fault(errors::fileExists);
    if (!fs::create_directory(path, bad) || bad) throw Fault(errors::pathNotFound);
}

void moveFolder(const fs::path& source, const fs::path& target, const std::string& folder) {
    std::error_code bad;
    if (!fs::is_directory(source, bad)) throw Fault(errors::pathNotFound);
    if (fs::equivalent(source, folder, bad)) throw Fault(errors::permissionDenied);
    if (fs::exists(target, bad)) throw Fault(errors::fileExists);
    fs::rename(source, target, bad);
    if (bad) throw Fault(errors::permissionDenied);
}

bool leadsInside(const fs::directory_entry& e, const std::string& folder) {
    std::error_code bad;
    if (!e.is_symlink(bad)) return true;
    const fs::path root = fs::weakly_canonical(folder, bad);
    const fs::path full = fs::weakly_canonical(e.path(), bad);
    return !bad &&
           std::mismatch(root.begin(), root.end(), full.begin(), full.end()).first == root.end();
}

std::string list(const fs::path& path, const std::string& folder) {
    std::error_code bad;
    if (!fs::is_directory(path, bad)) throw Fault(errors::pathNotFound);
    std::vector<std::pair<std::string, char>> all;
    fs::directory_iterator at(path, bad);
    for (; !bad && at != fs::directory_iterator(); at.increment(bad)) {
        const bool isFolder = at->is_directory(bad);
        if ((!isFolder && !at->is_regular_file(bad)) || !leadsInside(*at, folder)) continue;
        all.emplace_back(at->path().filename().string(), isFolder ? 'd' : 'f');
        if (all.size() > mostListed) throw Fault(errors::tooManyFiles);
    }
    if (bad) throw Fault(errors::permissionDenied);
    std::sort(all.begin(), all.end());
    std::string bytes;
    for (const auto& [name, kind] : all) {
        bytes += kind;
        bytes += name;
        bytes += '\0';
    }
    return bytes;
}

std::uint64_t modified(const fs::path& path) {
    struct stat s = {};
    if (::stat(path.c_str(), &s) != 0) throw Fault(errors::fileNotFound);
    std::tm local = {};
    if (::localtime_r(&s.st_mtime, &local) == nullptr) throw Fault(errors::invalidCall);
    return static_cast<std::uint64_t>(std::max<std::time_t>(::timegm(&local), 0));
}

DiskAnswer done(const std::string& folder, const DiskOrder& order) {
    const fs::path path = inside(folder, order.path);
    DiskAnswer a;
    switch (order.what) {
    case What::Look:
        return look(path);
    case What::Read:
        a.bytes = read(path);
        break;
    case What::Write:
        write(path, order.bytes, std::ios::trunc);
        break;
    case What::Append:
        write(path, order.bytes, std::ios::app);
        break;
    case What::Copy:
    case What::CopyOver:
    case What::Move:
        copy(path, inside(folder, order.to), order.what);
        break;
    case What::RemoveFile:
    case What::RemoveFolder:
        remove(path, folder, order.what);
        break;
    case What::MakeFolder:
        makeFolder(path);
        break;
    case What::List:
        a.bytes = list(path, folder);
        break;
    case What::Modified:
        a.size = modified(path);
        break;
    case What::MoveFolder:
        moveFolder(path, inside(folder, order.to), folder);
        break;
    }
    return a;
}

} // namespace

DiskAnswer FolderDisk::ask(const DiskOrder& order) {
    try {
        return done(folder_, order);
    } catch (const Fault& f) {
        return {.fault = f.number};
    }
}

} // namespace vbscript
