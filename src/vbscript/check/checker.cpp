// SPDX-License-Identifier: Apache-2.0
#include "vbscript/check/checker.h"

#include "vbscript/check/nearest.h"
#include "vbscript/check/walk.h"

#include <algorithm>
#include <tuple>

namespace vbscript {

namespace {

int number(std::uint32_t n) { return static_cast<int>(n); }

// Names compared in search of near ones: enough for any plant and some typing mistakes, and an end
// for a text that holds nothing but mistakes.
constexpr std::size_t mostCompared = 1'000'000;

} // namespace

Checker::Checker(const Module& module, Names& names, const Known& known,
                 const std::vector<std::string>& language)
    : module_(module), names_(names), known_(known), language_(language), effects_(module, names) {
    for (const auto* list : {&language, &known.names}) {
        for (const std::string& name : *list)
            always_.insert(names_.of(name));
    }
    for (const Known::Object& o : known.objects) {
        Object& mine = objects_[names_.of(o.name)];
        mine.known = &o;
        for (const std::string& m : o.members)
            mine.members.insert(names_.of(m));
    }
    for (const auto* list : {&module.main.scope.variables, &module.main.scope.constants}) {
        for (const Declared& d : *list)
            declared_.emplace(d.name, d.at);
    }
    for (const Declared& d : module.main.scope.constants)
        valued_.insert(d.name);
    for (const ProcDecl* p : module.procs)
        valued_.insert(p->name);
    for (const ClassDecl* c : module.classes) {
        valued_.insert(c->name);
        auto& mine = members_[c];
        for (const auto* list : {&c->scope.variables, &c->scope.constants}) {
            for (const Declared& d : *list)
                mine.insert(d.name);
        }
        for (const ProcDecl* p : c->procs)
            mine.insert(p->name);
    }
}

Findings Checker::run() {
    procedure(module_.main, nullptr);
    std::unordered_map<Atom, Position> first;
    for (const ProcDecl* p : module_.procs) {
        const auto [at, isNew] = first.try_emplace(p->name, p->at);
        if (!isNew)
            found_.push_back({Warning::Kind::DeclaredTwice, p->at, p->name, 0, p, at->second.line});
        procedure(*p, nullptr);
    }
    for (const ClassDecl* c : module_.classes) {
        for (const ProcDecl* p : c->procs)
            procedure(*p, c);
    }
    const auto place = [](const Found& f) {
        return std::tuple(f.at.line, f.at.column, f.kind, f.name);
    };
    std::sort(found_.begin(), found_.end(),
              [&](const Found& a, const Found& b) { return place(a) < place(b); });
    std::unordered_map<const ProcDecl*, std::unordered_set<Atom>> told;
    for (const Found& f : found_) {
        if (findings_.warnings.size() == mostWarnings) break;
        // One warning for a name is enough in a procedure: the reader looks for the others himself.
        const bool again =
            f.kind == Warning::Kind::NeverAssigned && !told[f.proc].insert(f.name).second;
        if (!again) findings_.warnings.push_back(finished(f));
    }
    return std::move(findings_);
}

void Checker::procedure(const ProcDecl& proc, const ClassDecl* owner) {
    declarations(proc);
    Visitor look;
    Walk walk(look);
    look.expression = [&](const Expr& e) {
        if (e.kind == ExprKind::Name || e.kind == ExprKind::New) read(e, proc, owner);
        if (e.kind == ExprKind::Member) member(e, walk.with(), proc);
        if (e.kind == ExprKind::Literal) literal(e);
        if (e.kind == ExprKind::Call) firstArgument(e, walk.with(), proc);
    };
    look.unreachable = [&](const Stmt& s) {
        found_.push_back({Warning::Kind::Unreachable, s.at, 0, 0, &proc});
    };
    walk.block(proc.body);
}

// Within one procedure a name cannot be declared twice: such a text does not compile.
void Checker::declarations(const ProcDecl& proc) {
    if (proc.kind == ProcKind::Main) return;
    for (const auto* list : {&proc.scope.variables, &proc.scope.constants}) {
        for (const Declared& d : *list) {
            const auto outer = declared_.find(d.name);
            if (outer == declared_.end()) continue;
            found_.push_back(
                {Warning::Kind::DeclaredTwice, d.at, d.name, 0, &proc, outer->second.line});
        }
    }
}

void Checker::read(const Expr& e, const ProcDecl& proc, const ClassDecl* owner) {
    if (effects_.runsText() || hasValue(e.name, proc, owner)) return;
    found_.push_back({Warning::Kind::NeverAssigned, e.at, e.name, 0, &proc});
}

bool Checker::hasValue(Atom name, const ProcDecl& proc, const ClassDecl* owner) const {
    const auto local = effects_.local(proc, name);
    if (local != Effects::Local::No)
        return local == Effects::Local::Valued || effects_.assigns(proc, name);
    if (owner && members_.at(owner).contains(name)) return true;
    if (valued_.contains(name) || objects_.contains(name) || always_.contains(name)) return true;
    // A variable that nobody declares is the procedure's own.
    if (declared_.contains(name)
            ? effects_.assignsGlobal(name)
            : effects_.assigns(module_.main, name) || effects_.assigns(proc, name))
        return true;
    return known_.also && known_.also(names_.text(name));
}

const Checker::Object* Checker::objectOf(const Expr* e, const ProcDecl& proc) const {
    if (!e || e->kind != ExprKind::Name) return nullptr;
    const auto at = objects_.find(e->name);
    const bool another =
        effects_.local(proc, e->name) != Effects::Local::No || declared_.contains(e->name);
    return at == objects_.end() || another ? nullptr : &at->second;
}

void Checker::member(const Expr& e, const Expr* with, const ProcDecl& proc) {
    const Expr* left = e.left ? e.left : with;
    const Object* o = objectOf(left, proc);
    if (!o || o->members.contains(e.name)) return;
    const Position name{e.at.line, e.at.column + 1}; // behind the dot
    found_.push_back({Warning::Kind::UnknownMember, name, e.name, left->name, &proc});
}

void Checker::firstArgument(const Expr& call, const Expr* with, const ProcDecl& proc) {
    const Expr& callee = *call.left;
    if (callee.kind != ExprKind::Member || call.args.empty()) return;
    const Object* o = objectOf(callee.left ? callee.left : with, proc);
    if (!o || !o->members.contains(callee.name)) return;
    literal(*call.args[0]);
    const auto at = seen_.find(call.args[0]);
    if (at == seen_.end()) return;
    findings_.literals[at->second].object = o->known->name;
    findings_.literals[at->second].member = names_.text(callee.name);
}

void Checker::literal(const Expr& e) {
    if (e.kind != ExprKind::Literal || !e.literal.is(Type::String) ||
        e.literal.s->length > longestUse)
        return;
    if (findings_.literals.size() == mostLiterals) return;
    if (!seen_.try_emplace(&e, findings_.literals.size()).second) return;
    findings_.literals.push_back(
        {e.literal.utf8(), number(e.at.line), number(e.at.column), {}, {}});
}

Warning Checker::finished(const Found& f) {
    Warning w;
    w.kind = f.kind;
    w.line = number(f.at.line);
    w.column = number(f.at.column);
    w.name = names_.text(f.name);
    w.firstLine = number(f.firstLine);
    if (f.kind == Warning::Kind::NeverAssigned) w.nearest = nearestName(f);
    if (f.kind != Warning::Kind::UnknownMember) return w;
    const Known::Object& o = *objects_.at(f.object).known;
    w.object = o.name;
    Nearest nearest(w.name);
    for (const std::string& m : o.members)
        nearest.offer(m);
    w.nearest = nearest.best();
    return w;
}

// The text's own names first: of equally near ones the first is taken.
std::string Checker::nearestName(const Found& f) {
    if (compared_ > mostCompared) return {};
    Nearest nearest(names_.text(f.name));
    const auto offer = [&](Atom name) {
        if (name != 0) nearest.offer(names_.text(name));
    };
    for (const ProcDecl* p : {f.proc, &module_.main}) {
        for (const Parameter& q : p->parameters)
            offer(q.name);
        for (const auto* list : {&p->scope.variables, &p->scope.constants}) {
            for (const Declared& d : *list)
                offer(d.name);
        }
        for (const Atom name : p->scope.assigned)
            offer(name);
    }
    for (const ProcDecl* p : module_.procs)
        offer(p->name);
    for (const ClassDecl* c : module_.classes)
        offer(c->name);
    for (const auto* list : {&known_.names, &language_}) {
        for (const std::string& name : *list)
            nearest.offer(name);
    }
    compared_ += nearest.compared();
    return nearest.best();
}

} // namespace vbscript
