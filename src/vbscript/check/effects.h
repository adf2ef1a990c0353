// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/syntax/ast.h"
#include "vbscript/values/names.h"

#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace vbscript {

/// Which names a text may give a value to, and where: by assignments, and by what it passes to
/// procedures of its own that assign to their arguments. Linear in the text.
class Effects {
  public:
    Effects(const Module& module, const Names& names);

    /// Whether the name may get a value in this procedure (the module's statements are one).
    [[nodiscard]] bool assigns(const ProcDecl& proc, Atom name) const {
        return assigned_.at(&proc).contains(name);
    }
    /// The same, in any procedure where the name is the module's.
    [[nodiscard]] bool assignsGlobal(Atom name) const { return global_.contains(name); }
    /// The text runs texts of its own, which may assign to anything.
    [[nodiscard]] bool runsText() const { return runsText_; }
    /// What a name is in the procedure itself; its constants, arguments and own name have a value.
    enum class Local : std::uint8_t { No, Variable, Valued };
    [[nodiscard]] Local local(const ProcDecl& proc, Atom name) const {
        const auto& mine = locals_.at(&proc);
        const auto at = mine.find(name);
        return at == mine.end() ? Local::No : at->second;
    }

  private:
    using Set = std::unordered_set<Atom>;
    void list(const Module& module);
    void declare(const ProcDecl& proc);
    void collect(const ProcDecl& proc, Atom getRef);
    void judgeArguments(const ProcDecl& proc);
    void passOn(const ProcDecl& proc);
    [[nodiscard]] bool mayAssign(const Expr& callee, std::size_t argument) const;

    std::vector<const ProcDecl*> all_;
    /// By the name of procedures: which of their arguments they may assign to. Of several of one
    /// name (a class may have one, too) any may be meant.
    std::unordered_map<Atom, std::vector<bool>> assignsArgument_;
    std::unordered_map<const ProcDecl*, Set> assigned_, handedOn_;
    std::unordered_map<const ProcDecl*, std::unordered_map<Atom, Local>> locals_;
    Set global_;
    bool runsText_ = false;
    bool refers_ = false; ///< procedures are called through variables
};

} // namespace vbscript
