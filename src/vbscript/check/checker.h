// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/check/effects.h"
#include "vbscript/check/warning.h"
#include "vbscript/values/names.h"

#include <unordered_map>
#include <unordered_set>

namespace vbscript {

/// Looks over a text that compiles. `language` are the names that need no declaration anywhere.
class Checker {
  public:
    Checker(const Module& module, Names& names, const Known& known,
            const std::vector<std::string>& language);
    Findings run();

  private:
    struct Found { ///< a warning before its texts are made
        Warning::Kind kind;
        Position at;
        Atom name = 0;
        Atom object = 0;
        const ProcDecl* proc = nullptr;
        std::uint32_t firstLine = 0;
    };
    struct Object {
        const Known::Object* known;
        std::unordered_set<Atom> members;
    };

    void procedure(const ProcDecl& proc, const ClassDecl* owner);
    void declarations(const ProcDecl& proc);
    void read(const Expr& e, const ProcDecl& proc, const ClassDecl* owner);
    [[nodiscard]] bool hasValue(Atom name, const ProcDecl& proc, const ClassDecl* owner) const;
    [[nodiscard]] const Object* objectOf(const Expr* e, const ProcDecl& proc) const;
    void member(const Expr& e, const Expr* with, const ProcDecl& proc);
    void firstArgument(const Expr& call, const Expr* with, const ProcDecl& proc);
    void literal(const Expr& e);
    [[nodiscard]] Warning finished(const Found& f);
    [[nodiscard]] std::string nearestName(const Found& f);

    const Module& module_;
    Names& names_;
    const Known& known_;
    const std::vector<std::string>& language_;
    Effects effects_;
    std::unordered_set<Atom> always_; ///< the language's names and the known ones
    std::unordered_map<Atom, Object> objects_;
    std::unordered_map<Atom, Position> declared_; ///< variables and constants of the module
    std::unordered_set<Atom> valued_;             ///< constants, procedures, classes
    std::unordered_map<const ClassDecl*, std::unordered_set<Atom>> members_;
    std::size_t compared_ = 0; ///< names, in search of near ones
    std::vector<Found> found_;
    std::unordered_map<const Expr*, std::size_t> seen_; ///< literals by their place in the findings
    Findings findings_;
};

} // namespace vbscript
