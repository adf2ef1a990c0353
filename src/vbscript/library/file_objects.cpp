// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/library/files.h"
#include "vbscript/library/members.h"
#include "vbscript/values/calendar.h"
#include "vbscript/values/convert.h"

#include <utility>

// File, Folder and their collections: a path each, about which the disk is asked at every question.

namespace vbscript {

namespace {

using What = DiskOrder::What;
using Kind = DiskAnswer::Kind;

constexpr int deepest = 100; // folders below one whose size is asked for

std::string below(const std::string& folder, std::string_view name) {
    return absolutePath(folder + '\\' + std::string(name));
}

/// What File and Folder share.
class Entry : public Native<Entry> {
  public:
    Entry(std::shared_ptr<Disk> disk, std::string path)
        : disk_(std::move(disk)), path_(std::move(path)) {
        account_.grow(path_.size());
        charged_ = path_.size();
    }
    ~Entry() override { account_.shrink(charged_); }
    static Members<Entry> members();

  protected:
    virtual Value size(Runtime& rt, Arguments none) = 0;
    virtual Value attributes(Runtime& rt, Arguments none) = 0;
    virtual void moveTo(Runtime& rt, const std::string& path) = 0;

    [[nodiscard]] Disk& disk() const { return *disk_; }
    [[nodiscard]] const std::shared_ptr<Disk>& sharedDisk() const { return disk_; }
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Behind "to\" the name stays.
    [[nodiscard]] std::string target(Runtime& rt, Arguments args) const {
        const std::string to = toText(rt, args[0]).utf8();
        const bool folder = !to.empty() && (to.back() == '\\' || to.back() == '/');
        return folder ? to + lastPart(path_) : to; // as it is: the disk refuses what leads out
    }
    void isNow(std::string_view path) { path_ = absolutePath(path); }

  private:
    Value move(Runtime& rt, Arguments args) {
        moveTo(rt, target(rt, args));
        return {};
    }
    Value wholePath(Runtime& /*rt*/, Arguments /*none*/) { return Value::text(path_); }
    Value name(Runtime& /*rt*/, Arguments /*none*/) { return Value::text(lastPart(path_)); }
    void rename(Runtime& rt, Arguments args);
    Value drive(Runtime& /*rt*/, Arguments /*none*/) { return Value::string({}); }
    Value parentFolder(Runtime& rt, Arguments none);
    Value modified(Runtime& rt, Arguments none);

    std::shared_ptr<Disk> disk_;
    std::string path_;
    Memory& account_ = Memory::current();
    std::size_t charged_ = 0;
};

Members<Entry> Entry::members() {
    static constexpr MemberOf<Entry> all[] = {
        {Word::Path, {0, 0}, &Entry::wholePath},
        {Word::Name, {0, 0}, &Entry::name, &Entry::rename},
        {Word::Size, {0, 0}, &Entry::size},
        {Word::DateLastModified, {0, 0}, &Entry::modified},
        {Word::DateLastAccessed, {0, 0}, &Entry::modified},
        {Word::DateCreated, {0, 0}, &Entry::modified},
        {Word::Move, {1, 1}, &Entry::move},
        {Word::ParentFolder, {0, 0}, &Entry::parentFolder},
        {Word::Attributes, {0, 0}, &Entry::attributes},
        {Word::Drive, {0, 0}, &Entry::drive},
        {Word::ShortPath, {0, 0}, &Entry::wholePath},
        {Word::ShortName, {0, 0}, &Entry::name},
    };
    return {Word::Path, all};
}

void Entry::rename(Runtime& rt, Arguments args) {
    const std::string name = toText(rt, args[0]).utf8();
    if (name.empty() || name.find_first_of("\\/") != std::string::npos)
        throw Fault(errors::invalidCall);
    moveTo(rt, below(parentPart(path_), name));
}

Value Entry::parentFolder(Runtime& rt, Arguments /*none*/) {
    if (path_ == "\\") return Value::nothing();
    return makeFolder(rt, disk_, absolutePath(parentPart(path_)));
}

Value Entry::modified(Runtime& rt, Arguments /*none*/) {
    const auto seconds = static_cast<std::int64_t>(asked(rt, *disk_, {What::Modified, path_}).size);
    return Value::date(joinTime(dayNumber(1970, 1, 1) + seconds / 86400, seconds % 86400));
}

class FileObject final : public Native<FileObject, Entry> {
  public:
    using Native::Native;
    [[nodiscard]] std::string typeName() const override { return "File"; }
    static Members<FileObject> members() {
        static constexpr MemberOf<FileObject> all[] = {
            {Word::OpenAsTextStream, {0, 2}, &FileObject::openAsTextStream},
            {Word::Copy, {1, 2}, &FileObject::copy},
            {Word::Delete, {0, 1}, &FileObject::remove},
        };
        return {Word::None, all};
    }

