// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/library/members.h"
#include "vbscript/values/value.h"

#include <functional>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vbscript {

/// How a host reads a value that a script handed it: as CStr and CDbl do in the script's country.
/// Both throw Fault 13 or 94, which the script sees as its own error.
class HostValues {
  public:
    virtual ~HostValues() = default;
    [[nodiscard]] virtual std::string text(const Value& v) = 0; ///< UTF-8
    [[nodiscard]] virtual double number(const Value& v) = 0;
};

/// A named object of the host. Members come in lower case; "" is the default one. A false return
/// becomes error 438; Fault may be thrown for others. It is called on the engine's thread, in the
/// midst of a run: Engine::setNumber is allowed there, Engine::addCode is not.
class HostObject {
  public:
    virtual ~HostObject() = default;
    /// A property is read or a method called, as function or statement; without a result, leave it.
    virtual bool call(std::string_view member, std::span<const Value> args, HostValues& values,
                      Value& result) = 0;
    /// A property is assigned, the default one when a script assigns to the object itself.
    virtual bool assign(std::string_view member, std::span<const Value> args, const Value& v,
                        HostValues& values) = 0;
    /// What For Each goes over; false: not a collection.
    virtual bool elements(std::vector<Value>& /*all*/) { return false; }
};

/// A host object made of functions, for those that need no class of their own.
class HostTable : public HostObject {
  public:
    using Call = std::function<Value(std::span<const Value>, HostValues&)>;
    using Put = std::function<void(const Value&, HostValues&)>;
    static constexpr Takes anything{0, UINT8_MAX};
    /// `name` in any letter case. Calls with fewer or more arguments than it takes are error 450,
    /// as any arguments of a property are.
    HostTable& method(std::string_view name, Call f, Takes takes = anything);
    HostTable& property(std::string_view name, Call read, Put write);
    /// The property that is meant when a script names only the object.
    HostTable& defaultProperty(std::string_view name);

    bool call(std::string_view member, std::span<const Value> args, HostValues& values,
              Value& result) override;
    bool assign(std::string_view member, std::span<const Value> args, const Value& v,
                HostValues& values) override;

  private:
    struct Member {
        Call read;
        Put write;
        Takes takes;
    };
    [[nodiscard]] const Member& find(std::string_view name) const;

    std::map<std::string, Member, std::less<>> members_;
    std::string default_;
};

} // namespace vbscript
