// SPDX-License-Identifier: Apache-2.0
#include "vbscript/syntax/parser_impl.h"

#include "vbscript/surroundings/errors.h"

#include <algorithm>

namespace vbscript {

namespace {

struct Binding {
    int level; ///< Binds tighter the higher; 0: no binary operator.
    Operator op;
};

constexpr int notLevel = 6;
constexpr int compareLevel = 7;

Binding bindingOf(const Token& t) {
    switch (t.kind) {
    case Tok::Star:
        return {12, Operator::Multiply};
    case Tok::Slash:
        return {12, Operator::Divide};
    case Tok::Backslash:
        return {11, Operator::IntDivide};
    case Tok::Plus:
        return {9, Operator::Add};
    case Tok::Minus:
        return {9, Operator::Subtract};
    case Tok::Ampersand:
        return {8, Operator::Concat};
    case Tok::Equal:
        return {compareLevel, Operator::Equal};
    case Tok::NotEqual:
        return {compareLevel, Operator::NotEqual};
    case Tok::Less:
        return {compareLevel, Operator::Less};
    case Tok::Greater:
        return {compareLevel, Operator::Greater};
    case Tok::LessEqual:
        return {compareLevel, Operator::LessEqual};
    case Tok::GreaterEqual:
        return {compareLevel, Operator::GreaterEqual};
    case Tok::Keyword:
        break;
    default:
        return {0, Operator::Add};
    }
    switch (wordOf(t.atom)) {
    case Word::Mod:
        return {10, Operator::Modulo};
    case Word::Is:
        return {compareLevel, Operator::Is};
    case Word::And:
        return {5, Operator::And};
    case Word::Or:
        return {4, Operator::Or};
    case Word::Xor:
        return {3, Operator::Xor};
    case Word::Eqv:
        return {2, Operator::Eqv};
    case Word::Imp:
        return {1, Operator::Imp};
    default:
        return {0, Operator::Add};
    }
}

} // namespace

Expr* Parser::node(ExprKind kind, Position at) {
    constexpr std::size_t cost = 200; // as Runtime::spend counts
    if (run_) run_->spend(cost);
    Expr& e = module_->exprs.emplace_back();
    e.kind = kind;
    e.at = at;
    return &e;
}

void Parser::raise(Expr* e, const Expr* below, int by) const {
    const int height = std::max<int>(e->height, below->height + by);
    if (height > highestTree) tooDeep();
    e->height = static_cast<std::uint16_t>(height);
}

Expr* Parser::binary(Operator op, Position at, Expr* left, Expr* right) {
    Expr* e = node(ExprKind::Binary, at);
    e->op = op;
    e->left = left;
    e->right = right;
    // A chain of "&" is compiled as one step, however long it is.
    const bool chain = op == Operator::Concat && left->kind == ExprKind::Binary &&
                       left->op == Operator::Concat && !left->parens;
    raise(e, left, chain ? 0 : 1);
    raise(e, right);
    return e;
}

Expr* Parser::expression(int level) {
    Expr* left = unary();
    for (;;) {
        const Token& t = tok();
        const Binding b = bindingOf(t);
        if (b.level == 0 || b.level <= level) return left;
        ++at_;
        left = binary(b.op, t.at, left, expression(b.level));
    }
}

Expr* Parser::unary() {
    if (!is(Word::Not)) return powers();
    const Nested guard(*this);
    Expr* e = node(ExprKind::Unary, tok().at);
    ++at_;
    e->op = Operator::Not;
    e->right = expression(notLevel);
    raise(e, e->right);
    return e;
}

Expr* Parser::powers() {
    Expr* left = signedOperand();
    while (is(Tok::Caret)) {
        const Position at = tok().at;
        ++at_;
        left = binary(Operator::Power, at, left, signedOperand());
    }
    return left;
}

// The sign binds tighter than "^": -3^2 is 9.
Expr* Parser::signedOperand() {
    if (!is(Tok::Minus) && !is(Tok::Plus)) return primary();
    const Nested guard(*this);
    Expr* e = node(ExprKind::Unary, tok().at);
    e->op = is(Tok::Minus) ? Operator::Negate : Operator::Plus;
    ++at_;
    e->right = signedOperand();
    raise(e, e->right);
    return e;
}

Expr* Parser::primary() {
    const Nested guard(*this);
    const Token t = tok();
    switch (t.kind) {
    case Tok::Literal: {
        ++at_;
        Expr* e = node(ExprKind::Literal, t.at);
        e->literal = list_.literals[t.literal];
        return e;
    }
    case Tok::Name: {
        ++at_;
        Expr* e = node(ExprKind::Name, t.at);
        e->name = t.atom;
        if (t.atom == atomOf(Word::Execute) || t.atom == atomOf(Word::Eval))
            scope_->executes = true;
        return suffixes(e);
    }
    case Tok::Dot:
        return suffixes(memberOf(nullptr));
    case Tok::LParen: {
        ++at_;
        Expr* e = expression();
        expect(Tok::RParen, errors::rightParenExpected);
        e->parens = true;
        return suffixes(e);
    }
    case Tok::Keyword:
        return keywordOperand();
    default:
        fail(t.kind == Tok::End || t.kind == Tok::Newline ? errors::syntax
                                                          : errors::expressionExpected);
    }
}

Expr* Parser::keywordOperand() {
    const Token t = tok();
    Value v;
    switch (wordOf(t.atom)) {
    case Word::True:
        v = Value::boolean(true);
        break;
    case Word::False:
        v = Value::boolean(false);
        break;
    case Word::Empty:
        break;
    case Word::Null:
        v = Value::null();
        break;
    case Word::Nothing:
        v = Value::nothing();
        break;
    case Word::Me: {
        if (!class_ && !me_) fail(errors::invalidMe);
        ++at_;
        return suffixes(node(ExprKind::Me, t.at));
    }
    case Word::New: {
        ++at_;
        Expr* e = node(ExprKind::New, t.at);
        e->name = name();
        return is(Tok::Dot) ? suffixes(e) : e;
    }
    case Word::Not:
        return unary();
    default:
        fail(errors::syntax);
    }
    ++at_;
    Expr* e = node(ExprKind::Literal, t.at);
    e->literal = v;
    return e;
}

Expr* Parser::suffixes(Expr* e) {
    while (is(Tok::LParen) || is(Tok::Dot))
        e = suffix(e);
    return e;
}

Expr* Parser::suffix(Expr* e) { return is(Tok::Dot) ? memberOf(e) : callOf(e); }

Expr* Parser::memberOf(Expr* left) {
    Expr* e = node(ExprKind::Member, tok().at);
    ++at_;
    e->left = left;
    e->name = name();
    if (left) raise(e, left);
    return e;
}

Expr* Parser::callOf(Expr* callee) {
    const Nested guard(*this);
    Expr* e = node(ExprKind::Call, callee->at);
    ++at_;
    e->left = callee;
    raise(e, callee);
    if (accept(Tok::RParen)) return e;
    for (;;) {
        const bool left = is(Tok::Comma) || is(Tok::RParen);
        e->args.push_back(left ? node(ExprKind::Missing, tok().at) : expression());
        notePassed(e->args.back());
        raise(e, e->args.back());
        if (accept(Tok::RParen)) return e;
        expect(Tok::Comma, errors::rightParenExpected);
    }
}

bool Parser::atOperand() const {
    switch (tok().kind) {
    case Tok::End:
    case Tok::Newline:
    case Tok::Colon:
        return false;
    case Tok::Keyword:
        return !is(Word::Else) && !is(Word::ElseIf) && !is(Word::End);
    default:
        return true;
    }
}

} // namespace vbscript
