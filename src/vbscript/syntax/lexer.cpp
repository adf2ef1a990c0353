// SPDX-License-Identifier: Apache-2.0
#include "vbscript/syntax/lexer.h"

#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"
#include "vbscript/surroundings/surroundings.h"
#include "vbscript/values/calendar.h"
#include "vbscript/values/literals.h"
#include "vbscript/values/text.h"

namespace vbscript {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isNameStart(char c) { return lowerAscii(c) >= 'a' && lowerAscii(c) <= 'z'; }
bool isNamePart(char c) { return isNameStart(c) || isDigit(c) || c == '_'; }

class Lexer {
  public:
    Lexer(std::string_view source, Names& names) : text_(source), names_(names) {}

    TokenList run() {
        if (text_.substr(0, 3) == "\xEF\xBB\xBF") at_ = lineStart_ = 3;
        list_.tokens.reserve(text_.size() / 4 + 2);
        while (at_ < text_.size())
            step();
        put(Tok::Newline, at_);
        put(Tok::End, at_);
        return std::move(list_);
    }

  private:
    char peek(std::size_t ahead = 0) const {
        return at_ + ahead < text_.size() ? text_[at_ + ahead] : '\0';
    }

    Position place(std::size_t at) const {
        Position p{line_, 1};
        for (std::size_t k = lineStart_; k < at && k < text_.size();) {
            nextUtf8(text_, k);
            ++p.column;
        }
        return p;
    }

    [[noreturn]] void fail(int number, std::size_t at) const {
        const Position p = place(at);
        throw CompileFault{number, static_cast<int>(p.line), static_cast<int>(p.column), {}};
    }

    // A line's columns are counted once while its tokens go by, so long lines stay linear.
    Position placeOfToken(std::size_t at) {
        if (markLine_ != line_ || at < mark_) {
            markLine_ = line_;
            mark_ = lineStart_;
            markColumn_ = 1;
        }
        while (mark_ < at && mark_ < text_.size()) {
            nextUtf8(text_, mark_);
            ++markColumn_;
        }
        return {line_, markColumn_};
    }

    Token& put(Tok kind, std::size_t at) {
        Token t;
        t.kind = kind;
        t.spaceBefore = space_;
        t.at = placeOfToken(at);
        space_ = false;
        list_.tokens.push_back(t);
        return list_.tokens.back();
    }

    void putLiteral(Value v, std::size_t at) {
        put(Tok::Literal, at).literal = static_cast<std::uint32_t>(list_.literals.size());
        list_.literals.push_back(std::move(v));
    }

    bool atStatementStart() const {
        if (list_.tokens.empty()) return true;
        const Token& t = list_.tokens.back();
        return t.kind == Tok::Newline || t.kind == Tok::Colon ||
               (t.kind == Tok::Keyword &&
                (t.atom == atomOf(Word::Then) || t.atom == atomOf(Word::Else)));
    }

    bool afterOperand() const {
        if (list_.tokens.empty()) return false;
        const Tok k = list_.tokens.back().kind;
        return k == Tok::Name || k == Tok::Literal || k == Tok::RParen;
    }

    void step() {
        const char c = peek();
        if (isBlank(c)) {
            space_ = true;
            ++at_;
        } else if (c == '\r' || c == '\n') {
            newline();
        } else if (c == '\'') {
            skipLine();
        } else if (isNameStart(c)) {
            word();
        } else if (isDigit(c) || (c == '.' && isDigit(peek(1)))) {
            decimal();
        } else if (c == '"') {
            string();
        } else if (c == '[') {
            bracketed();
        } else if (c == '#') {
            date();
        } else if (c == '_') {
            continuation();
        } else if (c == '&') {
            ampersand();
        } else {
            mark();
        }
    }

    void newline() {
        put(Tok::Newline, at_);
        skipBreak();
    }

    void skipBreak() {
        if (peek() == '\r' && peek(1) == '\n') ++at_;
        ++at_;
        ++line_;
        lineStart_ = at_;
        space_ = true;
    }

    void skipLine() {
        while (at_ < text_.size() && peek() != '\r' && peek() != '\n')
            ++at_;
    }

    void continuation() {
        std::size_t end = at_ + 1;
        while (end < text_.size() && isBlank(text_[end]))
            ++end;
        if (end < text_.size() && text_[end] != '\r' && text_[end] != '\n')
            fail(errors::invalidCharacter, at_);
        at_ = end;
        if (at_ < text_.size()) skipBreak();
    }

    void word() {
        const std::size_t start = at_;
        while (isNamePart(peek()))
            ++at_;
        if (at_ - start > longestName) fail(errors::identifierTooLong, start);
        const Atom atom = names_.of(text_.substr(start, at_ - start));
        const bool member = !list_.tokens.empty() && list_.tokens.back().kind == Tok::Dot;
        if (atom == atomOf(Word::Rem) && !member && atStatementStart()) {
            skipLine();
            return;
        }
        put(isKeyword(atom) && !member ? Tok::Keyword : Tok::Name, start).atom = atom;
    }

