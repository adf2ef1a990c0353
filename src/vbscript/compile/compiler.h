// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/compile/globals.h"
#include "vbscript/compile/library.h"
#include "vbscript/values/names.h"

#include <map>
#include <memory>

namespace vbscript {

/// The names that a text may use beyond its own.
struct CompileContext {
    Names& names;
    Globals& globals;
    const Library& builtins;
    Runtime* run = nullptr; ///< The run that the time is charged to; null outside of any run.
    bool lines = false;     ///< steps say which line they are of
};

/// Variables that texts have made in a frame that is running.
class MadeNames {
  public:
    MadeNames() = default;
    ~MadeNames() { account_.shrink(made_.size() * cost); }
    MadeNames(const MadeNames&) = delete;
    MadeNames& operator=(const MadeNames&) = delete;
    [[nodiscard]] Value* find(Atom name) const {
        const auto at = made_.find(name);
        return at == made_.end() ? nullptr : at->second.get();
    }
    void make(Atom name) {
        account_.grow(cost);
        made_[name] = std::make_unique<Value>();
    }

  private:
    static constexpr std::size_t cost = 100; // about, with its place in the table
    std::map<Atom, std::unique_ptr<Value>> made_;
    Memory& account_ = Memory::current();
};

/// A frame that is running, for text that runs in its midst: its variables by address.
struct LiveFrame {
    const Proc* proc = nullptr;
    Value* registers = nullptr;
    /// Variables made by earlier texts in the same frame.
    MadeNames* extra = nullptr;
};

/// Both throw CompileFault. The unit holds no reference to the syntax tree.
std::shared_ptr<Unit> compileModule(const CompileContext& context, const Module& module);
std::shared_ptr<Unit> compileInside(const CompileContext& context, const Module& module,
                                    LiveFrame live);

} // namespace vbscript
