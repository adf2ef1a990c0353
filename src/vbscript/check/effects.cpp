// SPDX-License-Identifier: Apache-2.0
#include "vbscript/check/effects.h"

#include "vbscript/check/walk.h"
#include "vbscript/values/names.h"

namespace vbscript {

namespace {

/// The variable of which an argument is the whole or an element; 0: it is an expression.
Atom passedName(const Expr& argument) {
    const Expr* e = &argument;
    if (e->parens) return 0;
    while (e->kind == ExprKind::Call)
        e = e->left;
    return e->kind == ExprKind::Name ? e->name : 0;
}

} // namespace

Effects::Effects(const Module& module, const Names& names) {
    list(module);
    for (const ProcDecl* p : all_)
        declare(*p);
    for (const ProcDecl* p : all_)
        collect(*p, names.known("GetRef"));
    for (const ProcDecl* p : all_)
        judgeArguments(*p);
    for (const ProcDecl* p : all_)
        passOn(*p);
    for (const ProcDecl* p : all_) {
        for (const Atom name : assigned_[p]) {
            if (local(*p, name) == Local::No) global_.insert(name);
        }
    }
}

void Effects::list(const Module& module) {
    all_.push_back(&module.main);
    for (const ProcDecl* p : module.procs)
        all_.push_back(p);
    for (const ClassDecl* c : module.classes)
        all_.insert(all_.end(), c->procs.begin(), c->procs.end());
    for (const ProcDecl* p : all_) {
        if (p != &module.main) assignsArgument_[p->name];
    }
}

void Effects::declare(const ProcDecl& proc) {
    auto& mine = locals_[&proc];
    assigned_[&proc].insert(proc.scope.assigned.begin(), proc.scope.assigned.end());
    if (proc.kind == ProcKind::Main) return;
    mine[proc.name] = Local::Valued;
    for (const Parameter& p : proc.parameters)
        mine[p.name] = Local::Valued;
    for (const Declared& d : proc.scope.constants)
        mine[d.name] = Local::Valued;
    for (const Declared& d : proc.scope.variables)
        mine.try_emplace(d.name, Local::Variable);
}

void Effects::collect(const ProcDecl& proc, Atom getRef) {
    Set& on = handedOn_[&proc];
    Visitor look;
    look.expression = [&](const Expr& e) {
        if (e.kind == ExprKind::Name) {
            runsText_ |= e.name == atomOf(Word::Execute) || e.name == atomOf(Word::ExecuteGlobal);
            refers_ |= getRef != 0 && e.name == getRef;
        }
        if (e.kind != ExprKind::Call || !assignsArgument_.contains(e.left->name)) return;
        for (const Expr* arg : e.args)
            on.insert(passedName(*arg));
    };
    Walk(look).block(proc.body);
}

void Effects::judgeArguments(const ProcDecl& proc) {
    if (proc.kind == ProcKind::Main) return;
    std::vector<bool>& assigns = assignsArgument_[proc.name];
    if (assigns.size() < proc.parameters.size()) assigns.resize(proc.parameters.size());
    for (std::size_t k = 0; k < proc.parameters.size(); ++k) {
        const auto& [name, byRef] = proc.parameters[k];
        const bool may =
            runsText_ || handedOn_[&proc].contains(name) || assigned_[&proc].contains(name);
        assigns[k] = assigns[k] || (byRef && may);
    }
}

bool Effects::mayAssign(const Expr& callee, std::size_t argument) const {
    if (callee.kind != ExprKind::Name && callee.kind != ExprKind::Member) return false;
    const auto at = assignsArgument_.find(callee.name);
    if (at == assignsArgument_.end()) return refers_ && callee.kind == ExprKind::Name;
    return argument < at->second.size() && at->second[argument];
}

void Effects::passOn(const ProcDecl& proc) {
    Set& mine = assigned_[&proc];
    Visitor look;
    look.expression = [&](const Expr& e) {
        for (std::size_t k = 0; e.kind == ExprKind::Call && k < e.args.size(); ++k) {
            const Atom name = passedName(*e.args[k]);
            if (name != 0 && mayAssign(*e.left, k)) mine.insert(name);
        }
    };
    Walk(look).block(proc.body);
}

} // namespace vbscript
