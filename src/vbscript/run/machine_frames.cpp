#include "vbscript/run/machine.h"

#include <algorithm>

namespace vbscript {

namespace {
// A caught error costs as much time as some dozen steps.
constexpr std::size_t costOfError = 16 << 10;
} // namespace

std::string firstWords(std::string_view source) {
    constexpr std::size_t most = 60;
    source.remove_prefix(std::min(source.find_first_not_of(" \t\r\n"), source.size()));
    source = source.substr(0, source.find_first_of("\r\n"));
    if (source.size() <= most) return std::string(source);
    std::size_t end = most;
    while (end > 0 && (static_cast<unsigned char>(source[end]) & 0xC0) == 0x80)
        --end; // in the midst of a character
    return std::string(source.substr(0, end)) + "...";
}

Value* Machine::freeRegisters() {
    return frames_.empty() ? stack_.begin() : r_.fp + frames_.back().proc->registers;
}

Instance* Machine::me() const {
    const Value& v = frames_.back().me;
    return v.is(Type::Object) ? static_cast<Instance*>(v.o) : nullptr;
}

bool Machine::insideOf(const Instance& o) const {
    return !frames_.empty() && me() && &me()->info() == &o.info();
}

// The arguments lie at `fp` already. Throws before anything has changed.
void Machine::push(const Proc& proc, Value* fp, std::size_t args, Operand target, Value self) {
    if (args != proc.parameters.size()) throw Fault(450);
    if (frames_.size() >= static_cast<std::size_t>(std::max(limits_.maxDepth, 1)) ||
        !stack_.reach(fp, proc.registers)) {
        throw Fault(outOfStack);
    }
    tick();
    if (!frames_.empty()) frames_.back().pc = r_.pc;
    for (std::size_t k = 0; k < args; ++k) {
        if (!proc.parameters[k].byRef && fp[k].is(Type::Ref)) {
            Value copy(*fp[k].ref);
            fp[k].swap(copy);
        }
    }
    for (std::size_t k = args; k < proc.locals; ++k)
        fp[k].clear();
    Frame& f = frames_.emplace_back();
    f.proc = &proc;
    f.pc = proc.code.data();
    f.registers = fp;
    f.target = target;
    f.me.swap(self);
    load();
}

void Machine::load() {
    Frame& f = frames_.back();
    r_.pc = f.pc;
    r_.code = f.proc->code.data();
    r_.fp = f.registers;
    r_.pool = f.proc->pool.data();
    r_.me = f.me.is(Type::Object) ? static_cast<Instance*>(f.me.o)->variables() : nullptr;
}

// Empties the registers of the top frame and takes it away.
void Machine::drop() {
    {
        const Frame& f = frames_.back();
        Value* const fp = f.registers;
        const std::size_t n = f.proc->registers;
        for (std::size_t k = 0; k < n; ++k) {
            if (fp[k].owns()) fp[k].clear();
        }
    }
    Frame& top = frames_.back();
    if (!top.me.owns() && !top.extra) return frames_.pop_back();
    const Frame gone = std::move(top); // what goes may run code: not in the midst of pop_back
    frames_.pop_back();
}

// True when execute() is done. The result goes to the caller's target; at a boundary it stays in
// the frame's first register.
bool Machine::leave() {
    Frame& f = frames_.back();
    Value result;
    if (f.proc->result != operand::none) result.swap(r_.fp[f.proc->result]);
    const bool boundary = f.boundary;
    const Operand target = f.target;
    Value* const fp = r_.fp;
    drop();
    if (boundary) {
        fp[0].swap(result);
        return true;
    }
    load();
    if (target != operand::none) {
        at(target).swap(result);
    }
    return false;
}

const Region* Machine::regionOf(const Proc& proc, std::uint32_t pc) {
    auto after = std::upper_bound(proc.regions.begin(), proc.regions.end(), pc,
                                  [](std::uint32_t p, const Region& r) { return p < r.begin; });
    // Empty regions share their start with the one behind them.
    while (after != proc.regions.begin()) {
        --after;
        if (after->begin != after->end) return &*after;
    }
    return nullptr;
}

// Down to the frame of a text that the host gave.
void Machine::locate(Place& p) const {
    if (p.line != 0) return;
    for (std::size_t k = frames_.size(); k-- > 0;) {
        const Frame& f = frames_[k];
        const Instruction* const next = k + 1 == frames_.size() ? r_.pc : f.pc;
        const auto pc = static_cast<std::uint32_t>(next - f.proc->code.data());
        const Region* r = regionOf(*f.proc, pc > 0 ? pc - 1 : 0);
        const Position at = r ? r->at : f.proc->at;
        p.line = static_cast<int>(at.line);
        p.column = static_cast<int>(at.column);
        if (!f.proc->unit->ran) return;
        if (!p.text.empty()) continue;
        p.text = firstWords(f.proc->unit->source);
        p.textLine = p.line;
        p.textColumn = p.column;
    }
}

// Looks for a frame that goes on after the error; false when there is none down to `base`.
bool Machine::handle(Fault& f, std::size_t base) {
    locate(f.at);
    while (frames_.size() > base) {
        Frame& frame = frames_.back();
        const auto pc = static_cast<std::uint32_t>(r_.pc - frame.proc->code.data());
        const Region* region = regionOf(*frame.proc, pc > 0 ? pc - 1 : 0);
        if (frame.resumeNext && region && pc - 1 < region->end) {
            err.set(f);
            work(costOfError);
            r_.pc = frame.proc->code.data() + region->resume;
            for (std::size_t k = 0; k < frame.proc->registers; ++k) {
                if (k >= frame.proc->locals || r_.fp[k].is(Type::Lock)) r_.fp[k].clear();
            }
            return true;
        }
        const bool last = frames_.size() == base + 1;
        drop();
        if (!last) load();
    }
    return false;
}

void Machine::unwind(std::size_t base) {
    while (frames_.size() > base) {
        drop();
        if (frames_.size() > base) load();
    }
}

void Machine::loop(std::size_t base) {
    for (;;) {
        try {
            execute();
            return;
        } catch (Fault& f) {
            if (!handle(f, base)) throw;
        } catch (BudgetFault& f) {
            stopped_ = true;
            locate(f.at);
            unwind(base);
            throw;
        } catch (...) {
            unwind(base);
            throw;
        }
    }
}

} // namespace vbscript
