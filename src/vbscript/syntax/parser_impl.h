// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/syntax/ast.h"
#include "vbscript/values/names.h"
#include "vbscript/values/runtime.h"

#include <memory>
#include <string_view>

namespace vbscript {

/// Recursive descent over the token list. Split over three files: expressions, statements,
/// declarations.
class Parser {
  public:
    Parser(std::string_view source, Names& names, bool me, Runtime* run,
           bool colonMeansLine = false);
    void module();
    /// Whether "Then :" stands before a statement somewhere. That opens a block; where a text makes
    /// no sense so, it may be one of those that mean a line by it.
    [[nodiscard]] bool thenColons() const { return thenColons_; }
    void expressionOnly();
    std::unique_ptr<Module> take() { return std::move(module_); }

  private:
    // What is nested deeper than this is no program but an attack on the stack.
    static constexpr int deepestNesting = 200;
    static constexpr int highestTree = 1000;

    class Nested {
      public:
        explicit Nested(Parser& p) : parser_(p) {
            if (++parser_.depth_ > deepestNesting) parser_.tooDeep();
        }
        ~Nested() { --parser_.depth_; }
        Nested(const Nested&) = delete;
        Nested& operator=(const Nested&) = delete;

      private:
        Parser& parser_;
    };

    // Tokens.
    [[nodiscard]] const Token& tok(std::size_t ahead = 0) const {
        const std::size_t k = at_ + ahead;
        return list_.tokens[k < list_.tokens.size() ? k : list_.tokens.size() - 1];
    }
    [[nodiscard]] bool is(Tok k) const { return tok().kind == k; }
    [[nodiscard]] bool is(Word w, std::size_t ahead = 0) const;
    bool accept(Tok k);
    bool accept(Word w);
    void expect(Tok k, int error);
    void expect(Word w, int error);
    [[noreturn]] void fail(int number) const;
    [[noreturn]] void failAt(int number, Position p) const;
    [[noreturn]] void tooDeep() const;
    Atom name();
    [[nodiscard]] bool endOfLineAhead() const;
    void skipSeparators();

    // Expressions.
    Expr* node(ExprKind kind, Position at);
    Expr* binary(Operator op, Position at, Expr* left, Expr* right);
    void raise(Expr* e, const Expr* below, int by = 1) const;
    Expr* expression(int level = 0);
    Expr* unary();
    Expr* signedOperand();
    Expr* powers();
    Expr* primary();
    Expr* keywordOperand();
    Expr* suffixes(Expr* e);
    Expr* suffix(Expr* e);
    Expr* memberOf(Expr* left);
    Expr* callOf(Expr* callee);
    [[nodiscard]] bool atOperand() const;

    // Statements.
    Stmt* node(StmtKind kind);
    void block(Block& out);
    [[nodiscard]] bool atBlockEnd() const;
    void statement(Block& out);
    void keywordStatement(Block& out);
    void endOfStatement();
    void assignmentOrCall(Block& out);
    void callStatement(Block& out);
    [[nodiscard]] bool dotOfArgument() const;
    void bareCall(Stmt* s, Expr* target, std::size_t from);
    Expr* argumentList(Expr* callee);
    void noteAssigned(const Expr* target);
    void notePassed(const Expr* arg);
    void setStatement(Block& out);
    void ifStatement(Block& out);
    void blockIf(Stmt* s);
    void lineIf(Stmt* s);
    void inlineStatements(Block& out);
    void selectStatement(Block& out);
    void caseBlock(Stmt* s);
    void forStatement(Block& out);
    void forEach(Block& out, Position at);
    Stmt* loopOverName(StmtKind kind, Block& out, Position at);
    void untilNext(Stmt& s);
    void doStatement(Block& out);
    void whileStatement(Block& out);
    void withStatement(Block& out);
    void exitStatement(Block& out);
    void onError(Block& out);
    void eraseStatement(Block& out);
    void redimStatement(Block& out);
    void closing(Word w, int error);
    [[nodiscard]] bool closesOnSameLine() const;

    // Declarations.
    void declaration();
    void optionExplicit();
    void dimList(bool isPublic);
    Declared dimItem();
    void constList(bool isPublic);
    Value constantValue();
    void procedure(bool isPublic, bool isDefault);
    void parameters(ProcDecl* p);
    void propertyKind(ProcDecl* p);
    void procedureBody(ProcDecl* p, Word end, int error);
    void classDeclaration();
    void classMember();
    void checkClass(const ClassDecl* c) const;
    void checkAccessors(const ClassDecl* c) const;
    [[nodiscard]] bool atProperty() const;

    TokenList list_;
    std::unique_ptr<Module> module_;
    bool me_;
    Runtime* run_;
    bool colonMeansLine_;
    bool thenColons_ = false;
    std::size_t at_ = 0;
    int depth_ = 0;
    Scope* scope_ = nullptr;
    ProcDecl* proc_ = nullptr;
    ClassDecl* class_ = nullptr;
    int loopsFor_ = 0;
    int loopsDo_ = 0;
    int withs_ = 0;
    int lineIfs_ = 0;
    std::uint32_t elseLine_ = 0; ///< Line of the latest Else, whose End If may stand on it too.
};

} // namespace vbscript
