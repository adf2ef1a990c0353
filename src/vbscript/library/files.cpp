// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/files.h"

#include "vbscript/library/builtins.h"
#include "vbscript/library/members.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <algorithm>
#include <utility>

namespace vbscript {

namespace {

using What = DiskOrder::What;
using Kind = DiskAnswer::Kind;

std::string textArg(Runtime& rt, Arguments args, std::size_t k) {
    return toText(rt, args[k]).utf8();
}

class FileSystem : public Native<FileSystem> {
  public:
    explicit FileSystem(std::shared_ptr<Disk> disk) : disk_(std::move(disk)) {}
    [[nodiscard]] std::string typeName() const override { return "FileSystemObject"; }
    static Members<FileSystem> members();

  private:
    using NameOf = std::string (*)(const std::string& path);
    template <NameOf Of>
    Value named(Runtime& rt, Arguments args) {
        return Value::text(Of(textArg(rt, args, 0)));
    }
    template <Kind Wanted>
    Value exists(Runtime& rt, Arguments args) {
        return Value::boolean(kind(rt, textArg(rt, args, 0)) == Wanted);
    }
    template <What Order>
    Value remove(Runtime& rt, Arguments args) {
        asked(rt, *disk_, {Order, textArg(rt, args, 0)});
        return {};
    }
    Value buildPath(Runtime& rt, Arguments args);
    Value getFile(Runtime& rt, Arguments args) { return makeFile(rt, disk_, textArg(rt, args, 0)); }
    Value getFolder(Runtime& rt, Arguments args) {
        return makeFolder(rt, disk_, textArg(rt, args, 0));
    }
    Value createFolder(Runtime& rt, Arguments args);
    Value openTextFile(Runtime& rt, Arguments args);
    Value createTextFile(Runtime& rt, Arguments args);
    Value copyFile(Runtime& rt, Arguments args);
    Value moveFile(Runtime& rt, Arguments args);
    [[nodiscard]] Kind kind(Runtime& rt, const std::string& path) const {
        return asked(rt, *disk_, {What::Look, path}).kind;
    }

    std::shared_ptr<Disk> disk_;
};

std::string baseName(const std::string& path) {
    const std::string last = lastPart(path);
    return last.substr(0, last.rfind('.'));
}

std::string extensionName(const std::string& path) {
    const std::string last = lastPart(path);
    const std::size_t dot = last.rfind('.');
    return dot == std::string::npos ? "" : last.substr(dot + 1);
}

std::string absoluteName(const std::string& path) { return absolutePath(path); }

Members<FileSystem> FileSystem::members() {
    using F = FileSystem;
    static constexpr MemberOf<F> all[] = {
        {Word::FileExists, {1, 1}, &F::exists<Kind::File>},
        {Word::OpenTextFile, {1, 4}, &F::openTextFile},
        {Word::CreateTextFile, {1, 3}, &F::createTextFile},
        {Word::FolderExists, {1, 1}, &F::exists<Kind::Folder>},
        {Word::CreateFolder, {1, 1}, &F::createFolder},
        {Word::GetFile, {1, 1}, &F::getFile},
        {Word::GetFolder, {1, 1}, &F::getFolder},
        {Word::BuildPath, {2, 2}, &F::buildPath},
        {Word::GetParentFolderName, {1, 1}, &F::named<parentPart>},
        {Word::GetFileName, {1, 1}, &F::named<lastPart>},
        {Word::GetBaseName, {1, 1}, &F::named<baseName>},
        {Word::GetExtensionName, {1, 1}, &F::named<extensionName>},
        {Word::GetAbsolutePathName, {1, 1}, &F::named<absoluteName>},
        {Word::DeleteFile, {1, 2}, &F::remove<What::RemoveFile>},
        {Word::DeleteFolder, {1, 2}, &F::remove<What::RemoveFolder>},
        {Word::CopyFile, {2, 3}, &F::copyFile},
        {Word::MoveFile, {2, 2}, &F::moveFile},
    };
    return {Word::None, all};
}

Value FileSystem::buildPath(Runtime& rt, Arguments args) {
    std::string base = textArg(rt, args, 0);
    const std::string name = textArg(rt, args, 1);
    if (!base.empty() && base.back() != '\\' && base.back() != '/') base += '\\';
    return Value::text(base + name);
}

Value FileSystem::createFolder(Runtime& rt, Arguments args) {
    const std::string path = textArg(rt, args, 0);
    asked(rt, *disk_, {What::MakeFolder, path});
    return makeFolder(rt, disk_, path);
}

Value FileSystem::openTextFile(Runtime& rt, Arguments args) {
    const std::int64_t mode = numberArg(rt, args, 1, 1);
    const bool createIt = given(args, 2) && toBool(rt, args[2]);
    const bool unicode = numberArg(rt, args, 3, 0) == -1;
    return openAs(rt, disk_, textArg(rt, args, 0), mode, createIt, unicode);
}

Value FileSystem::createTextFile(Runtime& rt, Arguments args) {
    const std::string path = textArg(rt, args, 0);
    const bool overwrite = !given(args, 1) || toBool(rt, args[1]);
    const bool unicode = given(args, 2) && toBool(rt, args[2]);
    if (!overwrite && kind(rt, path) != Kind::Nothing) throw Fault(errors::fileExists);
    return openTextStream(rt, disk_, path, FileMode::Write, unicode, 0);
}

Value FileSystem::copyFile(Runtime& rt, Arguments args) {
    const std::string from = textArg(rt, args, 0);
    const bool over = !given(args, 2) || toBool(rt, args[2]);
    asked(rt, *disk_, {over ? What::CopyOver : What::Copy, from, textArg(rt, args, 1)});
    return {};
}

Value FileSystem::moveFile(Runtime& rt, Arguments args) {
    const std::string from = textArg(rt, args, 0);
    asked(rt, *disk_, {What::Move, from, textArg(rt, args, 1)});
    return {};
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
