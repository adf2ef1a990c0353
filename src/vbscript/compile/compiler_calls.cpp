// SPDX-License-Identifier: Apache-2.0
#include "vbscript/compile/compiler_impl.h"

#include "vbscript/surroundings/errors.h"

#include <algorithm>

namespace vbscript {

namespace {
constexpr std::size_t itemsAtOnce = 100;
}

std::uint16_t Compiler::count(const std::vector<Expr*>& args, Position at) {
    if (args.size() > 255) fail(errors::syntax, at);
    return static_cast<std::uint16_t>(args.size());
}

// Arguments as values, in registers in a row; the caller's Mark frees them.
std::uint32_t Compiler::values(std::span<Expr* const> args) {
    const Operand base = operand::local | operand::temporary | body_.temps;
    for (const Expr* a : args)
        valueTo(a, temp());
    return base;
}

std::uint32_t Compiler::arguments(const std::vector<Expr*>& args) {
    const Operand base = operand::local | operand::temporary | body_.temps;
    for (const Expr* a : args)
        argumentTo(a, temp());
    return base;
}

// A variable or an element goes by reference; everything else, and what is written in
// parentheses, as a value.
void Compiler::argumentTo(const Expr* e, Operand to) {
    const bool element =
        e->kind == ExprKind::Call && e->left->kind == ExprKind::Name && !e->args.empty();
    if (e->parens || (e->kind != ExprKind::Name && !element)) return valueTo(e, to);
    const Meaning m = meaning(element ? e->left->name : e->name);
    if (m.kind == Meaning::Unknown && !m.undeclared) {
        if (element) return valueTo(e, to);
        emit(Op::RefName, to, 0, m.index);
        return;
    }
    if (m.kind != Meaning::Variable && m.kind != Meaning::Unknown) return valueTo(e, to);
    if (element && isRecursion(m, e->left)) return valueTo(e, to);
    const Operand v = variable(m);
    if (!element) {
        emit(Op::Ref, to, v);
        return;
    }
    // The register behind the indexes keeps the array's size while the callee runs; it must not be
    // one of those that become the callee's own.
    if (body_.locksUsed == body_.locks.size()) body_.locks.push_back(newLocal());
    const Operand lock = body_.locks[body_.locksUsed++];
    const Mark mark(*this);
    const std::uint32_t base = values(e->args);
    emit(Op::Element, to, v, base, count(e->args, e->at) | flagBit);
    emit(Op::Move, lock, base);
}

// Inside a function its name is the result; with parentheses, or as a statement, it calls again.
bool Compiler::isRecursion(const Meaning& m, const Expr* callee) const {
    return m.kind == Meaning::Variable && m.at == body_.proc->result &&
           body_.decl->kind != ProcKind::Main && callee->name == body_.proc->name;
}

Operand Compiler::call(const Expr* e, Operand want) {
    const Expr* callee = e->left;
    if (callee->kind == ExprKind::Member) return member(callee, &e->args, want, false);
    if (callee->kind == ExprKind::Name) {
        const Meaning m = meaning(callee->name);
        if (!isRecursion(m, callee)) return callNamed(m, callee, e->args, want);
        Meaning self;
        self.kind = class_ ? Meaning::Own : Meaning::Procedure;
        if (class_)
            self.own = &class_->members.at(callee->name);
        else
            self.index = context_.globals.slot(callee->name);
        return callNamed(self, callee, e->args, want);
    }
    const std::uint32_t before = body_.temps;
    const Operand v = value(callee);
    const Operand r = index(v, e->args, operand::none);
    if (want != operand::none) {
        emit(Op::Copy, want, r);
        body_.temps = before;
        return want;
    }
    return r;
}

Operand Compiler::index(Operand array, const std::vector<Expr*>& args, Operand want) {
    if (args.size() == 1 && args[0]->kind != ExprKind::Missing) {
        Operand i = operand::none;
        {
            const Mark mark(*this);
            i = value(args[0]);
        }
        const Operand r = result(want);
        emit(Op::Index1, r, array, i);
        return r;
    }
    std::uint32_t base = 0;
    {
        const Mark mark(*this);
        base = values(args);
    }
    const Operand r = result(want);
    emit(Op::Index, r, array, base, args.size());
    return r;
}

Operand Compiler::callNamed(const Meaning& m, const Expr* callee, const std::vector<Expr*>& args,
                            Operand want) {
    switch (m.kind) {
    case Meaning::Variable:
    case Meaning::Constant: {
        count(args, callee->at);
        return index(variable(m), args, want);
    }
    case Meaning::Function:
        return function(m.index, args, want, callee->at);
    case Meaning::Class:
        emit(Op::Fail, 0, 0, 0, errors::typeMismatch);
        return result(want);
    default:
        break;
    }
    if (m.undeclared) emit(Op::CheckDefined, 0, 0, m.index);
    std::uint32_t base = 0;
    {
        const Mark mark(*this);
        base = arguments(args);
    }
    const Operand r = result(want);
    const std::uint16_t n = count(args, callee->at);
    if (m.kind == Meaning::Own) {
        const Proc* p = m.own->get;
        if (!p) emit(Op::Fail, 0, 0, 0, errors::noSuchMember);
        body_.proc->callees.push_back(p);
        emit(Op::CallOwn, r, base, static_cast<std::uint32_t>(body_.proc->callees.size() - 1), n);
    } else {
        emit(m.kind == Meaning::Procedure ? Op::CallGlobal : Op::CallName, r, base, m.index, n);
    }
    return r;
}

Operand Compiler::special(Word w, const std::vector<Expr*>& args, Operand want, Position at) {
    if (args.size() != 1) fail(args.empty() ? errors::syntax : errors::endOfStatementExpected, at);
    Operand text = operand::none;
    {
        const Mark mark(*this);
        text = value(args[0]);
    }
    const Operand r = result(want);
    emit(Op::Execute, r, text, 0, w == Word::Execute ? 0 : w == Word::ExecuteGlobal ? 1 : 2);
    return r;
}

// Registers are few, and the items of an Array as many as one likes.
Operand Compiler::longArray(const std::vector<Expr*>& args, Operand want) {
    const Operand array = result(operand::none);
    emit(Op::NewArray, array, 0, static_cast<std::uint32_t>(args.size()));
    for (std::size_t from = 0; from < args.size(); from += itemsAtOnce) {
        const Mark mark(*this);
        const std::size_t n = std::min(itemsAtOnce, args.size() - from);
        const std::uint32_t base = values(std::span(args).subspan(from, n));
        emit(Op::Fill, array, base, static_cast<std::uint32_t>(from), n);
    }
    if (want == operand::none) return array;
    emit(Op::Move, want, array);
    return want;
}

Operand Compiler::function(std::uint32_t id, const std::vector<Expr*>& args, Operand want,
                           Position at) {
    const Atom name = context_.names.known(context_.builtins.at(id).name);
    const Word w = wordOf(name);
    if (w == Word::Execute || w == Word::ExecuteGlobal || w == Word::Eval)
        return special(w, args, want, at);
    if (w == Word::Array && args.size() > itemsAtOnce) return longArray(args, want);
    std::uint32_t base = 0;
    {
        const Mark mark(*this);
        base = values(args);
    }
    const Operand r = result(want);
    emit(Op::CallBuiltin, r, base, id, count(args, at));
    return r;
}

void Compiler::callStatement(const Expr* e) {
    const Mark mark(*this);
    static const std::vector<Expr*> noArguments;
    const bool called = e->kind == ExprKind::Call;
    const Expr* callee = called ? e->left : e;
    const auto& args = called ? e->args : noArguments;
    if (callee->kind == ExprKind::Member) {
        member(callee, &args, operand::none, true);
        return;
    }
    if (callee->kind == ExprKind::Name) {
        nameStatement(callee, args);
        return;
    }
    const Operand v = value(callee);
    const std::uint32_t base = values(args);
    emit(Op::CallValue, result(operand::none), v, base, count(args, e->at));
}

void Compiler::nameStatement(const Expr* callee, const std::vector<Expr*>& args) {
    Meaning m = meaning(callee->name);
    if (isRecursion(m, callee)) {
        m.kind = class_ ? Meaning::Own : Meaning::Procedure;
        if (class_)
            m.own = &class_->members.at(callee->name);
        else
            m.index = context_.globals.slot(callee->name);
    }
    if (m.kind == Meaning::Variable || m.kind == Meaning::Constant) {
        const Operand v = variable(m);
        const std::uint32_t base = values(args);
        emit(Op::CallValue, result(operand::none), v, base, count(args, callee->at));
        return;
    }
    callNamed(m, callee, args, operand::none);
}

} // namespace vbscript
