// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/files.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <utility>

namespace vbscript {

namespace {

using What = DiskOrder::What;

constexpr std::u16string_view lineEnd = u"\r\n";

class TextStream : public Object {
  public:
    TextStream(std::shared_ptr<Disk> disk, std::string path, bool reading, bool unicode)
        : disk_(std::move(disk)), path_(std::move(path)), reading_(reading), unicode_(unicode) {}
    ~TextStream() override { account_.shrink(charged_); }
    [[nodiscard]] std::string typeName() const override { return "TextStream"; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override;

    void open(Runtime& rt, FileMode mode, std::uint64_t size);

  private:
    void load(Runtime& rt, std::uint64_t size);
    void charge(std::uint64_t characters);
    bool read(Runtime& rt, Word m, std::span<Value> args, Value& result);
    bool write(Runtime& rt, Word m, std::span<Value> args);
    void put(Runtime& rt, std::u16string_view text);
    void append(Runtime& rt, std::string_view bytes);
    std::u16string line();
    [[nodiscard]] bool atEnd() const { return at_ >= text_.size(); }
    void close();

    std::shared_ptr<Disk> disk_;
    std::string path_;
    bool reading_;
    bool unicode_;
    bool open_ = true;
    std::u16string text_; ///< All of a file that is read.
    std::size_t at_ = 0;
    std::int64_t line_ = 1, column_ = 1;
    std::uint64_t size_ = 0; ///< Of a file that is written.
    Memory& account_ = Memory::current();
    std::size_t charged_ = 0;
};

void TextStream::open(Runtime& rt, FileMode mode, std::uint64_t size) {
    if (reading_) return load(rt, size);
    asked(rt, *disk_, {mode == FileMode::Append ? What::Append : What::Write, path_});
    size_ = mode == FileMode::Append ? size : 0;
    if (unicode_ && size_ == 0) append(rt, "\xFF\xFE");
}

void TextStream::charge(std::uint64_t characters) {
    account_.grow(characters * sizeof(char16_t), 7);
    charged_ += characters * sizeof(char16_t);
}

void TextStream::load(Runtime& rt, std::uint64_t size) {
    charge(size); // before it is held
    const std::string bytes = asked(rt, *disk_, {What::Read, path_}).bytes;
    if (bytes.size() > size) charge(bytes.size() - size);
    text_.reserve(bytes.size());
    if (unicode_) {
        for (std::size_t k = 0; k + 1 < bytes.size(); k += 2) {
            text_ += static_cast<char16_t>(static_cast<unsigned char>(bytes[k]) |
                                           static_cast<unsigned char>(bytes[k + 1]) << 8);
        }
        if (!text_.empty() && text_[0] == 0xFEFF) at_ = 1;
    } else {
        for (char c : bytes)
            text_ += fromAnsi(static_cast<unsigned char>(c));
    }
}

void TextStream::close() {
    open_ = false;
    std::u16string().swap(text_); // what is given back to the account is given back indeed
    account_.shrink(charged_);
    charged_ = 0;
}

std::u16string TextStream::line() {
    const std::size_t end = text_.find(u'\n', at_);
    std::u16string r = text_.substr(at_, end == std::u16string::npos ? end : end - at_);
    at_ = end == std::u16string::npos ? text_.size() : end + 1;
    if (!r.empty() && r.back() == '\r') r.pop_back();
    ++line_;
    column_ = 1;
    return r;
}

void TextStream::put(Runtime& rt, std::u16string_view text) {
    std::string bytes;
    for (char16_t c : text) {
        if (unicode_) {
            bytes += static_cast<char>(c & 0xFF);
            bytes += static_cast<char>(c >> 8);
        } else {
            bytes += static_cast<char>(ansiOf(c));
        }
        column_ = c == '\n' ? 1 : column_ + 1;
        if (c == '\n') ++line_;
    }
    append(rt, bytes);
}

void TextStream::append(Runtime& rt, std::string_view bytes) {
    if (size_ + bytes.size() > largestFile) throw Fault(errors::diskFull);
    asked(rt, *disk_, {What::Append, path_, {}, bytes});
    size_ += bytes.size();
}

bool TextStream::read(Runtime& rt, Word m, std::span<Value> args, Value& result) {
    if (m == Word::AtEndOfStream) {
        result = Value::boolean(atEnd());
        return true;
    }
    if (m == Word::AtEndOfLine) {
        result = Value::boolean(atEnd() || text_[at_] == '\n' || text_[at_] == '\r');
        return true;
    }
    const bool counted = m == Word::Read || m == Word::Skip;
    if (!counted && m != Word::ReadLine && m != Word::ReadAll && m != Word::SkipLine) return false;
    if (args.size() != (counted ? 1U : 0U)) throw Fault(errors::wrongArguments);
    if (atEnd()) throw Fault(errors::inputPastEnd);
    if (m == Word::ReadAll) {
        result = Value::string(std::u16string_view(text_).substr(at_));
        at_ = text_.size();
    } else if (counted) {
        const std::int64_t n = toLong(rt, args[0]);
        if (n < 0) throw Fault(errors::invalidCall);
        const auto part = std::u16string_view(text_).substr(at_, static_cast<std::size_t>(n));
        if (m == Word::Read) result = Value::string(part);
        at_ += part.size();
        column_ += static_cast<std::int64_t>(part.size());
    } else {
        const std::u16string l = line();
        if (m == Word::ReadLine) result = Value::string(l);
    }
    return true;
}

bool TextStream::write(Runtime& rt, Word m, std::span<Value> args) {
    if (m != Word::Write && m != Word::WriteLine && m != Word::WriteBlankLines) return false;
    if (args.size() > 1 || (args.empty() && m != Word::WriteLine))
        throw Fault(errors::wrongArguments);
    if (m == Word::WriteBlankLines) {
        const std::int64_t n = toLong(rt, args[0]);
        if (n < 0 || n > 100000) throw Fault(errors::invalidCall);
        std::u16string lines;
        for (std::int64_t k = 0; k < n; ++k)
            lines += lineEnd;
        put(rt, lines);
        return true;
    }
    std::u16string text;
    if (!args.empty()) text = toText(rt, args[0]).chars();
    if (m == Word::WriteLine) text += lineEnd;
    put(rt, text);
    return true;
}

void TextStream::access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                        Value& result) {
    if (how == Access::Let || how == Access::Set) throw Fault(errors::noSuchMember);
    const Word m = wordOf(member);
    if (m == Word::Close) {
        close();
        return;
    }
    if (!open_) throw Fault(errors::badFileName);
    if (m == Word::Line) {
        result = Value::longint(line_);
    } else if (m == Word::Column) {
        result = Value::longint(column_);
    } else if (reading_) {
        if (!read(rt, m, args, result)) {
            throw Fault(m == Word::Write || m == Word::WriteLine || m == Word::WriteBlankLines
                            ? errors::badFileMode
                            : errors::noSuchMember);
        }
    } else if (!write(rt, m, args)) {
        throw Fault(m >= Word::ReadLine && m <= Word::AtEndOfLine ? errors::badFileMode
                                                                  : errors::noSuchMember);
    }
}

} // namespace

Value openTextStream(Runtime& rt, std::shared_ptr<Disk> disk, const std::string& path,
                     FileMode mode, bool unicode, std::uint64_t size) {
    auto* const stream = new TextStream(std::move(disk), path, mode == FileMode::Read, unicode);
    Value held = Value::object(stream); // so that one that fails to open gives back what it took
    stream->open(rt, mode, size);
    return held;
}

} // namespace vbscript
