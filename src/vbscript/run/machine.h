// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/compile/compiler.h"
#include "vbscript/compile/globals.h"
#include "vbscript/compile/library.h"
#include "vbscript/run/instance.h"
#include "vbscript/run/registers.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/line_sink.h"
#include "vbscript/values/runtime.h"

#include <memory>
#include <span>
#include <vector>

namespace vbscript {

/// Where a step's operands are, to choose a function by.
template <Kinds>
struct Kind {};

/// A second operand that is known to be a number; steps look at it as at a value.
template <Type Known>
struct Number {
    std::int64_t i = 0;
    double d = 0;
    static constexpr Type type = Known;
    static constexpr bool isInt() { return Known == Type::Integer; }
    static constexpr bool isReal() { return Known == Type::Double; }
};

/// By which a text is known in a report: its first line, not too much of it.
[[nodiscard]] std::string firstWords(std::string_view source);

/// Executes compiled code. Calls between procedures of scripts take a frame here and no C++ stack;
/// only code that a step runs on its way (a default member, Class_Terminate, Execute) nests, to a
/// small depth.
class Machine : public Runtime {
    // Last of all to go: what the others hold is given back to it.
    struct Account {
        Memory& memory;
        ~Account() { Memory::abandon(&memory); }
    };
    Account account_;

  public:
    /// Takes over the account, which has to be the current one while the machine is made.
    Machine(Surroundings& w, Memory& account, Provisions provisions);
    ~Machine() override;

    Globals globals;
    Library library;

    [[nodiscard]] Memory& memory() { return memory_; }
    [[nodiscard]] CompileContext context() { return {names, globals, library, inRun()}; }
    /// Itself while a script runs, which what it asks for is to be charged to.
    [[nodiscard]] Runtime* inRun() { return running() ? this : nullptr; }
    void setLimits(const Limits& l);
    /// Of the texts that are compiled from now on; null: they do not report lines.
    void tellLinesTo(LineSink* sink) { lines_ = sink; }

    /// Declares what the unit declares and runs its top-level statements. Throws Fault,
    /// BudgetFault.
    void runUnit(const std::shared_ptr<Unit>& unit);
    /// Compiles text for the module; kept by content. Throws CompileFault.
    std::shared_ptr<Unit> unitFor(std::string_view source);

    [[nodiscard]] std::uint64_t compilations() const { return compilations_; }

    Value defaultOf(const Value& object) override;
    Value procedureNamed(std::string_view name) override;
    void checkTime() override;
    void spend(std::size_t units) override {
        work(units);
        if (ticks_ <= 0) checkTime();
    }
    [[nodiscard]] bool running() const override { return depthOfRuns_ > 0; }

    Value invoke(const Proc& proc, Instance* me, std::span<Value> args);
    void accessInstance(Instance& o, Atom member, Access how, std::span<Value> args, Value& result);
    /// Runs Class_Terminate; what goes wrong in it is reported at the end of the run.
    void terminate(Instance& o) noexcept;
    Linked& ring() override { return ring_; }

    /// Counts time while it lives, from the first of several on.
    class Run {
      public:
        explicit Run(Machine& m);
        ~Run();
        Run(const Run&) = delete;
        Run& operator=(const Run&) = delete;

      private:
        Machine& machine_;
    };

  private:
    struct Frame {
        const Proc* proc;
        const Instruction* pc; ///< Where it goes on when the one above it is left.
        Value* registers;
        Operand target; ///< Where the caller wants the result.
        bool resumeNext = false;
        bool boundary = false; ///< Leaving it leaves execute().
        int inside = -1;       ///< The frame whose variables this text uses.
        Value me;
        std::unique_ptr<MadeNames> extra;

        Frame(const Proc& p, Value* fp, Operand to, Value&& self)
            : proc(&p), pc(p.code.data()), registers(fp), target(to), me(std::move(self)) {}
    };
    struct Registers {
        const Instruction* pc = nullptr;
        const Instruction* code = nullptr;
        Value* fp = nullptr;
        Value* const* pool = nullptr;
        Value* me = nullptr;
    };

    // Frames (machine_frames.cpp).
    void push(const Proc& proc, Value* fp, std::size_t args, Operand target, Value me);
    static void copyByValue(const Proc& proc, Value* fp);
    void load();
    static Value* variablesOf(const Value& me);
    bool leave();
    void drop();
    void execute();
    void loop(std::size_t base);
    bool handle(Fault& f, std::size_t base);
    void unwind(std::size_t base);
    static const Region* regionOf(const Proc& proc, std::uint32_t pc);
    void locate(Place& p) const;
    [[nodiscard]] Value* freeRegisters();
    void tick() {
        if (--ticks_ <= 0) checkTime();
    }
    /// A step that went over `units` elements brings the next look at the clock nearer.
    void work(std::size_t units) {
        worked_ += units;
        ticks_ -= static_cast<int>(worked_ >> 10);
        worked_ &= 1023;
    }
    /// Items of an array were made or copied, which takes longer than characters.
    void workOnItems(std::size_t n) { work(n * 8); }
    /// A text was gone over.
    void workOn(const Value& v) {
        if (v.is(Type::String)) work(v.s->length);
    }
    [[nodiscard]] Instance* me() const;
    [[nodiscard]] bool insideOf(const Instance& o) const;
    void declare(Unit& unit);
    void retire(std::shared_ptr<Unit> unit);
    [[nodiscard]] std::size_t keptBytes() const;
    Value runInside(const std::shared_ptr<Unit>& unit, int frame);
    [[nodiscard]] Value* madeHere(const Global& g) const; ///< Null: no text has.
    Value& named(Global& g); ///< The variable of that name that the running procedure sees.

