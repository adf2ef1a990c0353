#include "script/vbscript/convert.h"
#include "script/vbscript/files.h"
#include "script/vbscript/text.h"

#include <fstream>

namespace vbscript {

namespace {

// What a script may let a file grow to: a loop gone wild must not fill the disk.
constexpr std::uint64_t largestFile = std::uint64_t{32} << 20;

// Open for writing at one time: files are few, and the program around us needs some, too.
constexpr int mostOpen = 32;
thread_local int openNow = 0;

class TextStream : public Object {
  public:
    TextStream(const std::string& path, FileMode mode, bool unicode);
    ~TextStream() override {
        account_.shrink(charged_);
        if (counted_) --openNow;
    }
    [[nodiscard]] std::string typeName() const override { return "TextStream"; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override;

  private:
    void load(const std::string& path);
    bool read(Runtime& rt, Word m, std::span<Value> args, Value& result);
    bool write(Runtime& rt, Word m, std::span<Value> args);
    void put(std::u16string_view text);
    std::u16string line();
    [[nodiscard]] bool atEnd() const { return at_ >= text_.size(); }
    void close();

    bool reading_;
    bool unicode_;
    bool open_ = true;
    std::u16string text_; ///< All of a file that is read.
    std::size_t at_ = 0;
    std::int64_t line_ = 1, column_ = 1;
    std::ofstream out_;
    std::uint64_t size_ = 0;
    bool counted_ = false;
    Memory& account_ = Memory::current();
    std::size_t charged_ = 0;
};

TextStream::TextStream(const std::string& path, FileMode mode, bool unicode)
    : reading_(mode == FileMode::Read), unicode_(unicode) {
    if (reading_) {
        load(path);
        return;
    }
    if (openNow >= mostOpen) throw Fault(67);
    const auto how = mode == FileMode::Append ? std::ios::app : std::ios::trunc;
    out_.open(path, std::ios::binary | std::ios::out | how);
    if (!out_) throw Fault(76);
    counted_ = true;
    ++openNow;
    out_.seekp(0, std::ios::end);
    size_ = static_cast<std::uint64_t>(std::max<std::streamoff>(out_.tellp(), 0));
    if (unicode_ && size_ == 0) out_.write("\xFF\xFE", 2);
}

void TextStream::load(const std::string& path) {
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    if (!in) throw Fault(53);
    const auto size = static_cast<std::size_t>(std::max<std::streamoff>(in.tellg(), 0));
    if (size > largestFile) throw Fault(7);
    account_.grow(size * sizeof(char16_t), 7);
    charged_ = size * sizeof(char16_t);
    std::string bytes(size, '\0');
    in.seekg(0);
    in.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(in.gcount(), 0)));
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
    text_.clear();
    account_.shrink(charged_);
    charged_ = 0;
    if (!reading_) out_.close();
    if (counted_) --openNow;
    counted_ = false;
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

void TextStream::put(std::u16string_view text) {
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
    if (size_ + bytes.size() > largestFile) throw Fault(61);
    out_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out_.flush();
    if (!out_) throw Fault(61);
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
    if (args.size() != (counted ? 1U : 0U)) throw Fault(450);
    if (atEnd()) throw Fault(62);
    if (m == Word::ReadAll) {
        result = Value::string(std::u16string_view(text_).substr(at_));
        at_ = text_.size();
    } else if (counted) {
        const std::int64_t n = toLong(rt, args[0]);
        if (n < 0) throw Fault(5);
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
    if (args.size() > 1 || (args.empty() && m != Word::WriteLine)) throw Fault(450);
    if (m == Word::WriteBlankLines) {
        const std::int64_t n = toLong(rt, args[0]);
        if (n < 0 || n > 100000) throw Fault(5);
        for (std::int64_t k = 0; k < n; ++k)
            put(u"\r\n");
        return true;
    }
    const Value text = args.empty() ? Value::string({}) : toText(rt, args[0]);
    put(text.chars());
    if (m == Word::WriteLine) put(u"\r\n");
    return true;
}

void TextStream::access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                        Value& result) {
    if (how == Access::Let || how == Access::Set) throw Fault(438);
    const Word m = wordOf(member);
    if (m == Word::Close) {
        close();
        return;
    }
    if (!open_) throw Fault(52);
    if (m == Word::Line) {
        result = Value::longint(line_);
    } else if (m == Word::Column) {
        result = Value::longint(column_);
    } else if (reading_) {
        if (!read(rt, m, args, result)) {
            throw Fault(
                m == Word::Write || m == Word::WriteLine || m == Word::WriteBlankLines ? 54 : 438);
        }
    } else if (!write(rt, m, args)) {
        throw Fault(m >= Word::ReadLine && m <= Word::AtEndOfLine ? 54 : 438);
    }
}

} // namespace

Value openTextStream(const std::string& path, FileMode mode, bool unicode) {
    return Value::object(new TextStream(path, mode, unicode));
}

} // namespace vbscript
