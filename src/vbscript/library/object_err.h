// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/object.h"

namespace vbscript {

/// The Err object: a view of the runtime's error state.
class ErrObject : public Object {
  public:
    [[nodiscard]] std::string typeName() const override { return "Object"; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override;

  private:
    static void assign(Runtime& rt, Atom member, const Value& v);
    static void raise(Runtime& rt, std::span<Value> args);
};

} // namespace vbscript