    Value& at(Operand o) {
        if (o < operand::pool) [[likely]]
            return r_.fp[o]; // NOLINT(clang-analyzer-core.*): loaded with the frame
        if (o < operand::follow) [[likely]]
            return *r_.pool[o & operand::indexMask];
        if (o >= operand::member)
            return r_.me[o & operand::indexMask]; // NOLINT(clang-analyzer-core.*)
        Value& v = r_.fp[o & operand::indexMask];
        return v.is(Type::Ref) ? *v.ref : v;
    }
    /// The same where it is mostly of the pool, as in steps whose other operands have kinds.
    Value& anywhere(Operand o) {
        const Operand inPool = o - operand::pool;
        return inPool <= operand::indexMask ? *r_.pool[inPool] : at(o);
    }
    std::span<Value> registersFrom(Operand base, std::size_t n) { return {r_.fp + base, n}; }

#define VBS_STEP(name) void op##name(const Instruction& i);
    VBS_PLAIN_OPS(VBS_STEP)
    VBS_CALL_OPS(VBS_STEP)
#undef VBS_STEP
#define VBS_STEP(name) bool op##name(const Instruction& i);
    VBS_JUMP_OPS(VBS_STEP)
#undef VBS_STEP
    using BinaryFunction = Value (*)(Runtime&, const Value&, const Value&);
    void slow(const Instruction& i, Value& a, Value& b, Value& c, BinaryFunction f);
    static void finished(const Instruction& i, Value& first, Value& second);
    // Operands of a step that comes in kinds; of known kinds they are plain numbers.
    template <Kinds K>
    Value& first(Operand o) {
        if constexpr (K == Kinds::Any) return anywhere(o);
        Value& v = r_.fp[o];
        return v.is(Type::Ref) ? *v.ref : v;
    }
    template <Kinds K>
    decltype(auto) second(Operand o) {
        if constexpr (K == Kinds::I)
            return Number<Type::Integer>{static_cast<std::int32_t>(o), 0};
        else if constexpr (K == Kinds::R)
            return (r_.fp[o]);
        else if constexpr (K == Kinds::D)
            return Number<Type::Double>{0, r_.pool[o]->d};
        else
            return (anywhere(o));
    }
    template <Kinds K>
    Value& outcome(Operand o) {
        return K == Kinds::Any ? anywhere(o) : r_.fp[o];
    }
    template <class Operation, BinaryFunction Otherwise, Kinds K>
    void arithmeticStep(Kind<K>, const Instruction& i);
    template <Kinds K>
    void divideStep(Kind<K>, const Instruction& i);
    template <class Operation, BinaryFunction Otherwise, Kinds K>
    void wholeStep(Kind<K>, const Instruction& i);
    int comparison(const Instruction& i, Value& a, Value& b, Operator which);
    template <Operator Which>
    void compareStep(const Instruction& i);
    template <Operator Which, Kinds K>
    bool unlessStep(Kind<K>, const Instruction& i);
    template <Kinds K>
    void elementStep(Kind<K>, const Instruction& i);
    template <Kinds K>
    void setElementStep(Kind<K>, const Instruction& i);
    void element(const Instruction& i, Value& to, const Value& array, Value& index);
    void setElement(const Instruction& i, Value& array, Value& index, Value& v);

    // Arrays and members (machine_access.cpp).
    static std::size_t offset(Runtime& rt, const ArrayData& a, std::span<Value> indexes);
    Value indexed(const Value& base, std::span<Value> indexes,
                  int notIndexed = errors::typeMismatch);
    void setIndexed(Value& base, std::span<Value> indexes, Value v, bool isSet);
    Value forStore(Value v, bool isSet);
    void getInstance(Instance& o, const Instruction& i);
    void letInstance(Instance& o, const Instruction& i, bool isSet);
    void letMember(const Instruction& i, bool isSet);
    void callProc(const Proc& proc, const Instruction& i, Value me);
    void callOn(const Value& object, Atom member, Access how, std::span<Value> args, Value& result);
    static void followReferences(std::span<Value> args);
    static void clearAll(std::span<Value> args) {
        for (Value& a : args) {
            if (a.owns()) a.clear();
        }
    }
    void makeOwn(Value& array);
    void putVariable(Value& v, Access how, std::span<Value> args);
    Value newObject(std::uint32_t slot);

    Memory& memory_ = account_.memory;
    Limits limits_;
    LineSink* lines_ = nullptr;
    Registers r_;
    RegisterStack stack_;
    std::vector<Frame> frames_;
    Linked ring_;
    std::size_t deepest_ = 1; ///< How many frames there may be.
    int ticks_ = 0;
    std::size_t worked_ = 0; ///< Units that make no whole step yet.
    int nesting_ = 0;
    int depthOfRuns_ = 0;
    bool closing_ = false;
    bool stopped_ = false; ///< By a budget: objects that go now run nothing any more.
    std::int64_t started_ = 0;
    std::int64_t steps_ = 0; ///< of the present run, up to the last look at the clock
    std::vector<std::shared_ptr<Unit>> retired_; ///< Replaced, but a frame may still be in it.
    std::unique_ptr<Fault> pending_;             ///< From Class_Terminate.
    std::unique_ptr<BudgetFault> pendingBudget_;
    struct Kept {
        std::shared_ptr<Unit> unit;
        std::uint64_t used;
    };
    std::vector<Kept> kept_; ///< Units by content.
    std::uint64_t uses_ = 0;
    std::uint64_t compilations_ = 0;
};

} // namespace vbscript
