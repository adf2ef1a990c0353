// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/run/machine.h"
#include "vbscript/surroundings/errors.h"

namespace vbscript {

/// What GetRef gives: a procedure as a value, called through its default member.
class ProcedureObject : public Object {
  public:
    ProcedureObject(Machine& machine, const Proc& proc, std::shared_ptr<Unit> owner)
        : machine_(machine), proc_(proc), owner_(std::move(owner)) {}
    [[nodiscard]] std::string typeName() const override { return "Object"; }
    void access(Runtime&, Atom member, Access how, std::span<Value> args, Value& result) override {
        if (member != 0 || how == Access::Let || how == Access::Set)
            throw Fault(errors::noSuchMember);
        result = machine_.invoke(proc_, nullptr, args);
    }

  private:
    Machine& machine_;
    const Proc& proc_;
    std::shared_ptr<Unit> owner_;
};

} // namespace vbscript
