// SPDX-License-Identifier: Apache-2.0
#include "vbscript/surroundings/memory.h"

#include "vbscript/surroundings/fault.h"

namespace vbscript {

namespace {
thread_local Memory* active = nullptr;
// For values made outside of every engine. Never freed: such a value may outlive its thread.
thread_local Memory* const unlimited = new Memory;
} // namespace

Memory& Memory::current() { return active ? *active : *unlimited; }

void Memory::grow(std::size_t bytes, int tooBig) {
    if (bytes > limit_) throw Fault(tooBig);
    if (used_ + bytes > limit_) throw BudgetFault(BudgetKind::Memory);
    used_ += bytes;
}

void Memory::take(std::size_t bytes, int tooBig) {
    grow(bytes, tooBig);
    ++cells_;
}

void Memory::giveBack(std::size_t bytes) {
    used_ -= bytes;
    --cells_;
    if (abandoned_ && cells_ == 0) delete this;
}

void Memory::abandon(Memory* account) {
    if (account->cells_ == 0) {
        delete account;
        return;
    }
    account->abandoned_ = true;
}

MemoryScope::MemoryScope(Memory& account) : before_(active) { active = &account; }
MemoryScope::~MemoryScope() { active = before_; }

} // namespace vbscript
