// SPDX-License-Identifier: Apache-2.0
#include "vbscript/run/instance.h"

#include "vbscript/run/machine.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"

namespace vbscript {

Instance::Instance(Machine& machine, const ClassInfo& cls, Linked& ring)
    : Linked(ring), machine_(machine), class_(cls), unit_(cls.unit->shared_from_this()),
      account_(Memory::current()) {
    const std::size_t bytes =
        cls.variables.size() * sizeof(Value) + sizeof(Instance) - sizeof(Object);
    variables_.resize(cls.variables.size());
    for (std::size_t k = 0; k < variables_.size(); ++k) {
        const MemberVariable& v = cls.variables[k];
        ++items_;
        if (!v.isArray) continue;
        variables_[k] = Value::array(ArrayData::make(v.extents, !v.extents.empty()));
        items_ += variables_[k].a->items.size();
    }
    // Last: nobody would give it back if anything before had failed.
    account_.grow(bytes);
    charged_ = bytes;
}

Instance::~Instance() { account_.shrink(charged_); }

std::string Instance::typeName() const { return machine_.names.text(class_.name); }

const Member& Instance::find(Atom name, bool inside) const {
    if (name == 0) {
        if (!class_.defaultMember) throw Fault(errors::noSuchMember);
        return *class_.defaultMember;
    }
    const auto at = class_.members.find(name);
    if (at == class_.members.end()) throw Fault(errors::noSuchMember);
    const Member& m = at->second;
    if (!inside && !m.getPublic && !m.letPublic && !m.setPublic && !m.variablePublic)
        throw Fault(errors::noSuchMember);
    return m;
}

void Instance::access(Runtime&, Atom member, Access how, std::span<Value> args, Value& result) {
    machine_.accessInstance(*this, member, how, args, result);
}

void Instance::dying() {
    if (ended_ || !class_.terminate) return;
    ended_ = true;
    machine_.terminate(*this);
}

void Instance::breakUp() {
    ended_ = true;
    std::vector<Value> gone;
    gone.swap(variables_);
}

} // namespace vbscript
