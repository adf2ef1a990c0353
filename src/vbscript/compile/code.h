// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/memory.h"
#include "vbscript/syntax/ast.h"

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

namespace vbscript {

// The steps of compiled code; a, b, c are operands unless said otherwise. "base": the first of
// several registers in a row. "count": how many of them, in `n` (its low byte).
// clang-format off
// On operators 256 in `n` means that register b (of the "unless" steps: a) is done with, 512 the
// same of c (b): it is emptied. It is never the register of the result.
// A step that loops and formulas are made of, and the same for operands of known kinds, so that there
// is little to find out: the first is a register, which may hold a reference, the second a register
// without a reference (R), a Double of the pool (D), or an Integer that stands in the step itself
// (I). The result, if there is one, goes to a register then.
#define VBS_KINDS(X, name) X(name) X(name##R) X(name##D) X(name##I)

#define VBS_PLAIN_OPS(X)                                                                           \
    X(Let)              /* a = b, an object by its default member; n: b may be emptied */          \
    X(Copy)             /* a = b as it is */                                                       \
    X(Move)             /* a = b, b emptied */                                                     \
    X(SetObject)        /* Set a = b; n: b may be emptied */                                       \
    VBS_KINDS(X, Add)                                                                              \
    VBS_KINDS(X, Subtract)                                                                         \
    VBS_KINDS(X, Multiply)                                                                         \
    VBS_KINDS(X, Divide)                                                                           \
    VBS_KINDS(X, IntDivide)                                                                        \
    VBS_KINDS(X, Modulo)                                                                           \
    X(Power)                                                                                       \
    X(Concat)                                                                                      \
    X(Equal)                                                                                       \
    X(NotEqual)                                                                                    \
    X(Less)                                                                                        \
    X(Greater)                                                                                     \
    X(LessEqual)                                                                                   \
    X(GreaterEqual)     /* n: how written */                                                       \
    X(Logical)          /* a = b op c; n: the operator */                                          \
    X(Is)                                                                                          \
    X(Not)                                                                                         \
    X(Negate)                                                                                      \
    X(Plus)                                                                                        \
    X(Join)             /* a = b & ... from base b, count */                                       \
    X(Append)           /* a = a & b & ..., in place when possible */                              \
    X(EachPrepare)      /* a: base of array, index; b: what to go over */                          \
    VBS_KINDS(X, Index1) /* a = b(c); 1 in n: as Let does */                                       \
    X(Index)            /* a = b(...), base c, count */                                            \
    VBS_KINDS(X, SetIndex1) /* a(b) = c; 1 in n: Set; c may be of any kind */                      \
    X(SetIndex)         /* a(...) = value behind the last, base b, count; Set with 256 in n */     \
    X(Element)          /* a = reference to b(...), base c, count; 256 in n: locked in base c */   \
    X(CallValue)        /* a = b as a statement, its default member, base c, count */              \
    X(CallBuiltin)      /* a = built-in c, base b, count */                                        \
    X(NewArray)         /* a = array of c items */                                                 \
    X(Fill)             /* items of array a from number c on = moved from base b, count */         \
    X(New)              /* a = new object of class c (a global) */                                 \
    X(Ref)              /* a = reference to b */                                                   \
    X(This)             /* a = Me */                                                               \
    X(Clear)            /* b registers from a on */                                                \
    X(Dim)              /* a = array c of the unit; 1 in n: keep one of the same bounds */         \
    X(ReDim)            /* a(...) from base b, count; 256: Preserve */                             \
    X(Erase)                                                                                       \
    X(ResumeNext)                                                                                  \
    X(GotoZero)                                                                                    \
    X(BindAuto)         /* local a follows global c when there is one by now */                    \
    X(CheckDefined)     /* global c, under Option Explicit */                                      \
    X(Fail)             /* error n */                                                              \
    X(Line)             /* line c begins; only where lines are reported */                         \
    X(Execute)          /* a = b run as text; n: 0 here, 1 in the module, 2 an expression */       \
    X(WithObject)       /* a = b for With */

// Steps that say whether to go on at c.
#define VBS_JUMP_OPS(X)                                                                            \
    X(Jump)                                                                                        \
    X(Repeat)           /* back; where time is counted */                                          \
    X(JumpFalse)                                                                                   \
    X(JumpTrue)         /* on a */                                                                 \
    VBS_KINDS(X, UnlessEqual)                                                                      \
    VBS_KINDS(X, UnlessNotEqual)                                                                   \
    VBS_KINDS(X, UnlessLess)                                                                       \
    VBS_KINDS(X, UnlessGreater)                                                                    \
    VBS_KINDS(X, UnlessLessEqual)                                                                  \
    VBS_KINDS(X, UnlessGreaterEqual) /* compare a, b; unless it holds */                           \
    X(ForPrepare)       /* a = start is set; b: base of limit, step, ready; when done */           \
    X(ForNext)          /* again */                                                                \
    X(ForNextUp)        /* the same with the step n, which is above 0 */                           \
    X(EachNext)         /* a: variable; b: base; again */

// Steps after which execution may go on in another procedure.
#define VBS_CALL_OPS(X)                                                                            \
    X(CallGlobal)       /* a = procedure c (a global), arguments from base b, count */             \
    X(CallOwn)          /* the same with procedure c of this class */                              \
    X(CallName)         /* the same with a name that may turn out to be a variable */              \
    X(LoadName)         /* a = global c, which may turn out to be a function */                    \
    X(LoadAuto)         /* the same; else the local b */                                           \
    X(RefName)          /* a = reference to global c, or what the function gives */                \
    X(GetMember)        /* a = member c of base b, arguments behind it, count; 256: a statement */ \
    X(LetMember)                                                                                   \
    X(SetMember)        /* member c of base b, arguments, value, count without value */
// clang-format on

#define VBS_OPS(X) VBS_PLAIN_OPS(X) VBS_JUMP_OPS(X) VBS_CALL_OPS(X)

#define VBS_OP(name) name,
enum class Op : std::uint16_t { VBS_OPS(VBS_OP) Return };
#undef VBS_OP

/// How far behind a step of VBS_KINDS its variants come.
enum class Kinds { Any, R, D, I };

/// Where an operand lives: two high bits, then its number.
using Operand = std::uint32_t;
namespace operand {
inline constexpr Operand kindShift = 30;
inline constexpr Operand local = 0U << kindShift;  ///< Register of the frame.
inline constexpr Operand pool = 1U << kindShift;   ///< Constant or global, by address.
inline constexpr Operand follow = 2U << kindShift; ///< Register that may hold a reference.
inline constexpr Operand member = 3U << kindShift; ///< Variable of Me.
inline constexpr Operand kindMask = 3U << kindShift;
inline constexpr Operand indexMask = ~kindMask;
/// While compiling, a register that will stand behind the locals.
inline constexpr Operand temporary = 1U << 29;
inline constexpr Operand none = 0x1FFFFFFF;
} // namespace operand

struct Instruction {
    Op op;
    std::uint16_t n;
    std::uint32_t a, b, c;
};

inline constexpr std::uint16_t flagBit = 256;
inline constexpr std::uint16_t emptyFirst = 256;
inline constexpr std::uint16_t emptySecond = 512;

/// A stretch of code that fails as one: where it is in the text, where Resume Next goes on.
struct Region {
    std::uint32_t begin, end, resume;
    Position at;
};

struct Unit;
struct ClassInfo;

struct Proc {
    Unit* unit = nullptr;
    Atom name = 0;
    ProcKind kind = ProcKind::Main;
    std::vector<Parameter> parameters;
    std::uint32_t arity = 0;              ///< How many parameters.
    bool copies = false;                  ///< Some of them ByVal.
    std::uint32_t result = operand::none; ///< Register of the return value.
    std::uint32_t locals = 0;
    std::uint32_t registers = 0;
    std::vector<Instruction> code;
    std::vector<Value*> pool;
    std::vector<const Proc*> callees; ///< Of the same class, for CallOwn.
    std::vector<Region> regions;
    std::vector<std::pair<Atom, Operand>> names; ///< For text run inside.
    const ClassInfo* owner = nullptr;
    Position at;
};

struct MemberVariable {
    Atom name;
    bool isArray;
    std::vector<std::uint32_t> extents;
};

struct Member {
    int variable = -1;
    bool variablePublic = false;
    const Proc* get = nullptr; ///< Property Get, Function or Sub.
    const Proc* let = nullptr;
    const Proc* set = nullptr;
    bool getPublic = false, letPublic = false, setPublic = false;
    const Value* constant = nullptr;
};

struct ClassInfo {
    Atom name = 0;
    Unit* unit = nullptr;
    std::vector<MemberVariable> variables;
    std::unordered_map<Atom, Member> members;
    const Member* defaultMember = nullptr;
    const Proc* initialize = nullptr;
    const Proc* terminate = nullptr;
};

struct ArrayShape {
    std::vector<std::uint32_t> extents;
    bool fixed;
};

/// One compiled text. Lives as long as a procedure, class or running frame of it is in use.
struct Unit : std::enable_shared_from_this<Unit> {
    Unit() = default;
    ~Unit() { account.shrink(charged); }
    Unit(const Unit&) = delete;
    Unit& operator=(const Unit&) = delete;
    /// What it holds, once it is complete.
    [[nodiscard]] std::size_t bytes() const;
    /// Counts that as memory from now on.
    void charge();

    std::string source;
    bool ran = false; ///< By a script; else given by the host.
    std::deque<Value> constants;
    std::deque<Proc> procs;
    std::deque<ClassInfo> classes;
    std::vector<ArrayShape> shapes;
    Proc* main = nullptr;
    struct Declares {
        std::uint32_t global;
        const Proc* proc;
        const ClassInfo* cls;
        const Value* constant;
    };
    std::vector<Declares> declares;
    Memory& account = Memory::current();
    std::size_t charged = 0;
};

} // namespace vbscript
