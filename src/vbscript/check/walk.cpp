// SPDX-License-Identifier: Apache-2.0
#include "vbscript/check/walk.h"

namespace vbscript {

namespace {

bool leaves(const Stmt& s) {
    return s.kind == StmtKind::ExitDo || s.kind == StmtKind::ExitFor ||
           s.kind == StmtKind::ExitProcedure;
}

} // namespace

void Walk::block(const Block& block) {
    bool over = false;
    for (const Stmt* s : block) {
        if (over && visitor_.unreachable) visitor_.unreachable(*s);
        over = leaves(*s);
        statement(*s);
    }
}

void Walk::statement(const Stmt& s) {
    switch (s.kind) {
    case StmtKind::Assign:
    case StmtKind::Set:
    case StmtKind::For:
    case StmtKind::ForEach:
        target(s.a);
        break;
    default:
        expression(s.a);
    }
    expression(s.b);
    expression(s.c);
    expression(s.d);
    for (const Expr* e : s.list)
        target(e);
    for (const Clause& c : s.clauses) {
        expression(c.condition);
        for (const Expr* e : c.values)
            expression(e);
        block(c.body);
    }
    if (s.kind == StmtKind::With) withs_.push_back(s.a);
    block(s.body);
    if (s.kind == StmtKind::With) withs_.pop_back();
}

// Of "a(i).b(j) = x" all but the last step is read; of "a(i) = x" the name gets a value.
void Walk::target(const Expr* e) {
    while (e->kind == ExprKind::Call) {
        for (const Expr* arg : e->args)
            expression(arg);
        e = e->left;
    }
    if (e->kind == ExprKind::Name) {
        if (visitor_.target) visitor_.target(*e);
    } else {
        expression(e);
    }
}

void Walk::expression(const Expr* e) {
    while (e) {
        if (visitor_.expression) visitor_.expression(*e);
        for (const Expr* arg : e->args)
            expression(arg);
        expression(e->right);
        e = e->left; // chains grow to the left
    }
}

} // namespace vbscript
