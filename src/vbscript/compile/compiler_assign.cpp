// SPDX-License-Identifier: Apache-2.0
#include "vbscript/compile/compiler_impl.h"

#include "vbscript/surroundings/errors.h"

#include <algorithm>

namespace vbscript {

void Compiler::assign(const Stmt& s) {
    const Mark mark(*this);
    switch (s.a->kind) {
    case ExprKind::Name:
        return assignName(s);
    case ExprKind::Call:
        return assignIndexed(s);
    case ExprKind::Member:
        return assignMember(s.a->left, s.a->name, {}, s);
    default:
        emit(Op::Fail, 0, 0, 0, errors::illegalAssignment);
    }
}

void Compiler::assignName(const Stmt& s) {
    const Meaning m = meaning(s.a->name);
    switch (m.kind) {
    case Meaning::Variable:
    case Meaning::Unknown: {
        const bool isSet = s.kind == StmtKind::Set;
        if (m.host && !isSet) {
            const Operand object = temp();
            emit(Op::Copy, object, m.at);
            valueTo(s.b, temp());
            emit(Op::LetMember, 0, object, 0, 0);
            return;
        }
        const Operand target = variable(m);
        if (isSet || !append(target, s.a, s.b)) store(target, s.b, isSet);
        return;
    }
    case Meaning::Own:
        if (m.own->let || m.own->set) return assignMember(nullptr, s.a->name, {}, s);
        [[fallthrough]];
    default:
        emit(Op::Fail, 0, 0, 0, errors::illegalAssignment);
    }
}

// s = s & a & b: what is added goes behind the characters that are there.
bool Compiler::append(Operand target, const Expr* name, const Expr* e) {
    if (e->kind != ExprKind::Binary || e->op != Operator::Concat) return false;
    const auto parts = chain(e);
    const Expr* first = parts.front();
    if (first->kind != ExprKind::Name || first->name != name->name) return false;
    if (body_.proc->kind == ProcKind::Function && name->name == body_.proc->name &&
        target != body_.proc->result) {
        return false;
    }
    const bool safe =
        std::none_of(parts.begin() + 1, parts.end(), [&](const Expr* p) { return runsCode(p); });
    if (!safe || parts.size() > 200) return false;
    const Operand base = operand::local | operand::temporary | body_.temps;
    for (std::size_t k = 1; k < parts.size(); ++k)
        valueTo(parts[k], temp());
    emit(Op::Append, target, base, 0, parts.size() - 1);
    return true;
}

// One element of a variable: it can go where it belongs at once.
bool Compiler::plainIndex(const Expr* e) {
    if (e->kind != ExprKind::Call || e->left->kind != ExprKind::Name || e->args.size() != 1 ||
        e->args[0]->kind == ExprKind::Missing) {
        return false;
    }
    const Meaning m = meaning(e->left->name);
    return m.kind == Meaning::Variable && !isRecursion(m, e->left);
}

void Compiler::store(Operand target, const Expr* e, bool isSet) {
    const Mark mark(*this);
    if (isSet) {
        const Operand v = value(e);
        emit(Op::SetObject, target, v, 0, steal(v) ? 1 : 0);
        return;
    }
    // A result of an operator is never an object: it can go where it belongs at once.
    if (e->kind == ExprKind::Binary || e->kind == ExprKind::Unary) {
        const Operand v = value(e, target);
        if (v != target) emit(Op::Copy, target, v);
        return;
    }
    if (plainIndex(e)) {
        const Meaning m = meaning(e->left->name);
        const Operand array = variable(m);
        const Operand i = value(e->args[0]);
        emit(Op::Index1, target, array, i, 1);
        return;
    }
    const Operand v = value(e);
    emit(Op::Let, target, v, 0, steal(v) ? 1 : 0);
}

void Compiler::assignIndexed(const Stmt& s) {
    const Expr* callee = s.a->left;
    if (callee->kind == ExprKind::Member) {
        return assignMember(callee->left, callee->name, s.a->args, s);
    }
    if (callee->kind != ExprKind::Name) return assignElement(s);
    const Meaning m = meaning(callee->name);
    if (m.kind == Meaning::Own) return assignMember(nullptr, callee->name, s.a->args, s);
    if (m.kind != Meaning::Variable && m.kind != Meaning::Unknown) {
        emit(Op::Fail, 0, 0, 0,
             m.kind == Meaning::Constant ? errors::illegalAssignment : errors::typeMismatch);
        return;
    }
    const Operand array = variable(m);
    const bool isSet = s.kind == StmtKind::Set;
    if (s.a->args.size() == 1 && s.a->args[0]->kind != ExprKind::Missing) {
        const auto [index, v] = pair(s.a->args[0], s.b);
        std::size_t n = isSet ? 1 : 0;
        if (isDirty(index) && steal(index)) n |= emptyFirst;
        if (isDirty(v) && steal(v)) n |= emptySecond;
        emit(Op::SetIndex1, array, index, v, n);
        return;
    }
    const std::uint32_t base = values(s.a->args);
    valueTo(s.b, temp());
    emit(Op::SetIndex, array, base, 0, count(s.a->args, s.at) | (isSet ? flagBit : 0));
}

// a(0)(1) = x: the inner parts are followed to the element that is written.
void Compiler::assignElement(const Stmt& s) {
    const bool isSet = s.kind == StmtKind::Set;
    const std::uint32_t base = values(s.a->args);
    valueTo(s.b, temp());
    const Operand array = place(s.a->left);
    emit(Op::SetIndex, array, base, 0, count(s.a->args, s.at) | (isSet ? flagBit : 0));
}

Operand Compiler::place(const Expr* e) {
    if (e->kind == ExprKind::Name) {
        const Meaning m = meaning(e->name);
        if (m.kind == Meaning::Variable || m.kind == Meaning::Unknown) return variable(m);
    }
    if (e->kind == ExprKind::Call && e->left->kind != ExprKind::Member) {
        const bool named = e->left->kind == ExprKind::Name;
        const Meaning m = named ? meaning(e->left->name) : Meaning();
        if (!named || m.kind == Meaning::Variable || m.kind == Meaning::Unknown) {
            const Operand array = place(e->left);
            const Operand t = result(operand::none);
            const std::uint32_t base = values(e->args);
            emit(Op::Element, t, array, base, count(e->args, e->at));
            return (t & ~operand::kindMask) | operand::follow;
        }
    }
    return value(e);
}

void Compiler::assignMember(const Expr* object, Atom name, const std::vector<Expr*>& args,
                            const Stmt& s) {
    const Operand base = temp();
    if (s.a->kind == ExprKind::Name ||
        (s.a->kind == ExprKind::Call && s.a->left->kind == ExprKind::Name)) {
        emit(Op::This, base);
    } else {
        objectTo(object, base);
    }
    for (const Expr* a : args)
        valueTo(a, temp());
    valueTo(s.b, temp());
    const bool isSet = s.kind == StmtKind::Set;
    emit(isSet ? Op::SetMember : Op::LetMember, 0, base, name, count(args, s.at));
}

} // namespace vbscript
