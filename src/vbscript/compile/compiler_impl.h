// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/compile/compiler.h"
#include "vbscript/values/arithmetic.h"

#include <optional>
#include <span>
#include <unordered_map>
#include <vector>

namespace vbscript {

/// Turns the tree into steps, one procedure after the other. Every statement (or condition of one)
/// is a region; registers for values in between are numbered from 0 while compiling and moved
/// behind the locals when the procedure is done.
class Compiler {
  public:
    Compiler(const CompileContext& context, const Module& module, std::optional<LiveFrame> live);
    std::shared_ptr<Unit> run();

  private:
    // What a name means where it stands.
    struct Meaning {
        enum Kind { Variable, Constant, Procedure, Own, Function, Class, Unknown } kind = Unknown;
        Operand at = operand::none; ///< Variable, Constant.
        std::uint32_t index = 0; ///< Global of a Procedure, Class, Unknown; number of a Function.
        const Member* own = nullptr;
        bool host = false;
        bool undeclared = false; ///< Option Explicit has to look whether it is defined.
    };
    struct Loop {
        bool isFor;
        std::vector<std::size_t> exits; ///< Jumps to send behind it.
    };
    struct Body { ///< The procedure that is being compiled.
        Proc* proc = nullptr;
        const ProcDecl* decl = nullptr;
        std::unordered_map<Atom, Operand> locals;
        std::unordered_map<Atom, Operand> constants;
        std::vector<Operand> literals; ///< Of the pool, what never changes; ascending.
        std::vector<Loop> loops;
        std::vector<Operand> withs;
        std::vector<Operand> locks; ///< Keep the size of arrays with an element passed on.
        std::size_t locksUsed = 0;
        std::vector<Operand> dirty; ///< Registers in between that keep a value alive.
        std::uint32_t temps = 0, mostTemps = 0;
    };
    // Frees the registers in between that were taken while it lived.
    class Mark {
      public:
        explicit Mark(Compiler& c) : body_(c.body_), temps_(c.body_.temps) {}
        ~Mark() { body_.temps = temps_; }
        Mark(const Mark&) = delete;
        Mark& operator=(const Mark&) = delete;

      private:
        Body& body_;
        std::uint32_t temps_;
    };

    // Units, procedures, classes (compiler.cpp).
    void declareNames();
    void declareOnce(Atom name, Position at, bool procedure);
    void declareClass(const ClassDecl& decl, ClassInfo& info);
    void declareMembers(const ClassDecl& decl, ClassInfo& info);
    void compileProc(Proc& proc, const ProcDecl& decl);
    void enterScope(const ProcDecl& decl);
    void makeAutomatic(const ProcDecl& decl);
    void makeAutomatic(Atom name, bool isMain);
    void finish();
    void moveTemporaries(Instruction& i) const;
    void specialize(Instruction& i) const;
    [[nodiscard]] Type literalType(Operand o) const; ///< Empty: not a literal.
    std::uint32_t shape(const Declared& d);
    [[noreturn]] static void fail(int number, Position at);

    // Names (compiler_names.cpp).
    Meaning meaning(Atom name);
    Meaning own(Atom name) const;
    Meaning unitName(Atom name);
    Meaning globalName(Atom name);
    Meaning liveName(Atom name);
    Meaning unknown(Atom name);
    Operand newLocal();
    Operand poolOf(Value* v);
    Operand constant(const Value& v);
    Operand globalAt(std::uint32_t slot) { return poolOf(&context_.globals[slot].value); }
    Operand variable(const Meaning& m);

    // Statements (compiler_statements.cpp).
    void block(const Block& b);
    void statement(const Stmt& s);
    void ifStatement(const Stmt& s);
    void select(const Stmt& s);
    void caseTests(const Clause& c, Operand chosen, Written written,
                   std::vector<std::size_t>& hits);
    void forStatement(const Stmt& s);
    void forEach(const Stmt& s);
    void doLoop(const Stmt& s);
    void with(const Stmt& s);
    void exitLoop(bool isFor);
    void redim(const Stmt& s);
    void erase(const Stmt& s);
    void endLoop();
    std::size_t condition(const Expr* e, bool jumpIf);

    // Assignments (compiler_assign.cpp).
    void assign(const Stmt& s);
    void assignName(const Stmt& s);
    void assignIndexed(const Stmt& s);
    void assignMember(const Expr* object, Atom member, const std::vector<Expr*>& args,
                      const Stmt& s);
    void assignElement(const Stmt& s);
    bool plainIndex(const Expr* e);
    void store(Operand target, const Expr* e, bool isSet);
    bool append(Operand target, const Expr* target0, const Expr* e);
    Operand place(const Expr* e);

    // Expressions (compiler_expressions.cpp).
    Operand value(const Expr* e, Operand want = operand::none);
    void valueTo(const Expr* e, Operand to);
    Operand nameValue(const Expr* e, Operand want);
    Operand binary(const Expr* e, Operand want);
    Operand join(const Expr* e, Operand want);
    Operand unary(const Expr* e, Operand want);
    Operand member(const Expr* e, const std::vector<Expr*>* args, Operand want, bool statement);
    void objectTo(const Expr* object, Operand to);
    std::pair<Operand, Operand> pair(const Expr* left, const Expr* right);
    bool runsCode(const Expr* e);
    static Written written(const Expr* e);
    static std::vector<const Expr*> chain(const Expr* e);

    // Calls (compiler_calls.cpp).
    Operand call(const Expr* e, Operand want);
    [[nodiscard]] bool isRecursion(const Meaning& m, const Expr* callee) const;
    Operand callNamed(const Meaning& m, const Expr* callee, const std::vector<Expr*>& args,
                      Operand want);
    Operand index(Operand array, const std::vector<Expr*>& args, Operand want);
    Operand function(std::uint32_t id, const std::vector<Expr*>& args, Operand want, Position at);
    Operand special(Word w, const std::vector<Expr*>& args, Operand want, Position at);
    void callStatement(const Expr* e);
    void nameStatement(const Expr* callee, const std::vector<Expr*>& args);
    Operand longArray(const std::vector<Expr*>& args, Operand want);
    std::uint32_t values(std::span<Expr* const> args);
    std::uint32_t arguments(const std::vector<Expr*>& args);
    void argumentTo(const Expr* e, Operand to);
    static std::uint16_t count(const std::vector<Expr*>& args, Position at);

    // Emitting.
    std::size_t emit(Op op, Operand a = 0, Operand b = 0, std::uint32_t c = 0, std::size_t n = 0);
    [[nodiscard]] std::uint32_t here() const {
        return static_cast<std::uint32_t>(body_.proc->code.size());
    }
    void patch(std::size_t jump) { body_.proc->code[jump].c = here(); }
    void beginLeaf(Position at);
    void endLeaf();
    void clearDirty();
    Operand temp();
    Operand result(Operand want); ///< Where a call's result goes: `want` or a register in between.
    [[nodiscard]] bool isDirty(Operand o) const;
    bool steal(Operand from); ///< Whether `from` may be emptied by its only reader.
    static bool isTemp(Operand o) {
        return (o & (operand::kindMask | operand::temporary)) == operand::temporary;
    }

    const CompileContext& context_;
    const Module& module_;
    std::optional<LiveFrame> live_;
    std::shared_ptr<Unit> unit_;
    std::unordered_map<Atom, Meaning> declared_; ///< What this text declares for the module.
    const ClassInfo* class_ = nullptr;
    Body body_;
};

} // namespace vbscript
