// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/library/files.h"
#include "vbscript/surroundings/errors.h"
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
class Entry : public Object {
  public:
    Entry(std::shared_ptr<Disk> disk, std::string path)
        : disk_(std::move(disk)), path_(std::move(path)) {
        account_.grow(path_.size(), 7);
        charged_ = path_.size();
    }
    ~Entry() override { account_.shrink(charged_); }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override;

  protected:
    virtual Value size(Runtime& rt) = 0;
    [[nodiscard]] virtual int attributes() const = 0;
    /// Members of its own; whatever is left over is error 438.
    virtual void act(Runtime& rt, Word m, std::span<Value> args, Value& result) = 0;
    virtual void moveTo(Runtime& rt, const std::string& path) = 0;

    [[nodiscard]] Disk& disk() const { return *disk_; }
    [[nodiscard]] const std::shared_ptr<Disk>& sharedDisk() const { return disk_; }
    [[nodiscard]] const std::string& path() const { return path_; }
    /// Behind "to\" the name stays.
    [[nodiscard]] std::string target(Runtime& rt, std::span<Value> args) const {
        if (args.empty() || args.size() > 2) throw Fault(errors::wrongArguments);
        const std::string to = toText(rt, args[0]).utf8();
        const bool folder = !to.empty() && (to.back() == '\\' || to.back() == '/');
        return folder ? to + lastPart(path_) : to; // as it is: the disk refuses what leads out
    }
    void isNow(std::string_view path) { path_ = absolutePath(path); }

  private:
    bool property(Runtime& rt, Word m, Value& result);

    std::shared_ptr<Disk> disk_;
    std::string path_;
    Memory& account_ = Memory::current();
    std::size_t charged_ = 0;
};

bool Entry::property(Runtime& rt, Word m, Value& result) {
    switch (m) {
    case Word::Path:
    case Word::ShortPath:
        result = Value::text(path_);
        return true;
    case Word::Name:
    case Word::ShortName:
        result = Value::text(lastPart(path_));
        return true;
    case Word::Drive:
        result = Value::string({});
        return true;
    case Word::ParentFolder:
        result = path_ == "\\" ? Value::nothing()
                               : makeFolder(rt, disk_, absolutePath(parentPart(path_)));
        return true;
    case Word::Size:
        result = size(rt);
        return true;
    case Word::Attributes:
        result = Value::longint(attributes());
        return true;
    case Word::DateLastModified:
    case Word::DateLastAccessed:
    case Word::DateCreated: {
        const auto seconds =
            static_cast<std::int64_t>(asked(rt, *disk_, {What::Modified, path_}).size);
        result = Value::date(joinTime(dayNumber(1970, 1, 1) + seconds / 86400, seconds % 86400));
        return true;
    }
    default:
        return false;
    }
}

void Entry::access(Runtime& rt, Atom member, Access how, std::span<Value> args, Value& result) {
    const Word m = member == 0 ? Word::Path : wordOf(member);
    if (how == Access::Set || (how == Access::Let && m != Word::Name))
        throw Fault(errors::noSuchMember);
    if (how == Access::Let) {
        if (args.size() != 1) throw Fault(errors::wrongArguments);
        const std::string name = toText(rt, args[0]).utf8();
        if (name.empty() || name.find_first_of("\\/") != std::string::npos)
            throw Fault(errors::invalidCall);
        return moveTo(rt, below(parentPart(path_), name));
    }
    if (!property(rt, m, result)) return act(rt, m, args, result);
    if (!args.empty()) throw Fault(errors::wrongArguments);
}

class FileObject final : public Entry {
  public:
    using Entry::Entry;
    [[nodiscard]] std::string typeName() const override { return "File"; }

  private:
    Value size(Runtime& rt) override {
        const DiskAnswer a = asked(rt, disk(), {What::Look, path()});
        if (a.kind != Kind::File) throw Fault(errors::fileNotFound);
        return Value::number(static_cast<double>(a.size));
    }
    [[nodiscard]] int attributes() const override { return 32; } // to be archived
    void moveTo(Runtime& rt, const std::string& to) override {
        asked(rt, disk(), {What::Move, path(), to});
        isNow(to);
    }
    void act(Runtime& rt, Word m, std::span<Value> args, Value& result) override;
};

void FileObject::act(Runtime& rt, Word m, std::span<Value> args, Value& result) {
    switch (m) {
    case Word::Copy: {
        const bool over = !given(args, 1) || toBool(rt, args[1]);
        asked(rt, disk(), {over ? What::CopyOver : What::Copy, path(), target(rt, args)});
        return;
    }
    case Word::Move:
        return moveTo(rt, target(rt, args));
    case Word::Delete:
        if (args.size() > 1) throw Fault(errors::wrongArguments);
        asked(rt, disk(), {What::RemoveFile, path()});
        return;
    case Word::OpenAsTextStream:
        if (args.size() > 2) throw Fault(errors::wrongArguments);
        result = openAs(rt, sharedDisk(), path(), numberArg(rt, args, 0, 1), false,
                        numberArg(rt, args, 1, 0) == -1);
        return;
    default:
        throw Fault(errors::noSuchMember);
    }
}

