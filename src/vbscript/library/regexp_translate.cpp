// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/regexp.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"
#include "vbscript/values/text.h"

namespace vbscript {

namespace {

/// Walks the pattern once. What both syntaxes share passes; what only PCRE2 knows is refused or
/// made literal, so that scripts get the language they were written for.
class Translator {
  public:
    explicit Translator(std::u16string_view p) : in_(p) {}

    std::string run() {
        out_ = mark;
        while (at_ < in_.size()) {
            if (in_[at_] == '[')
                characterClass();
            else if (in_[at_] == '\\')
                escape(false);
            else if (in_[at_] == '(')
                group();
            else if (isQuantifier(in_[at_]))
                quantifier(1);
            else if (const std::size_t n = braces(); n != 0)
                quantifier(n);
            else
                copy();
        }
        return utf8(out_);
    }

  private:
    // Where the matcher asks whether it may go on: at every start, in every group and reference
    // back, behind what is repeated.
    static constexpr std::u16string_view mark = u"(?C)";

    [[nodiscard]] char16_t peek(std::size_t k) const {
        return at_ + k < in_.size() ? in_[at_ + k] : u'\0';
    }
    static bool isDigit(char16_t c) { return c >= '0' && c <= '9'; }
    static bool isQuantifier(char16_t c) { return c == '*' || c == '+' || c == '?'; }

    void copy() {
        quantified_ = false;
        out_ += in_[at_++];
    }

    void group() {
        quantified_ = false;
        if (peek(1) == '*') throw Fault(errors::unexpectedQuantifier);
        if (peek(1) == '?' && peek(2) != ':' && peek(2) != '=' && peek(2) != '!')
            throw Fault(errors::patternSyntax);
        const std::size_t n = peek(1) == '?' ? 3 : 1;
        out_ += in_.substr(at_, n);
        out_ += mark;
        at_ += n;
    }

    // How long "{2}", "{2,}" or "{2,5}" is that stands here; else 0: then they are plain
    // characters.
    [[nodiscard]] std::size_t braces() const {
        if (in_[at_] != '{' || !isDigit(peek(1))) return 0;
        std::size_t n = 1;
        while (isDigit(peek(n)))
            ++n;
        if (peek(n) == ',') ++n;
        while (isDigit(peek(n)))
            ++n;
        return peek(n) == '}' ? n + 1 : 0;
    }

    void quantifier(std::size_t length) {
        // A second quantifier would mean "possessive" here and is a mistake there; "?" is lazy.
        if (quantified_) throw Fault(errors::unexpectedQuantifier);
        quantified_ = true;
        out_ += in_.substr(at_, length);
        at_ += length;
        if (peek(0) == '?') out_ += in_[at_++];
        out_ += mark;
    }

    void escape(bool inClass) {
        quantified_ = false;
        const char16_t c = peek(1);
        if (at_ + 1 >= in_.size()) throw Fault(errors::patternSyntax);
        at_ += 2;
        if (!inClass && c >= '1' && c <= '9') out_ += mark;
        if (c == 'v') {
            out_ += u"\\x0b";
        } else if (c < 0x80 && std::u16string_view(u"dDwWsSfnrtcxu0123456789bB").find(c) !=
                                   std::u16string_view::npos) {
            out_ += u'\\';
            if (inClass && c == 'B') out_.pop_back();
            out_ += c;
        } else if ((c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c >= 0x80) {
            out_ += c;
        } else {
            out_ += u'\\';
            out_ += c;
        }
    }

    void characterClass() {
        quantified_ = false;
        out_ += in_[at_++];
        if (peek(0) == '^') out_ += in_[at_++];
        while (at_ < in_.size() && in_[at_] != ']') {
            if (in_[at_] == '\\') {
                escape(true);
            } else {
                if (in_[at_] == '[') out_ += u'\\'; // no [:names:]
                out_ += in_[at_++];
            }
        }
        if (at_ >= in_.size()) throw Fault(errors::patternBracketExpected);
        out_ += in_[at_++];
    }

    std::u16string_view in_;
    std::u16string out_;
    std::size_t at_ = 0;
    bool quantified_ = false;
};

} // namespace

std::string translatePattern(std::u16string_view pattern) { return Translator(pattern).run(); }

} // namespace vbscript
