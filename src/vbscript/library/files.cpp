// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/files.h"

#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <algorithm>
#include <utility>

namespace vbscript {

namespace {

using What = DiskOrder::What;
using Kind = DiskAnswer::Kind;

class FileSystem : public Object {
  public:
    explicit FileSystem(std::shared_ptr<Disk> disk) : disk_(std::move(disk)) {}
    [[nodiscard]] std::string typeName() const override { return "FileSystemObject"; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override;

  private:
    bool names(Runtime& rt, Word m, std::span<Value> args, Value& result) const;
    void act(Runtime& rt, Word m, std::span<Value> args, Value& result) const;
    Value open(Runtime& rt, std::span<Value> args) const;
    Value create(Runtime& rt, std::span<Value> args) const;
    [[nodiscard]] DiskAnswer::Kind kind(Runtime& rt, const std::string& path) const {
        return asked(rt, *disk_, {What::Look, path}).kind;
    }

    std::shared_ptr<Disk> disk_;
};

bool FileSystem::names(Runtime& rt, Word m, std::span<Value> args, Value& result) const {
    if (m == Word::BuildPath) {
        if (args.size() != 2) throw Fault(errors::wrongArguments);
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
    if (args.size() != 1) throw Fault(errors::wrongArguments);
    const std::string path = toText(rt, args[0]).utf8();
    const std::string last = lastPart(path);
    const std::size_t dot = last.rfind('.');
    std::string r = path;
    if (m == Word::GetParentFolderName) r = parentPart(path);
    if (m == Word::GetFileName) r = last;
    if (m == Word::GetBaseName) r = last.substr(0, dot);
    if (m == Word::GetAbsolutePathName) r = absolutePath(path);
    if (m == Word::GetExtensionName) r = dot == std::string::npos ? "" : last.substr(dot + 1);
    result = Value::text(r);
    return true;
}

Value FileSystem::open(Runtime& rt, std::span<Value> args) const {
    const std::int64_t mode = numberArg(rt, args, 1, 1);
    const bool createIt = given(args, 2) && toBool(rt, args[2]);
    const bool unicode = numberArg(rt, args, 3, 0) == -1;
    return openAs(rt, disk_, toText(rt, args[0]).utf8(), mode, createIt, unicode);
}

Value FileSystem::create(Runtime& rt, std::span<Value> args) const {
    const std::string path = toText(rt, args[0]).utf8();
    const bool overwrite = !given(args, 1) || toBool(rt, args[1]);
    const bool unicode = given(args, 2) && toBool(rt, args[2]);
    if (!overwrite && kind(rt, path) != Kind::Nothing) throw Fault(errors::fileExists);
    return openTextStream(rt, disk_, path, FileMode::Write, unicode, 0);
}

void FileSystem::act(Runtime& rt, Word m, std::span<Value> args, Value& result) const {
    const std::string first = toText(rt, args[0]).utf8();
    switch (m) {
    case Word::FileExists:
        result = Value::boolean(kind(rt, first) == Kind::File);
        return;
    case Word::FolderExists:
        result = Value::boolean(kind(rt, first) == Kind::Folder);
        return;
    case Word::CreateFolder:
        asked(rt, *disk_, {What::MakeFolder, first});
        result = makeFolder(rt, disk_, first);
        return;
    case Word::GetFile:
        result = makeFile(rt, disk_, first);
        return;
    case Word::GetFolder:
        result = makeFolder(rt, disk_, first);
        return;
    case Word::OpenTextFile:
        result = open(rt, args);
        return;
    case Word::CreateTextFile:
        result = create(rt, args);
        return;
    case Word::DeleteFile:
        asked(rt, *disk_, {What::RemoveFile, first});
        return;
    case Word::DeleteFolder:
        asked(rt, *disk_, {What::RemoveFolder, first});
        return;
    case Word::CopyFile:
    case Word::MoveFile: {
        if (args.size() < 2) throw Fault(errors::wrongArguments);
        const bool over = !given(args, 2) || toBool(rt, args[2]);
        const What what = m == Word::MoveFile ? What::Move : over ? What::CopyOver : What::Copy;
        asked(rt, *disk_, {what, first, toText(rt, args[1]).utf8()});
        return;
    }
    default:
        throw Fault(errors::noSuchMember);
    }
}

void FileSystem::access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                        Value& result) {
    if (how == Access::Let || how == Access::Set || member == 0) throw Fault(errors::noSuchMember);
    if (names(rt, wordOf(member), args, result)) return;
    if (args.empty() || args.size() > 4)
        throw Fault(member > atomOf(Word::Close) ? errors::noSuchMember : errors::wrongArguments);
    act(rt, wordOf(member), args, result);
}

} // namespace

Value makeFileSystem(std::shared_ptr<Disk> disk) {
    return Value::object(new FileSystem(std::move(disk)));
}

std::string lastPart(const std::string& path) {
    const std::size_t at = path.find_last_of("\\/");
    return at == std::string::npos ? path : path.substr(at + 1);
}

std::string parentPart(const std::string& path) {
    const std::size_t at = path.find_last_of("\\/");
    return at == std::string::npos ? std::string() : path.substr(0, at);
}

std::string absolutePath(std::string_view path) {
    if (path.size() >= 2 && path[1] == ':') path.remove_prefix(2);
    std::string all;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find_first_of("\\/"), path.size());
        const std::string_view part = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (part == "..")
            all = parentPart(all);
        else if (!part.empty() && part != ".")
            all.append("\\").append(part);
    }
    return all.empty() ? "\\" : all;
}

Value openAs(Runtime& rt, std::shared_ptr<Disk> disk, const std::string& path, std::int64_t mode,
             bool createIt, bool unicode) {
    if (mode != 1 && mode != 2 && mode != 8) throw Fault(errors::invalidCall);
    const DiskAnswer before = asked(rt, *disk, {What::Look, path});
    const bool isNew = before.kind == Kind::Nothing;
    if (isNew && !createIt) throw Fault(errors::fileNotFound);
    const auto how = mode == 1 && isNew ? FileMode::Append : static_cast<FileMode>(mode);
    return openTextStream(rt, std::move(disk), path, how, unicode, before.size);
}

DiskAnswer asked(Runtime& rt, Disk& disk, const DiskOrder& order) {
    rt.checkTime(); // whatever it costs on this machine, it is not known beforehand
    rt.spend(order.bytes.size());
    DiskAnswer a = disk.ask(order);
    if (a.fault != 0) throw Fault(a.fault);
    rt.spend(a.bytes.size());
    return a;
}

} // namespace vbscript