/// What was in a folder when it was asked for: Count, Item (default) by name, For Each.
class Entries final : public Object {
  public:
    Entries(std::shared_ptr<Disk> disk, std::string folder, bool folders, Value all)
        : disk_(std::move(disk)), folder_(std::move(folder)), folders_(folders),
          all_(std::move(all)) {}
    [[nodiscard]] std::string typeName() const override { return folders_ ? "Folders" : "Files"; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override {
        const Word m = member == 0 ? Word::Item : wordOf(member);
        if (how == Access::Let || how == Access::Set) throw Fault(errors::noSuchMember);
        if (m != Word::Count && m != Word::Item) throw Fault(errors::noSuchMember);
        if (args.size() != (m == Word::Item ? 1U : 0U)) throw Fault(errors::wrongArguments);
        if (m == Word::Count) {
            result = Value::longint(static_cast<std::int64_t>(all_.a->items.size()));
            return;
        }
        const std::string path = below(folder_, toText(rt, args[0]).utf8());
        result = folders_ ? makeFolder(rt, disk_, path) : makeFile(rt, disk_, path);
    }
    bool elements(Runtime&, Value& list) override {
        list = all_;
        return true;
    }

  private:
    std::shared_ptr<Disk> disk_;
    std::string folder_;
    bool folders_;
    Value all_;
};

class FolderObject final : public Entry {
  public:
    using Entry::Entry;
    [[nodiscard]] std::string typeName() const override { return "Folder"; }

  private:
    Value size(Runtime& rt) override { return Value::number(sizeOf(rt, path(), deepest)); }
    [[nodiscard]] int attributes() const override { return 16; }
    void moveTo(Runtime& rt, const std::string& to) override {
        asked(rt, disk(), {What::MoveFolder, path(), to});
        isNow(to);
    }
    void act(Runtime& rt, Word m, std::span<Value> args, Value& result) override;
    template <class Each>
    void list(Runtime& rt, const std::string& folder, Each each) const;
    double sizeOf(Runtime& rt, const std::string& folder, int levels) const;
    [[nodiscard]] Value entries(Runtime& rt, bool folders) const;
};

/// Calls each(name, whether it is a folder).
template <class Each>
void FolderObject::list(Runtime& rt, const std::string& folder, Each each) const {
    const std::string bytes = asked(rt, disk(), {What::List, folder}).bytes;
    for (std::size_t at = 0; at < bytes.size();) {
        const std::size_t end = std::min(bytes.find('\0', at), bytes.size());
        each(std::string_view(bytes).substr(at + 1, end - at - 1), bytes[at] == 'd');
        at = end + 1;
    }
}

double FolderObject::sizeOf(Runtime& rt, const std::string& folder, int levels) const {
    double all = 0;
    list(rt, folder, [&](std::string_view name, bool isFolder) {
        const std::string path = below(folder, name);
        if (isFolder && levels > 0) all += sizeOf(rt, path, levels - 1);
        if (!isFolder) all += static_cast<double>(asked(rt, disk(), {What::Look, path}).size);
    });
    return all;
}

Value FolderObject::entries(Runtime& rt, bool folders) const {
    std::vector<Value> all;
    list(rt, path(), [&](std::string_view name, bool isFolder) {
        if (isFolder != folders) return;
        const std::string at = below(path(), name);
        all.push_back(isFolder ? Value::object(new FolderObject(sharedDisk(), at))
                               : Value::object(new FileObject(sharedDisk(), at)));
    });
    rt.spend(all.size() * 100);
    return Value::object(new Entries(sharedDisk(), path(), folders, arrayOf(std::move(all))));
}

void FolderObject::act(Runtime& rt, Word m, std::span<Value> args, Value& result) {
    switch (m) {
    case Word::Files:
    case Word::SubFolders:
        result = entries(rt, m == Word::SubFolders);
        if (!args.empty()) Value(result).o->access(rt, 0, Access::Get, args, result);
        return;
    case Word::IsRootFolder:
        if (!args.empty()) throw Fault(errors::wrongArguments);
        result = Value::boolean(path() == "\\");
        return;
    case Word::Move:
        return moveTo(rt, target(rt, args));
    case Word::Delete:
        if (args.size() > 1) throw Fault(errors::wrongArguments);
        asked(rt, disk(), {What::RemoveFolder, path()});
        return;
    case Word::CreateTextFile: {
        if (args.empty() || args.size() > 3) throw Fault(errors::wrongArguments);
        const std::string at = below(path(), toText(rt, args[0]).utf8());
        const bool over = !given(args, 1) || toBool(rt, args[1]);
        const bool there = asked(rt, disk(), {What::Look, at}).kind != Kind::Nothing;
        if (there && !over) throw Fault(errors::fileExists);
        const bool unicode = given(args, 2) && toBool(rt, args[2]);
        result = openTextStream(rt, sharedDisk(), at, FileMode::Write, unicode, 0);
        return;
    }
    default:
        throw Fault(errors::noSuchMember);
    }
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
