// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/builtin.h"
#include "vbscript/values/names.h"

#include <vector>

namespace vbscript {

/// What the language brings along, as whoever makes a module gives it.
struct Provisions {
    std::vector<std::span<const Builtin>> functions; ///< in groups, which must outlive the module
    std::vector<BuiltinConstant> constants;
    Value (*regExp)() = nullptr; ///< what New RegExp makes
};

/// The built-in functions and constants by name.
class Library {
  public:
    Library(Names& names, Provisions provisions);
    static constexpr std::uint32_t none = UINT32_MAX;
    [[nodiscard]] std::uint32_t function(Atom name) const {
        return name < functionOf_.size() ? functionOf_[name] : none;
    }
    [[nodiscard]] const Builtin& at(std::uint32_t id) const { return *functions_[id]; }
    [[nodiscard]] const Value* constant(Atom name) const {
        return name < constantOf_.size() ? constantOf_[name] : nullptr;
    }
    [[nodiscard]] Value newRegExp() const { return regExp_(); }

  private:
    void add(Names& names, std::span<const Builtin> group);
    std::vector<BuiltinConstant> constants_;
    std::vector<const Builtin*> functions_;
    std::vector<std::uint32_t> functionOf_;
    std::vector<const Value*> constantOf_;
    Value (*regExp_)();
};

} // namespace vbscript
