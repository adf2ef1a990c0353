// SPDX-License-Identifier: Apache-2.0
#include "vbscript/run/machine_calls.h"

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

// What came by reference becomes the procedure's own, where it says so.
void Machine::copyByValue(const Proc& proc, Value* fp) {
    for (std::size_t k = 0; k < proc.arity; ++k) {
        if (!proc.parameters[k].byRef) followReferences({fp + k, 1});
    }
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

// Looks for a frame that goes on after the error; false when no frame down to `base` does.
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
