// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/compile/code.h"
#include "vbscript/values/linked.h"
#include "vbscript/values/object.h"

#include <memory>
#include <vector>

namespace vbscript {

class Machine;

/// An object of a script's class.
class Instance : public Object, public Linked {
  public:
    Instance(Machine& machine, const ClassInfo& cls, Linked& ring);
    ~Instance() override;

    [[nodiscard]] std::string typeName() const override;
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override;
    Instance* instance() override { return this; }
    void dying() override;
    void breakUp() override;

    [[nodiscard]] const ClassInfo& info() const { return class_; }
    /// The member for `name` (0: the default one), private ones only from `inside` the class; else
    /// Fault 438.
    const Member& find(Atom name, bool inside) const;
    [[nodiscard]] Value* variables() { return variables_.data(); }
    /// How many values it was made with, those of its arrays counted.
    [[nodiscard]] std::size_t items() const { return items_; }

  private:
    Machine& machine_;
    const ClassInfo& class_;
    std::shared_ptr<Unit> unit_;
    std::vector<Value> variables_;
    std::size_t charged_ = 0;
    std::size_t items_ = 0;
    Memory& account_;
    bool ended_ = false;
};

} // namespace vbscript
