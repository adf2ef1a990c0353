// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/value.h"

#include <cstddef>
#include <memory>

namespace vbscript {

/// The registers of all frames, one behind the other. They never move, so room for the deepest
/// recursion is set aside at the first run; but they are made only when one is reached, as most
/// scripts need a few dozen.
class RegisterStack {
  public:
    RegisterStack() = default;
    ~RegisterStack() { setRoom(0); }
    RegisterStack(const RegisterStack&) = delete;
    RegisterStack& operator=(const RegisterStack&) = delete;

    /// Room for `most` registers from now on; no register may be in use.
    void setRoom(std::size_t most) {
        if (most == most_) return;
        clear();
        if (first_ != nullptr) std::allocator<Value>().deallocate(first_, most_);
        made_ = first_ = nullptr;
        most_ = most;
    }
    [[nodiscard]] Value* begin() {
        if (first_ == nullptr) made_ = first_ = std::allocator<Value>().allocate(most_);
        return first_;
    }
    /// Makes sure of `count` registers from `from` on, which is one behind the made ones at most;
    /// false when there is no room for so many.
    [[nodiscard]] bool reach(const Value* from, std::size_t count) {
        if (count <= static_cast<std::size_t>(made_ - from)) return true;
        if (count > static_cast<std::size_t>(first_ + most_ - from)) return false;
        for (const Value* const end = from + count; made_ != end; ++made_)
            std::construct_at(made_);
        return true;
    }
    /// No register is in use any more.
    void clear() {
        std::destroy(first_, made_);
        made_ = first_;
    }

  private:
    std::size_t most_ = 0;
    Value* first_ = nullptr;
    Value* made_ = nullptr;
};

} // namespace vbscript
