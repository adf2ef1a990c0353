#pragma once

#include "script/vbscript/builtins.h"

#include <vector>

namespace vbscript {

/// The built-in functions and constants by name.
class Library {
  public:
    explicit Library(Names& names);
    static constexpr std::uint32_t none = UINT32_MAX;
    [[nodiscard]] std::uint32_t function(Atom name) const {
        return name < functionOf_.size() ? functionOf_[name] : none;
    }
    [[nodiscard]] const Builtin& at(std::uint32_t id) const { return *functions_[id]; }
    [[nodiscard]] const Value* constant(Atom name) const {
        return name < constantOf_.size() ? constantOf_[name] : nullptr;
    }

  private:
    void add(Names& names, std::span<const Builtin> group);
    std::vector<BuiltinConstant> constants_;
    std::vector<const Builtin*> functions_;
    std::vector<std::uint32_t> functionOf_;
    std::vector<const Value*> constantOf_;
};

} // namespace vbscript
