// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/surroundings/errors.h"
#include "vbscript/values/builtin.h"

#include <algorithm>
#include <type_traits>

namespace vbscript {

/// How many arguments a member takes; a value that is assigned to it is not counted.
struct Takes {
    std::uint8_t least = 0, most = 0;
};

/// What every object asks before a member is used: whether it has one that may be used so, and
/// whether the arguments are as many as that one takes.
inline void admit(bool there, Takes takes, std::size_t given) {
    if (!there) throw Fault(errors::noSuchMember);
    if (given < takes.least || given > takes.most) throw Fault(errors::wrongArguments);
}

/// A member of the native objects of class O: what reads or calls it, what assigns a value to it,
/// and what assigns an object with Set; what is missing cannot be done with it. An assigned value
/// is the last argument.
template <class O>
struct MemberOf {
    Word name;
    Takes takes;
    Value (O::*get)(Runtime& rt, Arguments args) = nullptr;
    void (O::*let)(Runtime& rt, Arguments args) = nullptr;
    void (O::*set)(Runtime& rt, Arguments args) = nullptr;
};

/// All of a class, and which one the bare object stands for (None: for nothing). Those used most
/// come first: they are gone through in this order.
template <class O>
struct Members {
    Word byDefault;
    std::span<const MemberOf<O>> all;
};

/// An object of the language's own: O::members() is all that a script can do with it, besides what
/// its Base offers.
template <class O, class Base = Object>
class Native : public Base {
  public:
    using Base::Base;
    void access(Runtime& rt, Atom member, Access how, Arguments args, Value& result) override {
        const Members<O> of = O::members();
        const Word name = member == 0 ? of.byDefault : wordOf(member);
        const auto at = std::find_if(of.all.begin(), of.all.end(),
                                     [name](const MemberOf<O>& m) { return m.name == name; });
        if constexpr (!std::is_same_v<Base, Object>) {
            if (at == of.all.end()) return Base::access(rt, member, how, args, result);
        }
        constexpr MemberOf<O> none{Word::None, {}};
        const MemberOf<O> m = at == of.all.end() ? none : *at;
        O& self = static_cast<O&>(*this);
        if (how == Access::Let || how == Access::Set) {
            const auto assign = how == Access::Set ? m.set : m.let;
            admit(assign != nullptr, m.takes, args.size() - 1);
            (self.*assign)(rt, args);
        } else {
            admit(m.get != nullptr, m.takes, args.size());
            result = (self.*m.get)(rt, args);
        }
    }
};

} // namespace vbscript
