// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/compile/code.h"

#include <deque>
#include <memory>
#include <vector>

namespace vbscript {

/// A name of the module: a variable, and what else the name may stand for. Never taken away, so
/// compiled code keeps its number and the address of its value.
struct Global {
    Value value;
    Atom name = 0;
    bool defined = false; ///< Declared or assigned by some text, or made by the host.
    bool constant = false;
    bool host = false; ///< An object of the host: assigning means its default property.
    const Proc* proc = nullptr;
    const ClassInfo* cls = nullptr;
    std::shared_ptr<Unit> procOwner, clsOwner;
};

class Globals {
  public:
    std::uint32_t slot(Atom name) {
        if (name >= byAtom_.size()) byAtom_.resize(name + name / 2 + 64, unknown);
        std::uint32_t& s = byAtom_[name];
        if (s == unknown) {
            Memory::current().grow(sizeof(Global), 7);
            places_.push_back(&list_.emplace_back());
            places_.back()->name = name;
            s = static_cast<std::uint32_t>(places_.size() - 1);
        }
        return s;
    }
    [[nodiscard]] const Global* find(Atom name) const {
        if (name >= byAtom_.size() || byAtom_[name] == unknown) return nullptr;
        return places_[byAtom_[name]];
    }
    Global& operator[](std::uint32_t s) { return *places_[s]; }
    const Global& operator[](std::uint32_t s) const { return *places_[s]; }
    [[nodiscard]] std::size_t size() const { return places_.size(); }

  private:
    static constexpr std::uint32_t unknown = UINT32_MAX;
    std::deque<Global> list_;
    std::vector<Global*> places_; ///< By number, as a deque is slow to be asked.
    std::vector<std::uint32_t> byAtom_;
};

} // namespace vbscript
