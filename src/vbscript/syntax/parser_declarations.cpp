// SPDX-License-Identifier: Apache-2.0
#include "vbscript/syntax/parser_impl.h"

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
        fail(1002);
    }
    ++at_;
    const bool isPublic = t.atom == atomOf(Word::Public);
    if (is(Word::Default) && (is(Word::Sub, 1) || is(Word::Function, 1) || is(Word::Property, 1))) {
        fail(1048);
    }
    if (accept(Word::Const)) return constList(isPublic);
    if (is(Tok::Keyword) && (is(Word::Sub) || is(Word::Function)))
        return procedure(isPublic, false);
    if (atProperty()) fail(1048);
    if (proc_) failAt(1002, t.at);
    dimList(isPublic);
}

void Parser::optionExplicit() {
    ++at_;
    expect(Word::Explicit, 1002);
    if (!module_->main.body.empty() || proc_) failAt(1002, tok().at);
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
        if (!is(Tok::Literal) || !list_.literals[tok().literal].isInt()) fail(1026);
        d.bounds.push_back(primary());
    } while (accept(Tok::Comma));
    if (d.bounds.size() > 60) failAt(1002, d.at);
    expect(Tok::RParen, 1006);
    return d;
}

void Parser::constList(bool isPublic) {
    do {
        Declared d;
        d.at = tok().at;
        d.isPublic = isPublic;
        d.name = name();
        expect(Tok::Equal, 1011);
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
    if (!is(Tok::Literal) && !is(Tok::Keyword)) fail(1045);
    Expr* e = is(Tok::Literal) || is(Word::True) || is(Word::False) || is(Word::Empty) ||
                      is(Word::Null) || is(Word::Nothing)
                  ? primary()
                  : nullptr;
    if (!e || e->kind != ExprKind::Literal) failAt(1045, at);
    for (; parens > 0; --parens)
        expect(Tok::RParen, 1006);
    Value v = e->literal;
    if (!negative) return v;
    if (v.isInt()) return v.is(Type::Long) ? Value::longint(-v.i) : Value::integer(-v.i);
    if (!v.is(Type::Double)) failAt(1045, at);
    return Value::real(-v.d);
}

void Parser::procedure(bool isPublic, bool isDefault) {
    if (proc_) fail(1002);
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
    procedureBody(p, what, what == Word::Sub ? 1016 : what == Word::Function ? 1015 : 1050);
}

void Parser::propertyKind(ProcDecl* p) {
    if (accept(Word::Get))
        p->kind = ProcKind::Get;
    else if (accept(Word::Let))
        p->kind = ProcKind::Let;
    else if (accept(Word::Set))
        p->kind = ProcKind::Set;
    else
        fail(1049);
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
        if (accept(Tok::LParen)) expect(Tok::RParen, 1006);
        if (p->parameters.size() >= mostParameters) failAt(1002, at);
        const bool twice = std::any_of(p->parameters.begin(), p->parameters.end(),
                                       [&](const Parameter& r) { return r.name == q.name; });
        if (twice) failAt(1041, at);
        p->parameters.push_back(q);
    } while (accept(Tok::Comma));
    expect(Tok::RParen, 1006);
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
    if (class_ || proc_) fail(1002);
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
    closing(Word::Class, 1047);
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
    if (is(Word::Default)) fail(1057);
    if (!is(Word::Public) && !is(Word::Private)) fail(1002);
    const bool isPublic = is(Word::Public);
    ++at_;
    const bool isDefault =
        is(Word::Default) && (is(Word::Sub, 1) || is(Word::Function, 1) || is(Word::Property, 1));
    if (isDefault) {
        if (!isPublic) fail(1057);
        ++at_;
    }
    if (is(Tok::Keyword) && (is(Word::Sub) || is(Word::Function)))
        return procedure(isPublic, isDefault);
    if (atProperty()) return procedure(isPublic, isDefault);
    if (is(Word::Property)) {
        ++at_;
        fail(1049);
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
        if (birth && p->kind == ProcKind::Sub && !p->parameters.empty()) failAt(1053, p->at);
        if (p->isDefault && (p->kind == ProcKind::Let || p->kind == ProcKind::Set)) {
            failAt(1058, p->at);
        }
        if (p->isDefault && ++defaults > 1) failAt(1052, p->at);
        unsigned& known = kinds[p->name];
        const unsigned mine = 1U << static_cast<unsigned>(p->kind);
        constexpr unsigned accessors = 7U << static_cast<unsigned>(ProcKind::Get);
        const bool goesWith = (mine & accessors) && !(known & mine) && !(known & ~accessors);
        if (known != 0 && !goesWith) failAt(1041, p->at);
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
        if (p->parameters.empty()) failAt(1054, p->at);
        const auto getter = getters.find(p->name);
        if (getter != getters.end() && getter->second + 1 != p->parameters.size()) {
            failAt(1051, p->at);
        }
    }
}

} // namespace vbscript
