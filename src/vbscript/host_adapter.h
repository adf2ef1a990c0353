// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/host_object.h"
#include "vbscript/values/object.h"

#include <memory>
#include <utility>

namespace vbscript {

/// The face that a host's object shows to scripts.
class HostAdapter : public Object {
  public:
    explicit HostAdapter(std::shared_ptr<HostObject> object) : object_(std::move(object)) {}
    [[nodiscard]] std::string typeName() const override { return "Object"; }
    void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                Value& result) override;

    bool elements(Runtime& rt, Value& list) override;

  private:
    std::shared_ptr<HostObject> object_;
};

} // namespace vbscript