  private:
    Value size(Runtime& rt, Arguments /*none*/) override {
        const DiskAnswer a = asked(rt, disk(), {What::Look, path()});
        if (a.kind != Kind::File) throw Fault(errors::fileNotFound);
        return Value::number(static_cast<double>(a.size));
    }
    Value attributes(Runtime& /*rt*/, Arguments /*none*/) override {
        return Value::longint(32); // to be archived
    }
    void moveTo(Runtime& rt, const std::string& to) override {
        asked(rt, disk(), {What::Move, path(), to});
        isNow(to);
    }
    Value openAsTextStream(Runtime& rt, Arguments args) {
        return openAs(rt, sharedDisk(), path(), numberArg(rt, args, 0, 1), false,
                      numberArg(rt, args, 1, 0) == -1);
    }
    Value copy(Runtime& rt, Arguments args) {
        const bool over = !given(args, 1) || toBool(rt, args[1]);
        asked(rt, disk(), {over ? What::CopyOver : What::Copy, path(), target(rt, args)});
        return {};
    }
    Value remove(Runtime& rt, Arguments /*force*/) {
        asked(rt, disk(), {What::RemoveFile, path()});
        return {};
    }
};

/// What was in a folder when it was asked for: Count, Item (default) by name, For Each.
class Entries final : public Native<Entries> {
  public:
    Entries(std::shared_ptr<Disk> disk, std::string folder, bool folders, Value all)
        : disk_(std::move(disk)), folder_(std::move(folder)), folders_(folders),
          all_(std::move(all)) {}
    [[nodiscard]] std::string typeName() const override { return folders_ ? "Folders" : "Files"; }
    static Members<Entries> members() {
        static constexpr MemberOf<Entries> all[] = {
            {Word::Item, {1, 1}, &Entries::item},
            {Word::Count, {0, 0}, &Entries::count},
        };
        return {Word::Item, all};
    }
    bool elements(Runtime&, Value& list) override {
        list = all_;
        return true;
    }

  private:
    Value item(Runtime& rt, Arguments args) {
        const std::string path = below(folder_, toText(rt, args[0]).utf8());
        return folders_ ? makeFolder(rt, disk_, path) : makeFile(rt, disk_, path);
    }
    Value count(Runtime& /*rt*/, Arguments /*none*/) {
        return Value::longint(static_cast<std::int64_t>(all_.a->items.size()));
    }

    std::shared_ptr<Disk> disk_;
    std::string folder_;
    bool folders_;
    Value all_;
};

class FolderObject final : public Native<FolderObject, Entry> {
  public:
    using Native::Native;
    [[nodiscard]] std::string typeName() const override { return "Folder"; }
    static Members<FolderObject> members() {
        using F = FolderObject;
        static constexpr MemberOf<F> all[] = {
            {Word::Files, {0, 1}, &F::list<false>},
            {Word::SubFolders, {0, 1}, &F::list<true>},
            {Word::CreateTextFile, {1, 3}, &F::createTextFile},
            {Word::Delete, {0, 1}, &F::remove},
            {Word::IsRootFolder, {0, 0}, &F::isRootFolder},
        };
        return {Word::None, all};
    }

