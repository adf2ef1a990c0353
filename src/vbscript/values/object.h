// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/value.h"

#include <span>
#include <string>

namespace vbscript {

class Runtime;
class Instance;
using Atom = std::uint32_t; ///< A name, whatever its letter case; 0 is the default member.

enum class Access { Get, Method, Let, Set };

/// Anything that `Set` can put into a variable. Counted by the values that hold it; charged to the
/// account that was current when it was made.
class Object {
  public:
    Object();
    virtual ~Object();
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    [[nodiscard]] virtual std::string typeName() const = 0;
    /// Gets, calls or assigns a member; for Let and Set the new value is the last argument. Throws
    /// Fault: 438 for a member that is not there, 450 for a wrong count.
    virtual void access(Runtime& rt, Atom member, Access how, std::span<Value> args,
                        Value& result) = 0;
    /// What For Each goes over, as an array; false: not a collection.
    virtual bool elements(Runtime&, Value& /*array*/) { return false; }
    /// Itself when it is an object of a script's class.
    virtual Instance* instance() { return nullptr; }
    /// Called once before the last share goes: the object may run code and even be kept.
    virtual void dying() {}

    void share() noexcept { ++refs_; }
    void unshare() noexcept { --refs_; }
    [[nodiscard]] bool last() const noexcept { return refs_ == 1; }
    static void free(Object* o);

  private:
    std::uint32_t refs_ = 0;
    Memory* account_;
};

} // namespace vbscript
