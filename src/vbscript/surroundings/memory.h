// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/errors.h"

#include <cstddef>
#include <cstdint>

namespace vbscript {

/// What the values of one engine hold, in bytes, against a limit. A value remembers the account
/// it was charged to; the account outlives its engine until the last value is gone.
class Memory {
  public:
    Memory() = default;
    Memory(const Memory&) = delete;
    Memory& operator=(const Memory&) = delete;

    /// The account that new values of this thread are charged to.
    static Memory& current();

    /// Throws Fault `tooBig` when `bytes` alone exceeds the limit, which a script may handle, and
    /// BudgetFault when all together do, which it may not. Nothing has been allocated by then.
    void take(std::size_t bytes, int tooBig = errors::outOfMemory);
    void giveBack(std::size_t bytes);
    /// A container's bookkeeping changes size: charged without adding a cell.
    void grow(std::size_t bytes, int tooBig = errors::outOfMemory);
    void shrink(std::size_t bytes) { used_ -= bytes; }

    [[nodiscard]] std::size_t used() const { return used_; }
    [[nodiscard]] std::size_t limit() const { return limit_; }
    void setLimit(std::size_t bytes) { limit_ = bytes; }

    /// The engine goes: the account frees itself with the last value.
    static void abandon(Memory* account);

  private:
    friend class MemoryScope;
    std::size_t used_ = 0;
    std::size_t cells_ = 0;
    std::size_t limit_ = SIZE_MAX;
    bool abandoned_ = false;
};

/// Makes `account` the current one of this thread while it lives.
class MemoryScope {
  public:
    explicit MemoryScope(Memory& account);
    ~MemoryScope();
    MemoryScope(const MemoryScope&) = delete;
    MemoryScope& operator=(const MemoryScope&) = delete;

  private:
    Memory* before_;
};

} // namespace vbscript
