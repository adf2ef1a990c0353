// SPDX-License-Identifier: Apache-2.0
#include "vbscript/run/machine_calls.h"

#include "vbscript/run/object_procedure.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/syntax/parser.h"

#include <algorithm>

namespace vbscript {

namespace {

constexpr int registersPerCall = 64;   // of the calls that a script may nest, on the average
constexpr int mostRegisters = 1 << 17; // 2 MB
constexpr int deepestNesting = 60;     // each takes a slice of the C++ stack
constexpr int stepsPerLook = 1000;     // between two looks at the clock
constexpr std::size_t unitsKept = 16;

std::size_t registersFor(int maxDepth) {
    constexpr int atLeast = 64; // a limit of few calls must not limit a procedure's variables
    const int calls = std::clamp(maxDepth, atLeast, mostRegisters / registersPerCall);
    return static_cast<std::size_t>(calls) * registersPerCall;
}

} // namespace

Machine::Machine(Surroundings& w, Memory& account, Provisions provisions)
    : Runtime(w), account_{account}, library(names, std::move(provisions)) {
    setLimits(limits_);
}

Machine::~Machine() {
    closing_ = true;
    for (std::uint32_t k = 0; k < globals.size(); ++k)
        globals[k].value.clear();
    ring_.breakUpAll();
    frames_.clear();
    stack_.clear();
}

void Machine::setLimits(const Limits& l) {
    limits_ = l;
    deepest_ = static_cast<std::size_t>(std::max(l.maxDepth, 1));
    memory_.setLimit(l.maxBytes);
    if (frames_.empty()) stack_.setRoom(registersFor(l.maxDepth));
}

Machine::Run::Run(Machine& m) : machine_(m) {
    if (m.depthOfRuns_++ > 0) return;
    m.started_ = m.world.monotonicMs();
    m.ticks_ = stepsPerLook;
    m.steps_ = 0;
    m.stopped_ = false;
    m.pending_.reset();
    m.pendingBudget_.reset();
}

Machine::Run::~Run() {
    if (--machine_.depthOfRuns_ > 0) return;
    machine_.retired_.clear();
}

void Machine::checkTime() {
    if (pendingBudget_) {
        const BudgetFault f = *pendingBudget_;
        throw f;
    }
    steps_ += stepsPerLook - ticks_ + 1; // long work looks without a step in between
    ticks_ = stepsPerLook;
    if (limits_.maxSteps > 0 && steps_ > limits_.maxSteps) {
        ticks_ = 0;
        throw BudgetFault(BudgetKind::Steps);
    }
    if (world.monotonicMs() - started_ > limits_.maxMilliseconds) {
        ticks_ = 0;
        throw BudgetFault(BudgetKind::Time);
    }
}

std::shared_ptr<Unit> Machine::unitFor(std::string_view source) {
    ++uses_;
    for (Kept& k : kept_) {
        if (k.unit->source != source) continue;
        k.used = uses_;
        return k.unit;
    }
    ++compilations_;
    CompileContext with = context();
    with.lines = lines_ && depthOfRuns_ == 0; // a text that another one runs has lines of its own
    auto unit = compileModule(with, *parseModule(source, names, false, inRun()));
    unit->source = source;
    while (kept_.size() >= unitsKept || keptBytes() + unit->bytes() > limits_.maxBytes / 4) {
        if (kept_.empty()) break;
        const auto oldest =
            std::min_element(kept_.begin(), kept_.end(),
                             [](const Kept& a, const Kept& b) { return a.used < b.used; });
        retire(std::exchange(oldest->unit, nullptr));
        kept_.erase(oldest);
    }
    unit->charge();
    kept_.push_back({unit, uses_});
    return unit;
}

std::size_t Machine::keptBytes() const {
    std::size_t all = 0;
    for (const Kept& k : kept_)
        all += k.unit->bytes();
    return all;
}

void Machine::retire(std::shared_ptr<Unit> unit) {
    const bool running = std::any_of(frames_.begin(), frames_.end(),
                                     [&](const Frame& f) { return f.proc->unit == unit.get(); });
    if (running) retired_.push_back(std::move(unit));
}

void Machine::declare(Unit& unit) {
    for (const Unit::Declares& d : unit.declares) {
        Global& g = globals[d.global];
        if (d.constant) {
            g.value = *d.constant;
            g.constant = g.defined = true;
        } else if (d.proc && g.proc() != d.proc) {
            g.define().proc = d.proc;
            retire(std::exchange(g.define().procOwner, unit.shared_from_this()));
        } else if (d.cls && g.cls() != d.cls) {
            g.define().cls = d.cls;
            retire(std::exchange(g.define().clsOwner, unit.shared_from_this()));
        }
    }
}

void Machine::runUnit(const std::shared_ptr<Unit>& unit) {
    const Run run(*this);
    unit->ran = false;
    declare(*unit);
    invoke(*unit->main, nullptr, {});
    if (depthOfRuns_ > 1) return;
    if (pendingBudget_) {
        const BudgetFault f = *pendingBudget_;
        throw f;
    }
    if (pending_) {
        const Fault f = *pending_;
        throw f;
    }
}

Value Machine::invoke(const Proc& proc, Instance* self, std::span<Value> args) {
    if (nesting_ >= deepestNesting) throw Fault(errors::outOfStack);
    struct Nest { // everything as it was, however this ends
        Machine& m;
        Registers before;
        explicit Nest(Machine& machine) : m(machine), before(machine.r_) { ++m.nesting_; }
        ~Nest() {
            --m.nesting_;
            m.r_ = before;
        }
    } nest(*this);
    Value* fp = freeRegisters();
    if (!stack_.reach(fp, args.size() + proc.registers)) throw Fault(errors::outOfStack);
    for (std::size_t k = 0; k < args.size(); ++k)
        fp[k] = args[k];
    const std::size_t base = frames_.size();
    Value result;
    push(proc, fp, args.size(), operand::none, self ? Value::object(self) : Value());
    frames_.back().boundary = true;
    loop(base);
    result.swap(fp[0]); // left there for us
    return result;
}

void Machine::terminate(Instance& o) noexcept {
    if (closing_ || stopped_) return;
    try {
        const MemoryScope scope(memory_);
        const Run run(*this);
        invoke(*o.info().terminate, &o, {});
    } catch (const BudgetFault& f) {
        pendingBudget_ = std::make_unique<BudgetFault>(f);
        stopped_ = true;
        ticks_ = 0;
    } catch (const Fault& f) {
        if (!pending_) pending_ = std::make_unique<Fault>(f);
    } catch (...) { // out of memory: the budget will say so
        ticks_ = 0;
    }
}

Value Machine::defaultOf(const Value& object) {
    Value v = object;
    for (int k = 0; k < 20; ++k) { // an object's default may be an object again, but not for ever
        if (!v.is(Type::Object)) return v;
        if (!v.o) throw Fault(errors::objectNotSet);
        Value next;
        v.o->access(*this, 0, Access::Get, {}, next);
        v = std::move(next);
    }
    throw Fault(errors::noSuchMember);
}

Value Machine::procedureNamed(std::string_view name) {
    const Global* g = globals.find(names.known(name));
    if (names.known(name) == 0 || !g || !g->proc()) throw Fault(errors::invalidCall);
    return Value::object(new ProcedureObject(*this, *g->proc(), g->definition->procOwner));
}

Value Machine::runInside(const std::shared_ptr<Unit>& unit, int frame) {
    declare(*unit);
    if (nesting_ >= deepestNesting) throw Fault(errors::outOfStack);
    Value* fp = freeRegisters();
    const Proc& proc = *unit->main;
    if (!stack_.reach(fp, proc.registers)) throw Fault(errors::outOfStack);
    const Registers before = r_;
    const std::size_t base = frames_.size();
    const Value self = frames_[static_cast<std::size_t>(frame)].me;
    ++nesting_;
    try {
        push(proc, fp, 0, operand::none, self);
        frames_.back().boundary = true;
        frames_.back().inside = frame;
        loop(base);
    } catch (...) {
        --nesting_;
        r_ = before;
        throw;
    }
    --nesting_;
    r_ = before;
    Value result;
    result.swap(fp[0]);
    return result;
}

} // namespace vbscript
