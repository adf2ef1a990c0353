// SPDX-License-Identifier: Apache-2.0
#include "vbscript/compile/compiler_impl.h"

#include "vbscript/surroundings/errors.h"

#include <algorithm>

namespace vbscript {

namespace {

bool numericLiteral(const Expr* e) {
    return e->kind == ExprKind::Literal && (e->literal.isInt() || e->literal.is(Type::Double));
}

Op opOf(Operator op) {
    switch (op) {
    case Operator::Add:
        return Op::Add;
    case Operator::Subtract:
        return Op::Subtract;
    case Operator::Multiply:
        return Op::Multiply;
    case Operator::Divide:
        return Op::Divide;
    case Operator::IntDivide:
        return Op::IntDivide;
    case Operator::Modulo:
        return Op::Modulo;
    case Operator::Power:
        return Op::Power;
    case Operator::Concat:
        return Op::Concat;
    case Operator::Equal:
        return Op::Equal;
    case Operator::NotEqual:
        return Op::NotEqual;
    case Operator::Less:
        return Op::Less;
    case Operator::Greater:
        return Op::Greater;
    case Operator::LessEqual:
        return Op::LessEqual;
    case Operator::GreaterEqual:
        return Op::GreaterEqual;
    case Operator::Is:
        return Op::Is;
    default:
        return Op::Logical;
    }
}

} // namespace

Written Compiler::written(const Expr* e) {
    if (e->kind == ExprKind::Unary && e->op != Operator::Not) {
        return numericLiteral(e->right) ? Written::Number : Written::Computed;
    }
    if (e->kind != ExprKind::Literal) return Written::Computed;
    if (numericLiteral(e)) return Written::Number;
    if (e->literal.is(Type::String)) return Written::Text;
    return e->literal.is(Type::Boolean) ? Written::Truth : Written::Computed;
}

// Whether evaluating it may run a procedure and so change variables.
bool Compiler::runsCode(const Expr* e) {
    switch (e->kind) {
    case ExprKind::Literal:
    case ExprKind::Me:
    case ExprKind::Missing:
        return false;
    case ExprKind::Unary:
        return runsCode(e->right);
    case ExprKind::Binary:
        return runsCode(e->right) || runsCode(e->left);
    case ExprKind::Name: {
        const auto kind = meaning(e->name).kind;
        return kind != Meaning::Variable && kind != Meaning::Constant && kind != Meaning::Function;
    }
    case ExprKind::Call: {
        // An index or a built-in function runs nothing as long as no object is about.
        if (e->left->kind != ExprKind::Name) return true;
        const Meaning m = meaning(e->left->name);
        const bool quiet = m.kind == Meaning::Function && e->left->name != atomOf(Word::Eval);
        return !quiet || std::any_of(e->args.begin(), e->args.end(),
                                     [&](const Expr* a) { return runsCode(a); });
    }
    default:
        return true;
    }
}

Operand Compiler::value(const Expr* e, Operand want) {
    switch (e->kind) {
    case ExprKind::Literal:
        return constant(e->literal);
    case ExprKind::Missing:
        return constant(Value::missing());
    case ExprKind::Name:
        return nameValue(e, want);
    case ExprKind::Member:
        return member(e, nullptr, want, false);
    case ExprKind::Call:
        return call(e, want);
    case ExprKind::Unary:
        return unary(e, want);
    case ExprKind::Binary:
        return binary(e, want);
    case ExprKind::Me: {
        const Operand r = result(want);
        emit(Op::This, r);
        return r;
    }
    case ExprKind::New:
        break;
    }
    const Operand r = result(want);
    emit(Op::New, r, 0, context_.globals.slot(e->name));
    return r;
}

void Compiler::valueTo(const Expr* e, Operand to) {
    const Mark mark(*this);
    const Operand v = value(e, to);
    if (v != to) emit(Op::Copy, to, v);
}

Operand Compiler::nameValue(const Expr* e, Operand want) {
    const Meaning m = meaning(e->name);
    switch (m.kind) {
    case Meaning::Variable:
    case Meaning::Constant:
        return variable(m);
    case Meaning::Unknown: {
        if (m.undeclared) return variable(m);
        const Operand r = result(want);
        const bool automatic = body_.decl->scope.executes && body_.decl->kind != ProcKind::Main;
        if (automatic) {
            const Operand local = newLocal();
            body_.locals[e->name] = local | operand::follow;
            emit(Op::LoadAuto, r, local, m.index);
        } else {
            emit(Op::LoadName, r, 0, m.index);
        }
        return r;
    }
    default:
        return callNamed(m, e, {}, want);
    }
}

// The left side is set aside when what stands right of it may change the variable.
std::pair<Operand, Operand> Compiler::pair(const Expr* left, const Expr* right) {
    Operand l = value(left);
    const bool isVariable = !isTemp(l) && left->kind != ExprKind::Literal;
    if (isVariable && runsCode(right)) {
        const Operand kept = result(operand::none);
        emit(Op::Copy, kept, l);
        l = kept;
    }
    return {l, value(right)};
}

std::vector<const Expr*> Compiler::chain(const Expr* e) {
    std::vector<const Expr*> parts;
    while (e->kind == ExprKind::Binary && e->op == Operator::Concat &&
           (parts.empty() || !e->parens)) {
        parts.push_back(e->right);
        e = e->left;
    }
    parts.push_back(e);
    std::reverse(parts.begin(), parts.end());
    return parts;
}

Operand Compiler::join(const Expr* e, Operand want) {
    const auto parts = chain(e);
    Operand kept = operand::none; // what is joined so far, when the chain is very long
    constexpr std::size_t atOnce = 100;
    std::size_t k = 0;
    while (k < parts.size()) {
        const Mark mark(*this);
        const Operand base = operand::local | operand::temporary | body_.temps;
        std::size_t n = 0;
        if (kept != operand::none) {
            emit(Op::Copy, temp(), kept);
            ++n;
        }
        for (; k < parts.size() && n < atOnce; ++n)
            valueTo(parts[k++], temp());
        emit(Op::Join, base, base, 0, n);
        kept = base;
    }
    // The last result lies in the register that follows those in use.
    const Operand r = result(want);
    if (r != kept) emit(Op::Let, r, kept, 0, 1);
    return r;
}

Operand Compiler::binary(const Expr* e, Operand want) {
    if (e->op == Operator::Concat && chain(e).size() > 2) return join(e, want);
    const std::uint32_t before = body_.temps;
    const auto [l, r] = pair(e->left, e->right);
    body_.temps = before;
    const bool comparison = e->op >= Operator::Equal && e->op <= Operator::GreaterEqual;
    std::size_t n = 0;
    if (comparison) {
        n = static_cast<std::size_t>(written(e->left)) | static_cast<std::size_t>(written(e->right))
                                                             << 2;
    } else if (opOf(e->op) == Op::Logical) {
        n = static_cast<std::size_t>(e->op);
    }
    const bool mayBeText = e->op == Operator::Add || e->op == Operator::Concat;
    const bool doneLeft = isDirty(l) && steal(l);
    const bool doneRight = isDirty(r) && steal(r);
    const Operand out = want != operand::none ? want : mayBeText ? result(want) : temp();
    // What the result replaces is no longer the operand's to be emptied.
    if (doneLeft && l != out) n |= emptyFirst;
    if (doneRight && r != out) n |= emptySecond;
    emit(opOf(e->op), out, l, r, n);
    return out;
}

Operand Compiler::unary(const Expr* e, Operand want) {
    if (e->op == Operator::Negate && numericLiteral(e->right)) {
        const Value& v = e->right->literal;
        if (v.is(Type::Double)) return constant(Value::real(-v.d));
        return constant(v.is(Type::Long) ? Value::longint(-v.i) : Value::integer(-v.i));
    }
    const std::uint32_t before = body_.temps;
    const Operand v = value(e->right);
    body_.temps = before;
    const Operand out = want != operand::none ? want : result(want);
    emit(e->op == Operator::Not      ? Op::Not
         : e->op == Operator::Negate ? Op::Negate
                                     : Op::Plus,
         out, v);
    return out;
}

void Compiler::objectTo(const Expr* object, Operand to) {
    if (object) return valueTo(object, to);
    if (body_.withs.empty())
        emit(Op::Fail, 0, 0, 0, errors::unqualified);
    else
        emit(Op::Copy, to, body_.withs.back());
}

Operand Compiler::member(const Expr* e, const std::vector<Expr*>* args, Operand want,
                         bool isStatement) {
    Operand base = operand::none;
    {
        const Mark mark(*this);
        base = temp();
        objectTo(e->left, base);
        if (args) {
            for (const Expr* a : *args)
                argumentTo(a, temp());
        }
    }
    const std::uint16_t n = args ? count(*args, e->at) : std::uint16_t{0};
    const Operand out = result(want);
    emit(Op::GetMember, out, base, e->name, n | (isStatement ? flagBit : 0));
    return out;
}

} // namespace vbscript
