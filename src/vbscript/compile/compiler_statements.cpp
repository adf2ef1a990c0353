// SPDX-License-Identifier: Apache-2.0
#include "vbscript/compile/compiler_impl.h"

#include "vbscript/surroundings/errors.h"

#include <algorithm>

namespace vbscript {

std::size_t Compiler::emit(Op op, Operand a, Operand b, std::uint32_t c, std::size_t n) {
    constexpr std::size_t cost = 100; // as Runtime::spend counts
    if (context_.run) context_.run->spend(cost);
    body_.proc->code.push_back({op, static_cast<std::uint16_t>(n), a, b, c});
    return body_.proc->code.size() - 1;
}

void Compiler::beginLeaf(Position at) {
    body_.proc->regions.push_back({here(), here(), here(), at});
    body_.temps = 0;
    body_.dirty.clear();
    if (context_.lines) emit(Op::Line, 0, 0, at.line);
}

void Compiler::endLeaf() {
    clearDirty();
    Region& r = body_.proc->regions.back();
    r.end = r.resume = here();
}

void Compiler::clearDirty() {
    for (std::size_t k = 0; k < body_.locksUsed; ++k)
        emit(Op::Clear, body_.locks[k], 1);
    body_.locksUsed = 0;
    if (body_.dirty.empty()) return;
    const auto [low, high] = std::minmax_element(body_.dirty.begin(), body_.dirty.end());
    emit(Op::Clear, *low, *high - *low + 1);
    body_.dirty.clear();
}

Operand Compiler::temp() {
    const Operand o = operand::local | operand::temporary | body_.temps++;
    body_.mostTemps = std::max(body_.mostTemps, body_.temps);
    return o;
}

Operand Compiler::result(Operand want) {
    if (want != operand::none) return want;
    const Operand o = temp();
    body_.dirty.push_back(o);
    return o;
}

bool Compiler::isDirty(Operand o) const {
    return std::find(body_.dirty.begin(), body_.dirty.end(), o) != body_.dirty.end();
}

bool Compiler::steal(Operand from) {
    if (!isTemp(from)) return false;
    std::erase(body_.dirty, from);
    return true;
}

void Compiler::block(const Block& b) {
    for (const Stmt* s : b)
        statement(*s);
}

void Compiler::statement(const Stmt& s) {
    switch (s.kind) {
    case StmtKind::If:
        return ifStatement(s);
    case StmtKind::Select:
        return select(s);
    case StmtKind::For:
        return forStatement(s);
    case StmtKind::ForEach:
        return forEach(s);
    case StmtKind::Do:
        return doLoop(s);
    case StmtKind::With:
        return with(s);
    case StmtKind::ExitFor:
        return exitLoop(true);
    case StmtKind::ExitDo:
        return exitLoop(false);
    default:
        break;
    }
    beginLeaf(s.at);
    switch (s.kind) {
    case StmtKind::Assign:
    case StmtKind::Set:
        assign(s);
        break;
    case StmtKind::Call:
        callStatement(s.a);
        break;
    case StmtKind::ReDim:
        redim(s);
        break;
    case StmtKind::Erase:
        erase(s);
        break;
    case StmtKind::ExitProcedure:
        emit(Op::Return);
        break;
    case StmtKind::ResumeNext:
        emit(Op::ResumeNext);
        break;
    case StmtKind::GotoZero:
        emit(Op::GotoZero);
        break;
    default:
        break;
    }
    endLeaf();
}

namespace {

Op unlessOf(Operator op) {
    switch (op) {
    case Operator::Equal:
        return Op::UnlessEqual;
    case Operator::NotEqual:
        return Op::UnlessNotEqual;
    case Operator::Less:
        return Op::UnlessLess;
    case Operator::Greater:
        return Op::UnlessGreater;
    case Operator::LessEqual:
        return Op::UnlessLessEqual;
    default:
        return Op::UnlessGreaterEqual;
    }
}

std::size_t writtenFlags(Written left, Written right) {
    return static_cast<std::size_t>(left) | static_cast<std::size_t>(right) << 2;
}

} // namespace

// Jumps when the condition turns out as `jumpIf`; the caller says where to.
std::size_t Compiler::condition(const Expr* e, bool jumpIf) {
    const Mark mark(*this);
    const bool compares =
        e->kind == ExprKind::Binary && e->op >= Operator::Equal && e->op <= Operator::GreaterEqual;
    if (compares && !jumpIf) {
        const auto [l, r] = pair(e->left, e->right);
        std::size_t flags = writtenFlags(written(e->left), written(e->right));
        if (isDirty(l) && steal(l)) flags |= emptyFirst;
        if (isDirty(r) && steal(r)) flags |= emptySecond;
        if (body_.dirty.empty() && body_.locksUsed == 0)
            return emit(unlessOf(e->op), l, r, 0, flags);
        const auto plain = static_cast<Op>(static_cast<int>(Op::Equal) + static_cast<int>(e->op) -
                                           static_cast<int>(Operator::Equal));
        const Operand t = temp();
        emit(plain, t, l, r, flags);
        clearDirty();
        return emit(Op::JumpFalse, t);
    }
    const Operand v = value(e);
    const bool emptied = steal(v);
    if (!body_.dirty.empty() || body_.locksUsed != 0) {
        // The outcome is set aside beyond all that is emptied before it is looked at.
        for (const Operand d : body_.dirty)
            body_.temps = std::max(body_.temps, (d & ~operand::temporary) + 1);
        const Operand t = temp();
        emit(Op::Copy, t, v);
        if (emptied) body_.dirty.push_back(v);
        clearDirty();
        return emit(jumpIf ? Op::JumpTrue : Op::JumpFalse, t, 0, 0, 1);
    }
    return emit(jumpIf ? Op::JumpTrue : Op::JumpFalse, v, 0, 0, emptied ? 1 : 0);
}

void Compiler::ifStatement(const Stmt& s) {
    std::vector<std::size_t> ends;
    for (std::size_t k = 0; k < s.clauses.size(); ++k) {
        const Clause& c = s.clauses[k];
        if (!c.condition) {
            block(c.body);
            break;
        }
        beginLeaf(c.at);
        const std::size_t next = condition(c.condition, false);
        endLeaf();
        block(c.body);
        if (k + 1 < s.clauses.size()) ends.push_back(emit(Op::Jump));
        patch(next);
    }
    for (std::size_t j : ends)
        patch(j);
}

void Compiler::caseTests(const Clause& c, Operand chosen, Written how,
                         std::vector<std::size_t>& hits) {
    for (const Expr* e : c.values) {
        beginLeaf(e->at);
        {
            const Mark mark(*this);
            const Operand v = value(e);
            const Operand t = temp();
            emit(Op::Equal, t, chosen, v, writtenFlags(how, written(e)));
            clearDirty();
            hits.push_back(emit(Op::JumpTrue, t));
        }
        endLeaf();
    }
}

void Compiler::select(const Stmt& s) {
    const Operand chosen = newLocal();
    const std::size_t region = body_.proc->regions.size();
    beginLeaf(s.at);
    store(chosen, s.a, false);
    endLeaf();
    const Written how = written(s.a);
    std::vector<std::size_t> ends;
    for (const Clause& c : s.clauses) {
        if (c.values.empty()) {
            block(c.body);
            break;
        }
        std::vector<std::size_t> hits;
        auto test = body_.proc->regions.size();
        caseTests(c, chosen, how, hits);
        const std::size_t next = emit(Op::Jump);
        for (std::size_t h : hits)
            patch(h);
        // A test that fails goes in, as a condition does.
        for (; test < body_.proc->regions.size(); ++test)
            body_.proc->regions[test].resume = here();
        block(c.body);
        ends.push_back(emit(Op::Jump));
        patch(next);
    }
    for (std::size_t j : ends)
        patch(j);
    body_.proc->regions[region].resume = here();
    emit(Op::Clear, chosen, 1);
}

void Compiler::endLoop() {
    for (std::size_t j : body_.loops.back().exits)
        patch(j);
    body_.loops.pop_back();
}

void Compiler::exitLoop(bool isFor) {
    for (std::size_t k = body_.loops.size(); k > 0; --k) {
        Loop& l = body_.loops[k - 1];
        if (l.isFor != isFor) continue;
        l.exits.push_back(emit(Op::Jump));
        return;
    }
}

namespace {

/// The step of a loop when it is written as an Integer above 0, or not at all; else 0.
std::size_t upwards(const Expr* step) {
    if (!step) return 1;
    const Value& v = step->literal;
    const bool up = step->kind == ExprKind::Literal && v.is(Type::Integer) && v.i > 0;
    return up ? static_cast<std::size_t>(v.i) : 0;
}

} // namespace

void Compiler::forStatement(const Stmt& s) {
    const Operand limit = newLocal();
    const Operand step = newLocal();
    const Operand ready = newLocal();
    beginLeaf(s.at);
    emit(Op::Clear, limit, 3);
    const Meaning m = meaning(s.a->name);
    if (m.kind != Meaning::Variable && m.kind != Meaning::Unknown)
        emit(Op::Fail, 0, 0, 0, errors::illegalAssignment);
    const Operand v =
        m.kind == Meaning::Variable || m.kind == Meaning::Unknown ? variable(m) : temp();
    valueTo(s.b, ready);
    valueTo(s.c, limit);
    if (s.d)
        valueTo(s.d, step);
    else
        emit(Op::Copy, step, constant(Value::integer(1)));
    clearDirty();
    const std::size_t skip = emit(Op::ForPrepare, v, limit);
    endLeaf();
    body_.loops.push_back({true, {skip}});
    const std::uint32_t start = here();
    block(s.body);
    beginLeaf(s.closing);
    const std::size_t up = upwards(s.d);
    emit(up ? Op::ForNextUp : Op::ForNext, v, limit, start, up);
    endLeaf();
    endLoop();
}

void Compiler::forEach(const Stmt& s) {
    const Operand list = newLocal();
    newLocal(); // the index
    const std::size_t region = body_.proc->regions.size();
    beginLeaf(s.at);
    emit(Op::Clear, list, 2);
    const Meaning m = meaning(s.a->name);
    if (m.kind != Meaning::Variable && m.kind != Meaning::Unknown)
        emit(Op::Fail, 0, 0, 0, errors::illegalAssignment);
    const Operand v =
        m.kind == Meaning::Variable || m.kind == Meaning::Unknown ? variable(m) : newLocal();
    emit(Op::EachPrepare, list, value(s.b));
    endLeaf();
    body_.loops.push_back({true, {}});
    const std::size_t first = emit(Op::Jump);
    const std::uint32_t start = here();
    block(s.body);
    patch(first);
    beginLeaf(s.closing);
    emit(Op::EachNext, v, list, start);
    endLeaf();
    endLoop();
    body_.proc->regions[region].resume = here();
    emit(Op::Clear, list, 2);
}

void Compiler::doLoop(const Stmt& s) {
    body_.loops.push_back({false, {}});
    const std::uint32_t start = here();
    if (s.a) {
        beginLeaf(s.at);
        const std::size_t out = condition(s.a, s.untilBefore);
        endLeaf();
        body_.loops.back().exits.push_back(out);
    }
    block(s.body);
    if (!s.b) {
        beginLeaf(s.closing);
        emit(Op::Repeat, 0, 0, start);
        endLeaf();
    } else {
        const std::size_t region = body_.proc->regions.size();
        beginLeaf(s.closing);
        const std::size_t out = condition(s.b, s.untilAfter);
        emit(Op::Repeat, 0, 0, start);
        endLeaf();
        body_.proc->regions[region].resume = here();
        body_.loops.back().exits.push_back(out);
    }
    endLoop();
}

void Compiler::with(const Stmt& s) {
    const Operand object = newLocal();
    beginLeaf(s.at);
    emit(Op::Clear, object, 1);
    {
        const Mark mark(*this);
        emit(Op::WithObject, object, value(s.a));
    }
    endLeaf();
    body_.withs.push_back(object);
    block(s.body);
    body_.withs.pop_back();
    emit(Op::Clear, object, 1);
}

void Compiler::redim(const Stmt& s) {
    for (const Expr* e : s.list) {
        const Mark mark(*this);
        if (e->left->kind != ExprKind::Name) {
            emit(Op::Fail, 0, 0, 0, errors::typeMismatch);
            continue;
        }
        const Meaning m = meaning(e->left->name);
        if (m.kind != Meaning::Variable && m.kind != Meaning::Unknown) {
            emit(Op::Fail, 0, 0, 0, errors::illegalAssignment);
            continue;
        }
        const std::uint32_t base = values(e->args);
        emit(Op::ReDim, variable(m), base, 0, count(e->args, e->at) | (s.preserve ? flagBit : 0));
    }
}

void Compiler::erase(const Stmt& s) {
    for (const Expr* e : s.list) {
        const Mark mark(*this);
        emit(Op::Erase, place(e));
    }
}

} // namespace vbscript
