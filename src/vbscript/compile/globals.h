// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/compile/code.h"

#include <array>
#include <memory>
#include <vector>

namespace vbscript {

/// What a name of the module stands for besides a variable, and what keeps that alive.
struct Definition {
    const Proc* proc = nullptr;
    const ClassInfo* cls = nullptr;
    std::shared_ptr<Unit> procOwner, clsOwner;
};

/// A name of the module: a variable, and what else the name may stand for. Never taken away, so
/// compiled code keeps its number and the address of its value. Small, as a host may publish
/// hundreds of thousands, two for each of its own values, which lie side by side.
struct Global {
    Value value;
    Atom name = 0;
    bool defined = false; ///< Declared or assigned by some text, or made by the host.
    bool constant = false;
    bool host = false; ///< An object of the host: assigning means its default property.
    std::unique_ptr<Definition> definition; ///< Null for most.

    [[nodiscard]] const Proc* proc() const { return definition ? definition->proc : nullptr; }
    [[nodiscard]] const ClassInfo* cls() const { return definition ? definition->cls : nullptr; }
    [[nodiscard]] Definition& define() {
        if (!definition) definition = std::make_unique<Definition>();
        return *definition;
    }
};
static_assert(sizeof(Global) == 32);

class Globals {
  public:
    std::uint32_t slot(Atom name) {
        if (name >= byAtom_.size()) byAtom_.resize(name + name / 2 + 64, unknown);
        std::uint32_t& s = byAtom_[name];
        if (s == unknown) {
            Memory::current().grow(sizeof(Global));
            if (size_ % pieceSize == 0) pieces_.push_back(std::make_unique<Piece>());
            s = size_++;
            (*this)[s].name = name;
        }
        return s;
    }
    [[nodiscard]] const Global* find(Atom name) const {
        if (name >= byAtom_.size() || byAtom_[name] == unknown) return nullptr;
        return &(*this)[byAtom_[name]];
    }
    Global& operator[](std::uint32_t s) { return pieces_[s / pieceSize]->at[s % pieceSize]; }
    const Global& operator[](std::uint32_t s) const {
        return pieces_[s / pieceSize]->at[s % pieceSize];
    }
    [[nodiscard]] std::uint32_t size() const { return size_; }

  private:
    static constexpr std::uint32_t unknown = UINT32_MAX;
    static constexpr std::uint32_t pieceSize = 32;
    struct alignas(64) Piece {
        std::array<Global, pieceSize> at;
    };
    std::vector<std::unique_ptr<Piece>> pieces_;
    std::uint32_t size_ = 0;
    std::vector<std::uint32_t> byAtom_;
};

} // namespace vbscript
