// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/files.h"
#include "vbscript/library/members.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <utility>

namespace vbscript {

namespace {

using What = DiskOrder::What;

constexpr std::u16string_view lineEnd = u"\r\n";

class TextStream : public Native<TextStream> {
  public:
    TextStream(std::shared_ptr<Disk> disk, std::string path, bool reading, bool unicode)
        : disk_(std::move(disk)), path_(std::move(path)), reading_(reading), unicode_(unicode) {}
    ~TextStream() override { account_.shrink(charged_); }
    [[nodiscard]] std::string typeName() const override { return "TextStream"; }
    static Members<TextStream> members();

    void open(Runtime& rt, FileMode mode, std::uint64_t size);

  private:
    void load(Runtime& rt, std::uint64_t size);
    void charge(std::uint64_t characters);
    void put(Runtime& rt, std::u16string_view text);
    void append(Runtime& rt, std::string_view bytes);
    std::u16string nextLine();
    std::u16string_view next(Runtime& rt, Arguments args);
    void pass(std::size_t characters) {
        at_ += characters;
        column_ += static_cast<std::int64_t>(characters);
    }
    [[nodiscard]] bool atEnd() const { return at_ >= text_.size(); }

    // Asked when the arguments are known: a script's object that gives one may close this stream.
    void openFor(bool reading) const {
        if (!open_) throw Fault(errors::badFileName);
        if (reading != reading_) throw Fault(errors::badFileMode);
    }
    void somethingToRead() const {
        openFor(true);
        if (atEnd()) throw Fault(errors::inputPastEnd);
    }

    Value read(Runtime& rt, Arguments args) {
        const auto characters = next(rt, args);
        Value text = Value::string(characters); // where that fails, nothing has been read
        pass(characters.size());
        return text;
    }
    Value skip(Runtime& rt, Arguments args) {
        pass(next(rt, args).size());
        return {};
    }
    Value readLine(Runtime& /*rt*/, Arguments /*none*/) {
        somethingToRead();
        return Value::string(nextLine());
    }
    Value skipLine(Runtime& /*rt*/, Arguments /*none*/) {
        somethingToRead();
        nextLine();
        return {};
    }
    Value readAll(Runtime& rt, Arguments none);
    Value atEndOfStream(Runtime& /*rt*/, Arguments /*none*/) {
        openFor(true);
        return Value::boolean(atEnd());
    }
    Value atEndOfLine(Runtime& /*rt*/, Arguments /*none*/) {
        openFor(true);
        return Value::boolean(atEnd() || text_[at_] == '\n' || text_[at_] == '\r');
    }
    Value write(Runtime& rt, Arguments args);
    Value writeLine(Runtime& rt, Arguments args);
    Value writeBlankLines(Runtime& rt, Arguments args);
    Value line(Runtime& /*rt*/, Arguments /*none*/) {
        openFor(reading_);
        return Value::longint(line_);
    }
    Value column(Runtime& /*rt*/, Arguments /*none*/) {
        openFor(reading_);
        return Value::longint(column_);
    }
    Value close(Runtime& rt, Arguments none);

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

Members<TextStream> TextStream::members() {
    using T = TextStream;
    static constexpr MemberOf<T> all[] = {
        {Word::ReadLine, {0, 0}, &T::readLine},
        {Word::AtEndOfStream, {0, 0}, &T::atEndOfStream},
        {Word::WriteLine, {0, 1}, &T::writeLine},
        {Word::Write, {1, 1}, &T::write},
        {Word::WriteBlankLines, {1, 1}, &T::writeBlankLines},
        {Word::Read, {1, 1}, &T::read},
        {Word::ReadAll, {0, 0}, &T::readAll},
        {Word::Skip, {1, 1}, &T::skip},
        {Word::SkipLine, {0, 0}, &T::skipLine},
        {Word::AtEndOfLine, {0, 0}, &T::atEndOfLine},
        {Word::Line, {0, 0}, &T::line},
        {Word::Column, {0, 0}, &T::column},
        {Word::Close, {0, 0}, &T::close},
    };
    return {Word::None, all};
}

void TextStream::open(Runtime& rt, FileMode mode, std::uint64_t size) {
    if (reading_) return load(rt, size);
    asked(rt, *disk_, {mode == FileMode::Append ? What::Append : What::Write, path_});
    size_ = mode == FileMode::Append ? size : 0;
    if (unicode_ && size_ == 0) append(rt, "\xFF\xFE");
}

void TextStream::charge(std::uint64_t characters) {
    account_.grow(characters * sizeof(char16_t));
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

std::u16string TextStream::nextLine() {
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

/// As many characters as the argument says, or what there still is.
std::u16string_view TextStream::next(Runtime& rt, Arguments args) {
    const std::int64_t n = toLong(rt, args[0]);
    somethingToRead();
    if (n < 0) throw Fault(errors::invalidCall);
    return std::u16string_view(text_).substr(at_, static_cast<std::size_t>(n));
}

Value TextStream::readAll(Runtime& /*rt*/, Arguments /*none*/) {
    somethingToRead();
    Value rest = Value::string(std::u16string_view(text_).substr(at_));
    at_ = text_.size();
    return rest;
}

Value TextStream::write(Runtime& rt, Arguments args) {
    const Value text = toText(rt, args[0]);
    openFor(false);
    put(rt, text.chars());
    return {};
}

Value TextStream::writeLine(Runtime& rt, Arguments args) {
    std::u16string text;
    if (!args.empty()) text = toText(rt, args[0]).chars();
    openFor(false);
    put(rt, text.append(lineEnd));
    return {};
}

Value TextStream::writeBlankLines(Runtime& rt, Arguments args) {
    const std::int64_t n = toLong(rt, args[0]);
    openFor(false);
    if (n < 0 || n > 100000) throw Fault(errors::invalidCall);
    std::u16string lines;
    for (std::int64_t k = 0; k < n; ++k)
        lines += lineEnd;
    put(rt, lines);
    return {};
}

Value TextStream::close(Runtime& /*rt*/, Arguments /*none*/) {
    open_ = false;
    std::u16string().swap(text_); // what is given back to the account is given back indeed
    account_.shrink(charged_);
    charged_ = 0;
    return {};
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
