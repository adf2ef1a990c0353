// SPDX-License-Identifier: Apache-2.0
#include "vbscript/compile/compiler_impl.h"

#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"

#include <algorithm>

namespace vbscript {

Compiler::Compiler(const CompileContext& context, const Module& module,
                   std::optional<LiveFrame> live)
    : context_(context), module_(module), live_(live), unit_(std::make_shared<Unit>()) {}

void Compiler::fail(int number, Position at) {
    throw CompileFault{number, static_cast<int>(at.line), static_cast<int>(at.column), {}};
}

std::shared_ptr<Unit> Compiler::run() {
    declareNames();
    std::size_t k = 0;
    for (const ProcDecl* p : module_.procs)
        compileProc(unit_->procs[k++], *p);
    for (std::size_t c = 0; c < module_.classes.size(); ++c) {
        class_ = &unit_->classes[c];
        for (const ProcDecl* p : module_.classes[c]->procs)
            compileProc(unit_->procs[k++], *p);
        class_ = nullptr;
    }
    unit_->main = &unit_->procs.emplace_back();
    compileProc(*unit_->main, module_.main);
    return unit_;
}

// Everything that the text declares is known before any of it is compiled: procedures, classes
// and constants may be used above their line.
void Compiler::declareNames() {
    const bool inside = live_.has_value();
    auto& globals = context_.globals;
    for (const ProcDecl* p : module_.procs) {
        Proc& proc = unit_->procs.emplace_back();
        const std::uint32_t slot = globals.slot(p->name);
        declareOnce(p->name, p->at, true);
        Meaning& m = declared_[p->name];
        m.kind = Meaning::Procedure;
        m.index = slot;
        unit_->declares.push_back({slot, &proc, nullptr, nullptr});
    }
    for (const ClassDecl* c : module_.classes) {
        declareOnce(c->name, c->at, false);
        ClassInfo& info = unit_->classes.emplace_back();
        declareClass(*c, info);
        const std::uint32_t slot = globals.slot(c->name);
        Meaning& m = declared_[c->name];
        m.kind = Meaning::Class;
        m.index = slot;
        unit_->declares.push_back({slot, nullptr, &info, nullptr});
    }
    if (inside) return; // its variables and constants belong to the frame
    for (const Declared& d : module_.main.scope.constants) {
        declareOnce(d.name, d.at, false);
        Value& kept = unit_->constants.emplace_back(d.value);
        const std::uint32_t slot = globals.slot(d.name);
        Meaning& m = declared_[d.name];
        m.kind = Meaning::Constant;
        m.index = slot;
        unit_->declares.push_back({slot, nullptr, nullptr, &kept});
    }
    for (const Declared& d : module_.main.scope.variables) {
        declareOnce(d.name, d.at, false);
        Meaning& m = declared_[d.name];
        m.kind = Meaning::Variable;
        m.index = globals.slot(d.name);
    }
}

void Compiler::declareOnce(Atom name, Position at, bool procedure) {
    const auto known = declared_.find(name);
    if (known == declared_.end()) return;
    // Of two procedures the last wins; anything else clashes.
    if (!procedure || known->second.kind != Meaning::Procedure) fail(errors::nameRedefined, at);
}

void Compiler::declareClass(const ClassDecl& decl, ClassInfo& info) {
    info.name = decl.name;
    info.unit = unit_.get();
    for (const Declared& d : decl.scope.variables) {
        Member& m = info.members[d.name];
        if (m.variable >= 0) fail(errors::nameRedefined, d.at);
        m.variable = static_cast<int>(info.variables.size());
        m.variablePublic = d.isPublic;
        MemberVariable v{d.name, d.isArray, {}};
        for (const Expr* e : d.bounds) {
            v.extents.push_back(static_cast<std::uint32_t>(e->literal.i) + 1);
        }
        info.variables.push_back(std::move(v));
    }
    for (const Declared& d : decl.scope.constants) {
        Member& m = info.members[d.name];
        if (m.variable >= 0 || m.constant) fail(errors::nameRedefined, d.at);
        m.constant = &unit_->constants.emplace_back(d.value);
    }
    declareMembers(decl, info);
}

void Compiler::declareMembers(const ClassDecl& decl, ClassInfo& info) {
    for (const ProcDecl* p : decl.procs) {
        Proc& proc = unit_->procs.emplace_back();
        proc.owner = &info;
        Member& m = info.members[p->name];
        if (p->kind == ProcKind::Let) {
            m.let = &proc;
            m.letPublic = p->isPublic;
        } else if (p->kind == ProcKind::Set) {
            m.set = &proc;
            m.setPublic = p->isPublic;
        } else {
            m.get = &proc;
            m.getPublic = p->isPublic;
        }
        if (p->kind == ProcKind::Sub && p->name == atomOf(Word::Class_Initialize))
            info.initialize = &proc;
        if (p->kind == ProcKind::Sub && p->name == atomOf(Word::Class_Terminate))
            info.terminate = &proc;
    }
    for (const ProcDecl* p : decl.procs) {
        if (p->isDefault) info.defaultMember = &info.members[p->name];
    }
}

void Compiler::compileProc(Proc& proc, const ProcDecl& decl) {
    body_ = Body();
    body_.proc = &proc;
    body_.decl = &decl;
    proc.unit = unit_.get();
    proc.name = decl.name;
    proc.kind = decl.kind;
    proc.parameters = decl.parameters;
    proc.arity = static_cast<std::uint32_t>(decl.parameters.size());
    for (const Parameter& p : decl.parameters)
        proc.copies = proc.copies || !p.byRef;
    proc.at = decl.at;
    enterScope(decl);
    beginLeaf(decl.at);
    makeAutomatic(decl);
    endLeaf();
    block(decl.body);
    if (decl.kind == ProcKind::Main && module_.expression) {
        proc.result = newLocal();
        beginLeaf(module_.expression->at);
        valueTo(module_.expression, proc.result);
        endLeaf();
    }
    emit(Op::Return);
    finish();
}

void Compiler::enterScope(const ProcDecl& decl) {
    for (const Parameter& p : decl.parameters) {
        const Operand o = newLocal();
        body_.locals[p.name] = p.byRef ? o | operand::follow : o;
    }
    if (decl.kind == ProcKind::Main) return;
    if (decl.kind == ProcKind::Function || decl.kind == ProcKind::Get) {
        body_.proc->result = newLocal();
        body_.locals.emplace(decl.name, body_.proc->result);
    }
    for (const Declared& d : decl.scope.variables) {
        if (body_.locals.count(d.name) && d.name != decl.name) fail(errors::nameRedefined, d.at);
        if (!body_.locals.count(d.name)) body_.locals[d.name] = newLocal();
    }
    for (const Declared& d : decl.scope.constants) {
        if (body_.locals.count(d.name) || body_.constants.count(d.name))
            fail(errors::nameRedefined, d.at);
        body_.constants[d.name] = constant(d.value);
    }
}

// Names that get a value without being declared, and arrays, are set up before the first line.
void Compiler::makeAutomatic(const ProcDecl& decl) {
    const bool isMain = decl.kind == ProcKind::Main;
    if (isMain && live_) {
        for (const Declared& d : decl.scope.constants)
            body_.constants[d.name] = constant(d.value);
        for (const Declared& d : decl.scope.variables) {
            if (liveName(d.name).kind != Meaning::Unknown) continue;
            live_->extra->make(d.name);
        }
    }
    for (const Declared& d : decl.scope.variables) {
        const Meaning m = meaning(d.name);
        if (d.isArray) emit(Op::Dim, variable(m), 0, shape(d), isMain && !live_ ? 1 : 0);
        if (isMain && !live_) context_.globals[m.index].defined = true;
    }
    for (const Atom name : decl.scope.redimmed)
        makeAutomatic(name, isMain);
    if (module_.optionExplicit) return;
    for (const Atom name : decl.scope.assigned)
        makeAutomatic(name, isMain);
    // At module level an argument that nobody knows yet needs no more than its global.
    if (isMain) return;
    for (const Atom name : decl.scope.passed)
        makeAutomatic(name, false);
}

void Compiler::makeAutomatic(Atom name, bool isMain) {
    const Meaning m = meaning(name);
    if (m.kind != Meaning::Unknown) return;
    if (isMain && live_) {
        live_->extra->make(name);
    } else if (isMain) {
        context_.globals[m.index].defined = true;
    } else {
        const Operand o = newLocal();
        body_.locals[name] = o | operand::follow;
        emit(Op::BindAuto, o, 0, m.index);
    }
}

std::uint32_t Compiler::shape(const Declared& d) {
    ArrayShape s{{}, !d.bounds.empty()};
    for (const Expr* e : d.bounds)
        s.extents.push_back(static_cast<std::uint32_t>(e->literal.i) + 1);
    unit_->shapes.push_back(std::move(s));
    return static_cast<std::uint32_t>(unit_->shapes.size() - 1);
}

void Compiler::moveTemporaries(Instruction& i) const {
    const auto move = [&](std::uint32_t& f) {
        const std::uint32_t top = f >> 29;
        if ((top != 1 && top != 5) || f == operand::none) return;
        f = (f & ~operand::temporary) + body_.proc->locals;
    };
    move(i.a);
    move(i.b);
    move(i.c);
}

// A step of VBS_KINDS becomes the one that knows where its operands are.
void Compiler::specialize(Instruction& i) const {
    const bool gives = (i.op >= Op::Add && i.op <= Op::Modulo) || i.op == Op::Index1;
    const bool takes =
        (i.op >= Op::UnlessEqual && i.op <= Op::UnlessGreaterEqual) || i.op == Op::SetIndex1;
    if (!gives && !takes) return;
    const auto kindOf = [](Operand o) { return o & operand::kindMask; };
    Operand& first = gives ? i.b : i.a;
    Operand& second = gives ? i.c : i.b;
    if (gives && kindOf(i.a) != operand::local) return;
    if (kindOf(first) != operand::local && kindOf(first) != operand::follow) return;
    const Type literal = literalType(second);
    Kinds kinds = Kinds::R;
    if (literal == Type::Integer)
        kinds = Kinds::I;
    else if (literal == Type::Double)
        kinds = Kinds::D;
    else if (kindOf(second) != operand::local)
        return;
    i.op = static_cast<Op>(static_cast<int>(i.op) + static_cast<int>(kinds));
    first &= operand::indexMask;
    second &= operand::indexMask;
    if (kinds == Kinds::I) second = static_cast<Operand>(body_.proc->pool[second]->i);
}

Type Compiler::literalType(Operand o) const {
    const auto& literals = body_.literals;
    const bool literal = std::binary_search(literals.begin(), literals.end(), o);
    return literal ? body_.proc->pool[o & operand::indexMask]->type : Type::Empty;
}

void Compiler::finish() {
    Proc& p = *body_.proc;
    for (Instruction& i : p.code) {
        moveTemporaries(i);
        specialize(i);
    }
    p.registers = p.locals + body_.mostTemps + 1;
    p.names.assign(body_.locals.begin(), body_.locals.end());
    for (const auto& c : body_.constants)
        p.names.push_back(c);
    p.code.shrink_to_fit();
}

std::shared_ptr<Unit> compileModule(const CompileContext& context, const Module& module) {
    return Compiler(context, module, std::nullopt).run();
}

std::shared_ptr<Unit> compileInside(const CompileContext& context, const Module& module,
                                    LiveFrame live) {
    return Compiler(context, module, live).run();
}

} // namespace vbscript