  private:
    Value size(Runtime& rt, Arguments /*none*/) override {
        return Value::number(sizeOf(rt, path(), deepest));
    }
    Value attributes(Runtime& /*rt*/, Arguments /*none*/) override { return Value::longint(16); }
    void moveTo(Runtime& rt, const std::string& to) override {
        asked(rt, disk(), {What::MoveFolder, path(), to});
        isNow(to);
    }
    template <bool Folders>
    Value list(Runtime& rt, Arguments args) {
        Value result = entries(rt, Folders);
        if (!args.empty()) Value(result).o->access(rt, 0, Access::Get, args, result);
        return result;
    }
    Value createTextFile(Runtime& rt, Arguments args);
    Value remove(Runtime& rt, Arguments /*force*/) {
        asked(rt, disk(), {What::RemoveFolder, path()});
        return {};
    }
    Value isRootFolder(Runtime& /*rt*/, Arguments /*none*/) {
        return Value::boolean(path() == "\\");
    }
    template <class Each>
    void every(Runtime& rt, const std::string& folder, Each each) const;
    double sizeOf(Runtime& rt, const std::string& folder, int levels) const;
    [[nodiscard]] Value entries(Runtime& rt, bool folders) const;
};

/// Calls each(name, whether it is a folder).
template <class Each>
void FolderObject::every(Runtime& rt, const std::string& folder, Each each) const {
    const std::string bytes = asked(rt, disk(), {What::List, folder}).bytes;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\0', at), bytes.size());
        each(std::string_view(bytes).substr(at + 1, end - at - 1), bytes[at] == 'd');
        at = end + 1;
    }
}

double FolderObject::sizeOf(Runtime& rt, const std::string& folder, int levels) const {
    double all = 0;
    every(rt, folder, [&](std::string_view name, bool isFolder) {
        const std::string path = below(folder, name);
        if (isFolder && levels > 0) all += sizeOf(rt, path, levels - 1);
        if (!isFolder) all += static_cast<double>(asked(rt, disk(), {What::Look, path}).size);
    });
    return all;
}

Value FolderObject::entries(Runtime& rt, bool folders) const {
    std::vector<Value> all;
    every(rt, path(), [&](std::string_view name, bool isFolder) {
        if (isFolder != folders) return;
        const std::string at = below(path(), name);
        all.push_back(isFolder ? Value::object(new FolderObject(sharedDisk(), at))
                               : Value::object(new FileObject(sharedDisk(), at)));
    });
    rt.spend(all.size() * 100);
    return Value::object(new Entries(sharedDisk(), path(), folders, arrayOf(std::move(all))));
}

Value FolderObject::createTextFile(Runtime& rt, Arguments args) {
    const std::string at = below(path(), toText(rt, args[0]).utf8());
    const bool over = !given(args, 1) || toBool(rt, args[1]);
    const bool there = asked(rt, disk(), {What::Look, at}).kind != Kind::Nothing;
    if (there && !over) throw Fault(errors::fileExists);
    const bool unicode = given(args, 2) && toBool(rt, args[2]);
    return openTextStream(rt, sharedDisk(), at, FileMode::Write, unicode, 0);
}

} // namespace

Value makeFile(Runtime& rt, std::shared_ptr<Disk> disk, std::string_view path) {
    const std::string at = absolutePath(path);
    if (asked(rt, *disk, {What::Look, std::string(path)}).kind != Kind::File)
        throw Fault(errors::fileNotFound);
    return Value::object(new FileObject(std::move(disk), at));
}

Value makeFolder(Runtime& rt, std::shared_ptr<Disk> disk, std::string_view path) {
    const std::string at = absolutePath(path);
    if (asked(rt, *disk, {What::Look, std::string(path)}).kind != Kind::Folder)
        throw Fault(errors::pathNotFound);
    return Value::object(new FolderObject(std::move(disk), at));
}

} // namespace vbscript
