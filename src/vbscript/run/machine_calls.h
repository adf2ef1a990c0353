// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/run/machine.h"

#include <algorithm>

// What every call of a procedure does, to be put in line where it is used.

#define VBS_HOT [[gnu::always_inline]] inline

namespace vbscript {

VBS_HOT Value* Machine::variablesOf(const Value& me) {
    return me.is(Type::Object) ? static_cast<Instance*>(me.o)->variables() : nullptr;
}

// The arguments lie at `fp` already. Throws before anything has changed.
VBS_HOT void Machine::push(const Proc& proc, Value* fp, std::size_t args, Operand target,
                           Value self) {
    if (args != proc.parameters.size()) throw Fault(450);
    if (frames_.size() >= deepest_ || !stack_.reach(fp, proc.registers)) {
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
    r_.pc = r_.code = f.pc; // as load() does, without asking the frame for what is known here
    r_.fp = fp;
    r_.pool = proc.pool.data();
    r_.me = variablesOf(f.me);
}

VBS_HOT void Machine::load() {
    Frame& f = frames_.back();
    r_.pc = f.pc;
    r_.code = f.proc->code.data();
    r_.fp = f.registers;
    r_.pool = f.proc->pool.data();
    r_.me = variablesOf(f.me);
}

// Empties the registers of the top frame and takes it away.
VBS_HOT void Machine::drop() {
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
VBS_HOT bool Machine::leave() {
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

} // namespace vbscript
