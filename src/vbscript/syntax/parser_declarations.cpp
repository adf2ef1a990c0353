// SPDX-License-Identifier: Apache-2.0
#include "vbscript/syntax/parser_impl.h"

#include "vbscript/surroundings/errors.h"

#include <algorithm>
#include <unordered_map>

namespace vbscript {

namespace {
constexpr std::size_t mostParameters = 255;
}

bool Parser::atProperty() const {
    return is(Word::Property) && (is(Word::Get, 1) || is(Word::Let, 1) || is(Word::Set, 1));
}

void Parser::declaration() {
    const Token t = tok();
    switch (wordOf(t.atom)) {
    case Word::Option:
        return optionExplicit();
    case Word::Dim:
        ++at_;
        return dimList(true);
    case Word::Const:
        ++at_;
        return constList(true);
    case Word::Class:
        return classDeclaration();
    case Word::Sub:
    case Word::Function:
        return procedure(true, false);
    case Word::Public:
    case Word::Private:
        break;
    default:
        fail(errors::syntax);
    }
    ++at_;
    const bool isPublic = t.atom == atomOf(Word::Public);
    if (is(Word::Default) && (is(Word::Sub, 1) || is(Word::Function, 1) || is(Word::Property, 1))) {
        fail(errors::outsideClass);
    }
    if (accept(Word::Const)) return constList(isPublic);
    if (is(Tok::Keyword) && (is(Word::Sub) || is(Word::Function)))
        return procedure(isPublic, false);
    if (atProperty()) fail(errors::outsideClass);
    if (proc_) failAt(errors::syntax, t.at);
    dimList(isPublic);
}

void Parser::optionExplicit() {
    ++at_;
    expect(Word::Explicit, errors::syntax);
    if (!module_->main.body.empty() || proc_) failAt(errors::syntax, tok().at);
    module_->optionExplicit = true;
}

void Parser::dimList(bool isPublic) {
    do {
        scope_->variables.push_back(dimItem());
        scope_->variables.back().isPublic = isPublic;
    } while (accept(Tok::Comma));
}

Declared Parser::dimItem() {
    Declared d;
    d.at = tok().at;
    d.name = name();
    if (!accept(Tok::LParen)) return d;
    d.isArray = true;
    if (accept(Tok::RParen)) return d;
    do {
        if (!is(Tok::Literal) || !list_.literals[tok().literal].isInt())
            fail(errors::integerExpected);
        d.bounds.push_back(primary());
    } while (accept(Tok::Comma));
    if (d.bounds.size() > 60) failAt(errors::syntax, d.at);
    expect(Tok::RParen, errors::rightParenExpected);
    return d;
}

void Parser::constList(bool isPublic) {
    do {
        Declared d;
        d.at = tok().at;
        d.isPublic = isPublic;
        d.name = name();
        expect(Tok::Equal, errors::equalExpected);
        d.value = constantValue();
        scope_->constants.push_back(std::move(d));
    } while (accept(Tok::Comma));
}

Value Parser::constantValue() {
    bool negative = false;
    int parens = 0;
    for (;; ++at_) {
        if (is(Tok::Minus))
            negative = !negative;
        else if (is(Tok::LParen))
            ++parens;
        else if (!is(Tok::Plus))
            break;
    }
    const Position at = tok().at;
    if (!is(Tok::Literal) && !is(Tok::Keyword)) fail(errors::literalExpected);
    Expr* e = is(Tok::Literal) || is(Word::True) || is(Word::False) || is(Word::Empty) ||
                      is(Word::Null) || is(Word::Nothing)
                  ? primary()
                  : nullptr;
    if (!e || e->kind != ExprKind::Literal) failAt(errors::literalExpected, at);
    for (; parens > 0; --parens)
        expect(Tok::RParen, errors::rightParenExpected);
    Value v = e->literal;
    if (!negative) return v;
    if (v.isInt()) return v.is(Type::Long) ? Value::longint(-v.i) : Value::integer(-v.i);
    if (!v.is(Type::Double)) failAt(errors::literalExpected, at);
    return Value::real(-v.d);
}

void Parser::procedure(bool isPublic, bool isDefault) {
    if (proc_) fail(errors::syntax);
    ProcDecl* p = &module_->procDecls.emplace_back();
    p->at = tok().at;
    p->isPublic = isPublic;
    p->isDefault = isDefault;
    const Word what = wordOf(tok().atom);
    ++at_;
    if (what == Word::Property)
        propertyKind(p);
    else
        p->kind = what == Word::Sub ? ProcKind::Sub : ProcKind::Function;
    p->name = name();
    parameters(p);
    if (class_)
        class_->procs.push_back(p);
    else
        module_->procs.push_back(p);
    procedureBody(p, what,
                  what == Word::Sub        ? errors::subExpected
                  : what == Word::Function ? errors::functionExpected
                                           : errors::propertyExpected);
}

void Parser::propertyKind(ProcDecl* p) {
    if (accept(Word::Get))
        p->kind = ProcKind::Get;
    else if (accept(Word::Let))
        p->kind = ProcKind::Let;
    else if (accept(Word::Set))
        p->kind = ProcKind::Set;
    else
        fail(errors::accessorExpected);
}

void Parser::parameters(ProcDecl* p) {
    if (!accept(Tok::LParen) || accept(Tok::RParen)) return;
    do {
        Parameter q;
        if (accept(Word::ByVal))
            q.byRef = false;
        else
            accept(Word::ByRef);
        const Position at = tok().at;
        q.name = name();
        if (accept(Tok::LParen)) expect(Tok::RParen, errors::rightParenExpected);
        if (p->parameters.size() >= mostParameters) failAt(errors::syntax, at);
        const bool twice = std::any_of(p->parameters.begin(), p->parameters.end(),
                                       [&](const Parameter& r) { return r.name == q.name; });
        if (twice) failAt(errors::nameRedefined, at);
        p->parameters.push_back(q);
    } while (accept(Tok::Comma));
    expect(Tok::RParen, errors::rightParenExpected);
}

void Parser::procedureBody(ProcDecl* p, Word end, int error) {
    Scope* outer = scope_;
    const int loopsFor = loopsFor_;
    const int loopsDo = loopsDo_;
    const int withs = withs_;
    scope_ = &p->scope;
    proc_ = p;
    loopsFor_ = loopsDo_ = withs_ = 0;
    block(p->body);
    closing(end, error);
    loopsFor_ = loopsFor;
    loopsDo_ = loopsDo;
    withs_ = withs;
    proc_ = nullptr;
    scope_ = outer;
}

void Parser::classDeclaration() {
    if (class_ || proc_) fail(errors::syntax);
    ClassDecl* c = &module_->classDecls.emplace_back();
    c->at = tok().at;
    ++at_;
    c->name = name();
    module_->classes.push_back(c);
    Scope* outer = scope_;
    scope_ = &c->scope;
    class_ = c;
    for (skipSeparators(); !is(Word::End); skipSeparators()) {
        classMember();
        endOfStatement();
    }
    closing(Word::Class, errors::classExpected);
    class_ = nullptr;
    scope_ = outer;
    checkClass(c);
    checkAccessors(c);
}

void Parser::classMember() {
    if (is(Tok::Keyword) && (is(Word::Sub) || is(Word::Function))) return procedure(true, false);
    if (atProperty()) return procedure(true, false);
    if (accept(Word::Dim)) return dimList(true);
    if (is(Tok::Keyword) && accept(Word::Const)) return constList(false);
    if (is(Word::Default)) fail(errors::defaultNeedsPublic);
    if (!is(Word::Public) && !is(Word::Private)) fail(errors::syntax);
    const bool isPublic = is(Word::Public);
    ++at_;
    const bool isDefault =
        is(Word::Default) && (is(Word::Sub, 1) || is(Word::Function, 1) || is(Word::Property, 1));
    if (isDefault) {
        if (!isPublic) fail(errors::defaultNeedsPublic);
        ++at_;
    }
    if (is(Tok::Keyword) && (is(Word::Sub) || is(Word::Function)))
        return procedure(isPublic, isDefault);
    if (atProperty()) return procedure(isPublic, isDefault);
    if (is(Word::Property)) {
        ++at_;
        fail(errors::accessorExpected);
    }
    if (is(Tok::Keyword) && accept(Word::Const)) return constList(isPublic);
    dimList(isPublic);
}

void Parser::checkClass(const ClassDecl* c) const {
    int defaults = 0;
    std::unordered_map<Atom, unsigned> kinds; // bit per ProcKind, bit 0 for a variable
    for (const Declared& d : c->scope.variables)
        kinds[d.name] |= 1U;
    for (const ProcDecl* p : c->procs) {
        const bool birth =
            p->name == atomOf(Word::Class_Initialize) || p->name == atomOf(Word::Class_Terminate);
        if (birth && p->kind == ProcKind::Sub && !p->parameters.empty())
            failAt(errors::initializeArguments, p->at);
        if (p->isDefault && (p->kind == ProcKind::Let || p->kind == ProcKind::Set)) {
            failAt(errors::defaultOnGetOnly, p->at);
        }
        if (p->isDefault && ++defaults > 1) failAt(errors::secondDefault, p->at);
        unsigned& known = kinds[p->name];
        const unsigned mine = 1U << static_cast<unsigned>(p->kind);
        constexpr unsigned accessors = 7U << static_cast<unsigned>(ProcKind::Get);
        const bool goesWith = (mine & accessors) && !(known & mine) && !(known & ~accessors);
        if (known != 0 && !goesWith) failAt(errors::nameRedefined, p->at);
        known |= mine;
    }
}

void Parser::checkAccessors(const ClassDecl* c) const {
    std::unordered_map<Atom, std::size_t> getters;
    for (const ProcDecl* p : c->procs) {
        if (p->kind == ProcKind::Get) getters[p->name] = p->parameters.size();
    }
    for (const ProcDecl* p : c->procs) {
        if (p->kind != ProcKind::Let && p->kind != ProcKind::Set) continue;
        if (p->parameters.empty()) failAt(errors::setterArguments, p->at);
        const auto getter = getters.find(p->name);
        if (getter != getters.end() && getter->second + 1 != p->parameters.size()) {
            failAt(errors::accessorArguments, p->at);
        }
    }
}

} // namespace vbscript
