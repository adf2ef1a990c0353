// SPDX-License-Identifier: Apache-2.0
#include "vbscript/syntax/parser_impl.h"

#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"
#include "vbscript/syntax/lexer.h"
#include "vbscript/syntax/parser.h"

namespace vbscript {

Parser::Parser(std::string_view source, Names& names, bool me, Runtime* run, bool colonMeansLine)
    : list_(tokenize(source, names)), module_(std::make_unique<Module>()), me_(me), run_(run),
      colonMeansLine_(colonMeansLine) {
    scope_ = &module_->main.scope;
}

void Parser::module() {
    block(module_->main.body);
    if (is(Tok::End)) return;
    if (is(Word::Loop)) fail(errors::loopWithoutDo);
    if (is(Word::Next)) fail(errors::unexpectedNext);
    fail(errors::syntax);
}

void Parser::expressionOnly() {
    skipSeparators();
    if (is(Tok::End)) fail(errors::syntax);
    module_->expression = expression();
    skipSeparators();
    if (!is(Tok::End)) fail(errors::syntax);
}

bool Parser::is(Word w, std::size_t ahead) const {
    const Token& t = tok(ahead);
    return (t.kind == Tok::Keyword || (t.kind == Tok::Name && !t.bracketed)) && t.atom == atomOf(w);
}

bool Parser::accept(Tok k) {
    if (!is(k)) return false;
    ++at_;
    return true;
}

bool Parser::accept(Word w) {
    if (!is(w)) return false;
    ++at_;
    return true;
}

void Parser::expect(Tok k, int error) {
    if (!accept(k)) fail(error);
}

void Parser::expect(Word w, int error) {
    if (!accept(w)) fail(error);
}

void Parser::fail(int number) const { failAt(number, tok().at); }

void Parser::failAt(int number, Position p) const {
    throw CompileFault{number, static_cast<int>(p.line), static_cast<int>(p.column), {}};
}

void Parser::tooDeep() const {
    const Position p = tok().at;
    throw CompileFault{errors::textTooLarge, static_cast<int>(p.line), static_cast<int>(p.column),
                       "Out of memory: nested too deeply"};
}

Atom Parser::name() {
    if (!is(Tok::Name)) fail(errors::identifierExpected);
    return list_.tokens[at_++].atom;
}

bool Parser::endOfLineAhead() const {
    std::size_t k = 0;
    while (tok(k).kind == Tok::Colon)
        ++k;
    return tok(k).kind == Tok::Newline || tok(k).kind == Tok::End;
}

void Parser::skipSeparators() {
    while (is(Tok::Newline) || is(Tok::Colon))
        ++at_;
}

std::unique_ptr<Module> parseModule(std::string_view source, Names& names, bool me, Runtime* run) {
    Parser p(source, names, me, run);
    try {
        p.module();
    } catch (const CompileFault&) {
        if (!p.thenColons()) throw;
        Parser again(source, names, me, run, true);
        try {
            again.module();
            return again.take();
        } catch (const CompileFault&) { // the first complaint is the one to tell
        }
        throw;
    }
    return p.take();
}

std::unique_ptr<Module> parseExpression(std::string_view source, Names& names, bool me,
                                        Runtime* run) {
    Parser p(source, names, me, run);
    p.expressionOnly();
    return p.take();
}

} // namespace vbscript