    void bracketed() {
        const std::size_t start = at_;
        const std::size_t end = text_.find_first_of("]\r\n", at_);
        if (end == std::string_view::npos || text_[end] != ']')
            fail(errors::rightBracketExpected, start);
        at_ = end + 1;
        if (end - start - 1 > longestName) fail(errors::identifierTooLong, start);
        // Atom 0 means the default member, so the empty name gets a spelling of its own.
        const auto name = text_.substr(start + 1, end - start - 1);
        Token& t = put(Tok::Name, start);
        t.atom = names_.of(name.empty() ? std::string_view("[]") : name);
        t.bracketed = true;
    }

    void string() {
        const std::size_t start = at_++;
        std::string chars;
        for (;; ++at_) {
            const std::size_t end = text_.find_first_of("\"\r\n", at_);
            if (end == std::string_view::npos || text_[end] != '"')
                fail(errors::unterminatedString, start);
            chars.append(text_.substr(at_, end - at_));
            at_ = end + 1;
            if (peek() != '"') break;
            chars += '"';
        }
        putLiteral(Value::text(chars), start);
    }

    void date() {
        const std::size_t start = at_;
        const std::size_t end = text_.find_first_of("#\r\n", at_ + 1);
        if (end == std::string_view::npos || text_[end] != '#') fail(errors::syntax, start);
        double days = 0;
        const auto inside = utf16(text_.substr(start + 1, end - start - 1));
        if (inside.size() > 100 || !parseDateLiteral(inside, days)) fail(errors::syntax, start);
        at_ = end + 1;
        putLiteral(Value::date(days), start);
    }

    void decimal() {
        const std::size_t start = at_;
        Value v;
        at_ += scanDecimal(text_.substr(at_), v);
        if (v.is(Type::Null)) fail(errors::invalidNumber, start);
        putLiteral(std::move(v), start);
    }

    void ampersand() {
        const std::size_t start = at_;
        // After an operand "&1" can only mean to join; "&H1F" may also be an argument.
        const bool join = afterOperand() && (isDigit(peek(1)) || !space_);
        Value v;
        const std::size_t used = join ? 0 : scanRadix(text_.substr(at_), v);
        if (used == 0) {
            ++at_;
            put(Tok::Ampersand, start);
            return;
        }
        if (v.is(Type::Null)) fail(errors::invalidNumber, start);
        at_ += used;
        putLiteral(std::move(v), start);
    }

    void mark() {
        const std::size_t start = at_;
        const char c = peek();
        const char d = peek(1);
        std::size_t used = 1;
        Tok kind = Tok::End;
        switch (c) {
        case ':':
            kind = Tok::Colon;
            break;
        case '(':
            kind = Tok::LParen;
            break;
        case ')':
            kind = Tok::RParen;
            break;
        case ',':
            kind = Tok::Comma;
            break;
        case '.':
            kind = Tok::Dot;
            break;
        case '+':
            kind = Tok::Plus;
            break;
        case '-':
            kind = Tok::Minus;
            break;
        case '*':
            kind = Tok::Star;
            break;
        case '/':
            kind = Tok::Slash;
            break;
        case '\\':
            kind = Tok::Backslash;
            break;
        case '^':
            kind = Tok::Caret;
            break;
        case '=':
            kind = d == '<' ? Tok::LessEqual : d == '>' ? Tok::GreaterEqual : Tok::Equal;
            used = kind == Tok::Equal ? 1 : 2;
            break;
        case '<':
            kind = d == '=' ? Tok::LessEqual : d == '>' ? Tok::NotEqual : Tok::Less;
            used = kind == Tok::Less ? 1 : 2;
            break;
        case '>':
            kind = d == '=' ? Tok::GreaterEqual : d == '<' ? Tok::NotEqual : Tok::Greater;
            used = kind == Tok::Greater ? 1 : 2;
            break;
        default:
            fail(errors::invalidCharacter, start);
        }
        at_ += used;
        put(kind, start);
    }

    std::string_view text_;
    Names& names_;
    TokenList list_;
    std::size_t at_ = 0;
    std::size_t lineStart_ = 0;
    std::uint32_t line_ = 1;
    bool space_ = false;
    std::uint32_t markLine_ = 0;
    std::size_t mark_ = 0;
    std::uint32_t markColumn_ = 1;
};

} // namespace

TokenList tokenize(std::string_view source, Names& names) {
    if (source.size() > longestSource) throw CompileFault{errors::textTooLarge, 1, 1, {}};
    return Lexer(source, names).run();
}

} // namespace vbscript
