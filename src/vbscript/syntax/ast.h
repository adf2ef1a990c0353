// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/syntax/token.h"
#include "vbscript/values/operators.h"

#include <deque>
#include <vector>

namespace vbscript {

enum class ExprKind : std::uint8_t { Literal, Name, Member, Call, Unary, Binary, New, Me, Missing };

/// An expression. Literal: `literal`; Name, New: `name`; Member: `left`.`name`, with no left for
/// ".name" under With; Call: `left`(`args`), which may turn out to be an index; Unary: `right`.
struct Expr {
    ExprKind kind = ExprKind::Missing;
    Operator op = Operator::Add;
    bool parens = false;      ///< Written (so): passed by value.
    std::uint16_t height = 1; ///< Levels below, kept small so that recursion over it is safe.
    Atom name = 0;
    Position at;
    Expr* left = nullptr;
    Expr* right = nullptr;
    Value literal;
    std::vector<Expr*> args;
};

struct Stmt;
using Block = std::vector<Stmt*>;

struct Clause { ///< If, ElseIf: `condition`; Case: `values`; Else: neither.
    Position at;
    Expr* condition = nullptr;
    std::vector<Expr*> values;
    Block body;
};

struct Declared {
    Atom name = 0;
    Position at;
    bool isArray = false;
    bool isPublic = true;
    std::vector<Expr*> bounds; ///< Of a Dim: literals; empty with isArray: a dynamic array.
    Value value;               ///< Of a Const.
};

struct Scope {
    std::vector<Declared> variables;
    std::vector<Declared> constants;
    std::vector<Atom> assigned; ///< Names that get a value here.
    std::vector<Atom> redimmed; ///< Arrays that get their size here, which declares them, too.
    std::vector<Atom> passed;   ///< Names that may get one as an argument.
    bool executes = false;      ///< Runs text, which may use any name.
};

enum class StmtKind : std::uint8_t {
    Assign,
    Set,
    Call,
    If,
    Select,
    For,
    ForEach,
    Do,
    With,
    ReDim,
    Erase,
    ExitDo,
    ExitFor,
    ExitProcedure,
    ResumeNext,
    GotoZero,
    Nothing
};

/// A statement. Assign, Set: `a` = `b`; Call: `a`; Select, With: `a`; For: `a` = `b` To `c` Step
/// `d`; ForEach: `a` In `b`; Do: `a` tested before, `b` after, `until...` turning them round.
struct Stmt {
    StmtKind kind = StmtKind::Nothing;
    bool untilBefore = false, untilAfter = false;
    bool preserve = false;
    Position at;
    Position closing; ///< Where Next, Loop stand.
    Expr* a = nullptr;
    Expr* b = nullptr;
    Expr* c = nullptr;
    Expr* d = nullptr;
    std::vector<Clause> clauses;
    std::vector<Expr*> list; ///< ReDim: calls; Erase: targets.
    Block body;
};

enum class ProcKind : std::uint8_t { Main, Sub, Function, Get, Let, Set };

struct Parameter {
    Atom name = 0;
    bool byRef = true;
};

struct ProcDecl {
    ProcKind kind = ProcKind::Main;
    Atom name = 0;
    Position at;
    bool isPublic = true;
    bool isDefault = false;
    std::vector<Parameter> parameters;
    Scope scope;
    Block body;
};

struct ClassDecl {
    Atom name = 0;
    Position at;
    Scope scope;
    std::vector<ProcDecl*> procs;
};

/// One parsed text. Owns its nodes; they hold no strings but those of literals.
struct Module {
    bool optionExplicit = false;
    ProcDecl main;
    std::vector<ProcDecl*> procs;
    std::vector<ClassDecl*> classes;
    Expr* expression = nullptr; ///< Of a text for Eval.

    std::deque<Expr> exprs;
    std::deque<Stmt> stmts;
    std::deque<ProcDecl> procDecls;
    std::deque<ClassDecl> classDecls;
};

} // namespace vbscript
