#include "script/vbscript/files.h"

#include "script/vbscript/builtins.h"
#include "script/vbscript/convert.h"
#include "script/vbscript/text.h"

#include <algorithm>
#include <filesystem>

namespace vbscript {

namespace {

namespace fs = std::filesystem;

std::string lastPart(const std::string& path) {
    const std::size_t at = path.find_last_of("\\/");
    return at == std::string::npos ? path : path.substr(at + 1);
}

std::string parentPart(const std::string& path) {
    const std::size_t at = path.find_last_of("\\/");
    return at == std::string::npos ? std::string() : path.substr(0, at);
}

class FileSystem : public Object {
  public:
    explicit FileSystem(std::string folder) : folder_(std::move(folder)) {}
    [[nodiscard]] std::string typeName() const override { return "FileSystemObject"; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override;

  private:
    [[nodiscard]] fs::path inside(const std::string& path) const;
    bool names(Runtime& rt, Word m, std::span<Value> args, Value& result) const;
    void act(Runtime& rt, Word m, std::span<Value> args, Value& result) const;
    Value open(Runtime& rt, std::span<Value> args) const;
    Value create(Runtime& rt, std::span<Value> args) const;
    void copy(const std::string& from, const std::string& to, bool overwrite, bool move) const;
    void remove(const std::string& path, bool folder) const;
    void makeFolder(const std::string& path) const;

    std::string folder_;
};

// Links are followed before the check: one that leads out of the folder is as foreign as "..".
fs::path FileSystem::inside(const std::string& given) const {
    std::string path = given;
    std::replace(path.begin(), path.end(), '\\', '/');
    if (path.find('\0') != std::string::npos || path.size() > 1000) throw Fault(52);
    if (path.size() >= 2 && path[1] == ':') path.erase(0, 2);
    path.erase(0, path.find_first_not_of('/') == std::string::npos ? path.size()
                                                                   : path.find_first_not_of('/'));
    std::error_code bad;
    const fs::path root = fs::weakly_canonical(folder_, bad);
    if (bad) throw Fault(76);
    fs::path full = fs::weakly_canonical(root / path, bad);
    if (bad) throw Fault(52);
    const auto [end, rest] = std::mismatch(root.begin(), root.end(), full.begin(), full.end());
    if (end != root.end() && !(end->empty() && std::next(end) == root.end())) throw Fault(70);
    return full;
}

bool FileSystem::names(Runtime& rt, Word m, std::span<Value> args, Value& result) const {
    if (m == Word::BuildPath) {
        if (args.size() != 2) throw Fault(450);
        std::string base = toText(rt, args[0]).utf8();
        const std::string name = toText(rt, args[1]).utf8();
        if (!base.empty() && base.back() != '\\' && base.back() != '/') base += '\\';
        result = Value::text(base + name);
        return true;
    }
    const bool known = m == Word::GetParentFolderName || m == Word::GetFileName ||
                       m == Word::GetBaseName || m == Word::GetExtensionName ||
                       m == Word::GetAbsolutePathName;
    if (!known) return false;
    if (args.size() != 1) throw Fault(450);
    const std::string path = toText(rt, args[0]).utf8();
    const std::string last = lastPart(path);
    const std::size_t dot = last.rfind('.');
    std::string r = path;
    if (m == Word::GetParentFolderName) r = parentPart(path);
    if (m == Word::GetFileName) r = last;
    if (m == Word::GetBaseName) r = last.substr(0, dot);
    if (m == Word::GetExtensionName) r = dot == std::string::npos ? "" : last.substr(dot + 1);
    result = Value::text(r);
    return true;
}

Value FileSystem::open(Runtime& rt, std::span<Value> args) const {
    const std::int64_t mode = numberArg(rt, args, 1, 1);
    const bool createIt = given(args, 2) && toBool(rt, args[2]);
    const bool unicode = numberArg(rt, args, 3, 0) == -1;
    if (mode != 1 && mode != 2 && mode != 8) throw Fault(5);
    const fs::path path = inside(toText(rt, args[0]).utf8());
    std::error_code bad;
    if (!fs::exists(path, bad) && !createIt) throw Fault(53);
    return openTextStream(path.string(),
                          mode == 1 && !fs::exists(path, bad) ? FileMode::Append
                                                              : static_cast<FileMode>(mode),
                          unicode);
}

Value FileSystem::create(Runtime& rt, std::span<Value> args) const {
    const fs::path path = inside(toText(rt, args[0]).utf8());
    const bool overwrite = !given(args, 1) || toBool(rt, args[1]);
    const bool unicode = given(args, 2) && toBool(rt, args[2]);
    std::error_code bad;
    if (!overwrite && fs::exists(path, bad)) throw Fault(58);
    return openTextStream(path.string(), FileMode::Write, unicode);
}

void FileSystem::copy(const std::string& from, const std::string& to, bool overwrite,
                      bool move) const {
    std::error_code bad;
    const fs::path source = inside(from);
    fs::path target = inside(to);
    if (!fs::is_regular_file(source, bad)) throw Fault(53);
    if (fs::is_directory(target, bad)) target /= source.filename();
    if (!overwrite && fs::exists(target, bad)) throw Fault(58);
    if (!fs::is_directory(target.parent_path(), bad)) throw Fault(76);
    if (move)
        fs::rename(source, target, bad);
    else
        fs::copy_file(source, target, fs::copy_options::overwrite_existing, bad);
    if (bad) throw Fault(70);
}

void FileSystem::remove(const std::string& given, bool folder) const {
    std::error_code bad;
    const fs::path path = inside(given);
    if (folder ? !fs::is_directory(path, bad) : !fs::is_regular_file(path, bad))
        throw Fault(folder ? 76 : 53);
    if (fs::equivalent(path, folder_, bad)) throw Fault(70);
    // Only an empty folder: a slip of a script shall not take a year of reports with it.
    fs::remove(path, bad);
    if (bad) throw Fault(70);
}

void FileSystem::makeFolder(const std::string& given) const {
    std::error_code bad;
    const fs::path path = inside(given);
    if (fs::exists(path, bad)) throw Fault(58);
    if (!fs::create_directory(path, bad) || bad) throw Fault(76);
}

void FileSystem::act(Runtime& rt, Word m, std::span<Value> args, Value& result) const {
    const std::string first = toText(rt, args[0]).utf8();
    std::error_code bad;
    switch (m) {
    case Word::FileExists:
        result = Value::boolean(fs::is_regular_file(inside(first), bad));
        return;
    case Word::FolderExists:
        result = Value::boolean(fs::is_directory(inside(first), bad));
        return;
    case Word::CreateFolder:
        makeFolder(first);
        result = Value::text(first);
        return;
    case Word::OpenTextFile:
        result = open(rt, args);
        return;
    case Word::CreateTextFile:
        result = create(rt, args);
        return;
    case Word::DeleteFile:
        remove(first, false);
        return;
    case Word::DeleteFolder:
        remove(first, true);
        return;
    case Word::CopyFile:
    case Word::MoveFile:
        if (args.size() < 2) throw Fault(450);
        copy(first, toText(rt, args[1]).utf8(),
             m == Word::CopyFile && (!given(args, 2) || toBool(rt, args[2])), m == Word::MoveFile);
        return;
    default:
        throw Fault(438);
    }
}

void FileSystem::access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                        Value& result) {
    if (how == Access::Let || how == Access::Set || member == 0) throw Fault(438);
    if (names(rt, wordOf(member), args, result)) return;
    if (args.empty() || args.size() > 4) throw Fault(member > atomOf(Word::Close) ? 438 : 450);
    act(rt, wordOf(member), args, result);
}

} // namespace

Value makeFileSystem(std::string folder) {
    return Value::object(new FileSystem(std::move(folder)));
}

} // namespace vbscript
