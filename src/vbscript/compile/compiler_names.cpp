// SPDX-License-Identifier: Apache-2.0
#include "vbscript/compile/compiler_impl.h"

namespace vbscript {

Operand Compiler::newLocal() { return operand::local | body_.proc->locals++; }

Operand Compiler::poolOf(Value* v) {
    auto& pool = body_.proc->pool;
    // The same variable is mostly used again soon.
    const std::size_t from = pool.size() > 16 ? pool.size() - 16 : 0;
    for (std::size_t k = pool.size(); k > from; --k) {
        if (pool[k - 1] == v) return operand::pool | static_cast<Operand>(k - 1);
    }
    pool.push_back(v);
    return operand::pool | static_cast<Operand>(pool.size() - 1);
}

Operand Compiler::constant(const Value& v) {
    const Operand o = poolOf(&unit_->constants.emplace_back(v));
    body_.literals.push_back(o);
    return o;
}

Compiler::Meaning Compiler::meaning(Atom name) {
    Meaning m;
    const auto local = body_.locals.find(name);
    if (local != body_.locals.end()) {
        m.kind = Meaning::Variable;
        m.at = local->second;
        return m;
    }
    const auto fixed = body_.constants.find(name);
    if (fixed != body_.constants.end()) {
        m.kind = Meaning::Constant;
        m.at = fixed->second;
        return m;
    }
    if (class_ && (m = own(name)).kind != Meaning::Unknown) return m;
    if (live_ && (m = liveName(name)).kind != Meaning::Unknown) return m;
    if ((m = unitName(name)).kind != Meaning::Unknown) return m;
    if ((m = globalName(name)).kind != Meaning::Unknown) return m;
    if (const Value* v = context_.builtins.constant(name)) {
        m.kind = Meaning::Constant;
        m.at = constant(*v);
        return m;
    }
    const std::uint32_t id = context_.builtins.function(name);
    if (id != Library::none) {
        m.kind = Meaning::Function;
        m.index = id;
        return m;
    }
    return unknown(name);
}

Compiler::Meaning Compiler::own(Atom name) const {
    Meaning m;
    const auto at = class_->members.find(name);
    if (at == class_->members.end()) return m;
    if (at->second.constant) {
        m.kind = Meaning::Constant;
        m.at = operand::none;
    } else if (at->second.variable >= 0) {
        m.kind = Meaning::Variable;
        m.at = operand::member | static_cast<Operand>(at->second.variable);
    } else {
        m.kind = Meaning::Own;
    }
    m.own = &at->second;
    return m;
}

Compiler::Meaning Compiler::unitName(Atom name) {
    const auto at = declared_.find(name);
    if (at == declared_.end()) return {};
    Meaning m = at->second;
    if (m.kind == Meaning::Variable || m.kind == Meaning::Constant) m.at = globalAt(m.index);
    return m;
}

Compiler::Meaning Compiler::globalName(Atom name) {
    Meaning m;
    const Global* g = context_.globals.find(name);
    if (!g) return m;
    m.index = context_.globals.slot(name);
    if (g->proc()) {
        m.kind = Meaning::Procedure;
    } else if (g->cls()) {
        m.kind = Meaning::Class;
    } else if (g->defined) {
        m.kind = g->constant ? Meaning::Constant : Meaning::Variable;
        m.at = globalAt(m.index);
        m.host = g->host;
    }
    return m;
}

Compiler::Meaning Compiler::liveName(Atom name) {
    Meaning m;
    if (Value* const made = live_->extra->find(name)) {
        m.kind = Meaning::Variable;
        m.at = poolOf(made);
        return m;
    }
    const ClassInfo* owner = live_->proc->owner;
    for (const auto& [known, where] : live_->proc->names) {
        if (known != name) continue;
        const Operand index = where & operand::indexMask;
        m.kind = Meaning::Variable;
        if ((where & operand::kindMask) == operand::pool) {
            m.kind = Meaning::Constant;
            m.at = poolOf(live_->proc->pool[index]);
        } else {
            Value* v = live_->registers + index;
            m.at = poolOf(v->is(Type::Ref) ? v->ref : v);
        }
        return m;
    }
    if (owner && !class_) {
        class_ = owner;
        m = own(name);
        class_ = nullptr;
    }
    return m;
}

Compiler::Meaning Compiler::unknown(Atom name) {
    Meaning m;
    m.index = context_.globals.slot(name);
    m.undeclared = module_.optionExplicit;
    return m;
}

// The place of a variable; a check comes first where the name was never declared.
Operand Compiler::variable(const Meaning& m) {
    if (m.kind == Meaning::Constant && m.own) return poolOf(const_cast<Value*>(m.own->constant));
    if (m.kind != Meaning::Unknown) return m.at;
    if (!m.undeclared) return globalAt(m.index);
    emit(Op::CheckDefined, 0, 0, m.index);
    const bool mayBeMade = body_.decl->scope.executes && body_.decl->kind != ProcKind::Main;
    if (!mayBeMade) return globalAt(m.index);
    const Operand place = newLocal();
    emit(Op::RefName, place, 0, m.index);
    return place | operand::follow;
}

} // namespace vbscript
