// SPDX-License-Identifier: Apache-2.0
#include "vbscript/syntax/parser_impl.h"

#include "vbscript/surroundings/errors.h"

namespace vbscript {

Stmt* Parser::node(StmtKind kind) {
    Stmt& s = module_->stmts.emplace_back();
    s.kind = kind;
    s.at = tok().at;
    return &s;
}

bool Parser::atBlockEnd() const {
    if (is(Tok::End)) return true;
    if (!is(Tok::Keyword)) return false;
    switch (wordOf(tok().atom)) {
    case Word::End:
    case Word::Else:
    case Word::ElseIf:
    case Word::Case:
    case Word::Next:
    case Word::Loop:
    case Word::Wend:
        return true;
    default:
        return false;
    }
}

void Parser::block(Block& out) {
    const Nested guard(*this);
    for (;;) {
        skipSeparators();
        if (atBlockEnd()) return;
        statement(out);
        endOfStatement();
    }
}

bool Parser::closesOnSameLine() const {
    if (is(Word::End)) {
        if (is(Word::If, 1)) return lineIfs_ > 0 || tok().at.line == elseLine_;
        return proc_ && (is(Word::Sub, 1) || is(Word::Function, 1) || is(Word::Property, 1));
    }
    return lineIfs_ > 0 && (is(Word::Else) || is(Word::ElseIf));
}

void Parser::endOfStatement() {
    if (is(Tok::End) || accept(Tok::Newline) || accept(Tok::Colon) || closesOnSameLine()) return;
    if (is(Word::End) && (is(Word::If, 1) || is(Word::Select, 1))) fail(errors::mustBeginLine);
    fail(errors::endOfStatementExpected);
}

void Parser::statement(Block& out) {
    const Nested guard(*this);
    if (is(Tok::Keyword)) {
        keywordStatement(out);
    } else if (is(Word::Property) && atProperty()) {
        failAt(errors::outsideClass, tok().at);
    } else if (is(Tok::Name) || is(Tok::Dot)) {
        assignmentOrCall(out);
    } else {
        fail(is(Tok::Literal) ? errors::statementExpected : errors::syntax);
    }
}

void Parser::keywordStatement(Block& out) {
    switch (wordOf(tok().atom)) {
    case Word::Set:
        return setStatement(out);
    case Word::Call:
        return callStatement(out);
    case Word::If:
        return ifStatement(out);
    case Word::Select:
        return selectStatement(out);
    case Word::For:
        return forStatement(out);
    case Word::Do:
        return doStatement(out);
    case Word::While:
        return whileStatement(out);
    case Word::With:
        return withStatement(out);
    case Word::Exit:
        return exitStatement(out);
    case Word::On:
        return onError(out);
    case Word::Erase:
        return eraseStatement(out);
    case Word::ReDim:
        return redimStatement(out);
    case Word::Stop:
        ++at_;
        return;
    case Word::Me:
        return assignmentOrCall(out);
    default:
        return declaration();
    }
}

void Parser::assignmentOrCall(Block& out) {
    Stmt* s = node(StmtKind::Call);
    std::size_t beforeParens = at_;
    Expr* beforeLast = nullptr; // the target without its last "(...)"
    Expr* e = nullptr;
    if (is(Tok::Dot)) {
        e = memberOf(nullptr);
    } else {
        e = node(is(Word::Me) && is(Tok::Keyword) ? ExprKind::Me : ExprKind::Name, tok().at);
        if (e->kind == ExprKind::Me && !class_ && !me_) fail(errors::invalidMe);
        e->name = list_.tokens[at_++].atom;
        if (e->name == atomOf(Word::Execute)) scope_->executes = true;
    }
    while (is(Tok::LParen) || (is(Tok::Dot) && !dotOfArgument())) {
        beforeParens = is(Tok::LParen) ? at_ : 0;
        beforeLast = e;
        e = suffix(e);
    }
    out.push_back(s);
    if (accept(Tok::Equal)) {
        s->kind = StmtKind::Assign;
        s->a = e;
        noteAssigned(e);
        s->b = expression();
        return;
    }
    const bool parens = beforeLast && beforeParens != 0 && e->kind == ExprKind::Call;
    bareCall(s, e, parens ? beforeParens : 0);
}

// Under With, "S .a" hands over a member of its object. Behind ")" no argument can begin.
bool Parser::dotOfArgument() const {
    const Tok before = list_.tokens[at_ - 1].kind;
    return withs_ > 0 && tok().spaceBefore && before == Tok::Name;
}

// "S a, b", "S (a)", "S (a) * 3, b": whether the parentheses belong to the call or to the first
// argument shows only behind them. `parens` is where they open, 0 without any.
void Parser::bareCall(Stmt* s, Expr* target, std::size_t parens) {
    const bool more = atOperand();
    if (parens == 0) {
        s->a = more ? argumentList(target) : target;
        return;
    }
    if (!more) {
        if (target->args.size() > 1) failAt(errors::parenthesesOfSub, s->at);
        for (Expr* arg : target->args)
            arg->parens = true;
        s->a = target;
        return;
    }
    at_ = parens;
    s->a = argumentList(target->left);
}

// Only plain names and their elements: the rest never makes a variable.
void Parser::noteAssigned(const Expr* target) {
    while (target->kind == ExprKind::Call)
        target = target->left;
    if (target->kind == ExprKind::Name) scope_->assigned.push_back(target->name);
}

void Parser::notePassed(const Expr* arg) {
    if (arg->kind == ExprKind::Name && !arg->parens) scope_->passed.push_back(arg->name);
}

Expr* Parser::argumentList(Expr* callee) {
    Expr* call = node(ExprKind::Call, callee->at);
    call->left = callee;
    raise(call, callee);
    do {
        const bool left = is(Tok::Comma) || !atOperand();
        call->args.push_back(left ? node(ExprKind::Missing, tok().at) : expression());
        notePassed(call->args.back());
        raise(call, call->args.back());
    } while (accept(Tok::Comma));
    return call;
}

void Parser::callStatement(Block& out) {
    Stmt* s = node(StmtKind::Call);
    ++at_;
    const bool object = is(Tok::LParen) || (is(Word::New) && is(Tok::Keyword));
    if (!object && !is(Tok::Name) && !is(Tok::Dot) && !is(Word::Me))
        fail(errors::identifierExpected);
    s->a = primary();
    out.push_back(s);
}

void Parser::setStatement(Block& out) {
    Stmt* s = node(StmtKind::Set);
    ++at_;
    if (!is(Tok::Name) && !is(Tok::Dot) && !is(Word::Me)) fail(errors::identifierExpected);
    s->a = primary();
    if (s->a->kind == ExprKind::Me) fail(errors::syntax);
    noteAssigned(s->a);
    expect(Tok::Equal, errors::equalExpected);
    s->b = expression();
    out.push_back(s);
}

void Parser::ifStatement(Block& out) {
    Stmt* s = node(StmtKind::If);
    out.push_back(s);
    ++at_;
    Clause& first = s->clauses.emplace_back();
    first.at = s->at;
    first.condition = expression();
    expect(Word::Then, errors::thenExpected);
    const bool colon = is(Tok::Colon) && !endOfLineAhead();
    thenColons_ = thenColons_ || colon;
    if (endOfLineAhead() || (colon && !colonMeansLine_))
        blockIf(s);
    else
        lineIf(s);
}

void Parser::blockIf(Stmt* s) {
    const int lineIfs = lineIfs_;
    lineIfs_ = 0;
    for (;;) {
        block(s->clauses.back().body);
        const Position at = tok().at;
        if (accept(Word::ElseIf)) {
            elseLine_ = at.line;
            Clause& c = s->clauses.emplace_back();
            c.at = at;
            c.condition = expression();
            expect(Word::Then, errors::thenExpected);
        } else if (accept(Word::Else)) {
            if (!s->clauses.back().condition) failAt(errors::syntax, at);
            elseLine_ = at.line;
            s->clauses.emplace_back().at = at;
        } else {
            break;
        }
    }
    closing(Word::If, errors::ifExpected);
    lineIfs_ = lineIfs;
}

void Parser::lineIf(Stmt* s) {
    ++lineIfs_;
    inlineStatements(s->clauses.back().body);
    while (is(Word::Else) || is(Word::ElseIf)) {
        Clause& c = s->clauses.emplace_back();
        c.at = tok().at;
        const bool chained = is(Word::ElseIf);
        ++at_;
        if (chained) {
            c.condition = expression();
            expect(Word::Then, errors::thenExpected);
        }
        inlineStatements(c.body);
        if (!chained) break;
    }
    if (is(Word::End) && is(Word::If, 1)) at_ += 2;
    --lineIfs_;
}

void Parser::inlineStatements(Block& out) {
    for (;;) {
        while (accept(Tok::Colon)) {
        }
        if (is(Tok::Newline) || is(Tok::End) || is(Word::Else) || is(Word::ElseIf)) return;
        if (is(Word::End) && is(Word::If, 1)) return;
        // "For ... : If x Then y : Next" on one line: Next belongs to the loop.
        if (atBlockEnd()) return;
        statement(out);
        if (is(Tok::Colon) || is(Tok::Newline) || is(Tok::End) || closesOnSameLine()) continue;
        fail(errors::endOfStatementExpected);
    }
}

void Parser::closing(Word w, int error) {
    expect(Word::End, errors::endExpected);
    expect(w, error);
}

void Parser::selectStatement(Block& out) {
    Stmt* s = node(StmtKind::Select);
    out.push_back(s);
    ++at_;
    expect(Word::Case, errors::caseExpected);
    s->a = expression();
    if (!is(Tok::Newline) && !is(Tok::Colon)) fail(errors::endOfStatementExpected);
    skipSeparators();
    const int lineIfs = lineIfs_;
    lineIfs_ = 0;
    while (is(Word::Case))
        caseBlock(s);
    closing(Word::Select, errors::selectExpected);
    lineIfs_ = lineIfs;
}

void Parser::caseBlock(Stmt* s) {
    const bool afterElse = !s->clauses.empty() && s->clauses.back().values.empty();
    if (afterElse) fail(errors::syntax);
    Clause& c = s->clauses.emplace_back();
    c.at = tok().at;
    ++at_;
    if (!accept(Word::Else)) {
        do
            c.values.push_back(expression());
        while (accept(Tok::Comma));
    }
    block(c.body);
}

/// The beginning that both kinds of For share: the variable, which is a name alone.
Stmt* Parser::loopOverName(StmtKind kind, Block& out, Position at) {
    Stmt* s = node(kind);
    s->at = at;
    out.push_back(s);
    s->a = node(ExprKind::Name, tok().at);
    s->a->name = name();
    noteAssigned(s->a);
    if (is(Tok::Dot) || is(Tok::LParen)) fail(errors::invalidLoopVariable);
    return s;
}

void Parser::untilNext(Stmt& s) {
    ++loopsFor_;
    block(s.body);
    --loopsFor_;
    s.closing = tok().at;
    expect(Word::Next, errors::nextExpected);
}

void Parser::forStatement(Block& out) {
    const Position at = tok().at;
    ++at_;
    if (accept(Word::Each)) return forEach(out, at);
    Stmt* s = loopOverName(StmtKind::For, out, at);
    expect(Tok::Equal, errors::equalExpected);
    s->b = expression();
    expect(Word::To, errors::toExpected);
    s->c = expression();
    if (accept(Word::Step)) s->d = expression();
    untilNext(*s);
}

void Parser::forEach(Block& out, Position at) {
    Stmt* s = loopOverName(StmtKind::ForEach, out, at);
    expect(Word::In, errors::inExpected);
    s->b = expression();
    untilNext(*s);
}

void Parser::doStatement(Block& out) {
    Stmt* s = node(StmtKind::Do);
    out.push_back(s);
    ++at_;
    if (is(Word::While) || is(Word::Until)) {
        s->untilBefore = is(Word::Until);
        ++at_;
        s->a = expression();
    }
    if (!is(Tok::Newline) && !is(Tok::Colon)) fail(errors::whileUntilOrEndExpected);
    ++loopsDo_;
    block(s->body);
    --loopsDo_;
    s->closing = tok().at;
    expect(Word::Loop, errors::loopExpected);
    if (s->a || (!is(Word::While) && !is(Word::Until))) return;
    s->untilAfter = is(Word::Until);
    ++at_;
    s->b = expression();
}

void Parser::whileStatement(Block& out) {
    Stmt* s = node(StmtKind::Do);
    out.push_back(s);
    ++at_;
    s->a = expression();
    block(s->body);
    s->closing = tok().at;
    expect(Word::Wend, errors::wendExpected);
}

void Parser::withStatement(Block& out) {
    Stmt* s = node(StmtKind::With);
    out.push_back(s);
    ++at_;
    s->a = expression();
    ++withs_;
    block(s->body);
    --withs_;
    closing(Word::With, errors::withExpected);
}

void Parser::exitStatement(Block& out) {
    Stmt* s = node(StmtKind::ExitProcedure);
    out.push_back(s);
    ++at_;
    const ProcKind kind = proc_ ? proc_->kind : ProcKind::Main;
    bool right = false;
    if (is(Word::Do)) {
        s->kind = StmtKind::ExitDo;
        right = loopsDo_ > 0;
    } else if (is(Word::For)) {
        s->kind = StmtKind::ExitFor;
        right = loopsFor_ > 0;
    } else if (is(Word::Sub)) {
        right = kind == ProcKind::Sub;
    } else if (is(Word::Function)) {
        right = kind == ProcKind::Function;
    } else if (is(Word::Property)) {
        right = kind == ProcKind::Get || kind == ProcKind::Let || kind == ProcKind::Set;
    }
    if (!right) failAt(errors::invalidExit, s->at);
    ++at_;
}

void Parser::onError(Block& out) {
    Stmt* s = node(StmtKind::ResumeNext);
    out.push_back(s);
    ++at_;
    expect(Word::Error, errors::syntax);
    if (accept(Word::Resume)) {
        expect(Word::Next, errors::nextExpected);
        return;
    }
    expect(Word::GoTo, errors::syntax);
    const bool zero = is(Tok::Literal) && list_.literals[tok().literal].is(Type::Integer) &&
                      list_.literals[tok().literal].i == 0;
    if (!zero) fail(errors::syntax);
    ++at_;
    s->kind = StmtKind::GotoZero;
}

void Parser::eraseStatement(Block& out) {
    Stmt* s = node(StmtKind::Erase);
    out.push_back(s);
    ++at_;
    do
        s->list.push_back(primary());
    while (accept(Tok::Comma));
}

void Parser::redimStatement(Block& out) {
    Stmt* s = node(StmtKind::ReDim);
    out.push_back(s);
    ++at_;
    if (is(Word::Preserve) && tok(1).kind != Tok::LParen) {
        s->preserve = true;
        ++at_;
    }
    do {
        if (!is(Tok::Name) && !is(Tok::Dot) && !is(Word::Me)) fail(errors::identifierExpected);
        Expr* e = primary();
        if (e->kind != ExprKind::Call || e->args.empty()) failAt(errors::leftParenExpected, e->at);
        noteAssigned(e);
        if (e->left->kind == ExprKind::Name) scope_->redimmed.push_back(e->left->name);
        s->list.push_back(e);
    } while (accept(Tok::Comma));
}

} // namespace vbscript
