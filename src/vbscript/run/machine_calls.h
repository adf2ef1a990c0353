// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/run/machine.h"
#include "vbscript/surroundings/errors.h"

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
    if (args != proc.arity) throw Fault(errors::wrongArguments);
    if (frames_.size() >= deepest_ || !stack_.reach(fp, proc.registers)) {
        throw Fault(errors::outOfStack);
    }
    tick();
    if (!frames_.empty()) frames_.back().pc = r_.pc;
    if (proc.copies) copyByValue(proc, fp);
    for (Value *v = fp + args, *end = fp + proc.locals; v < end; ++v)
        v->clear();
    const Frame& f = frames_.emplace_back(proc, fp, target, std::move(self));
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
        clearAll({f.registers, f.proc->registers});
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
