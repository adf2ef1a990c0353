#pragma once

#include "vbscript/compile/globals.h"
#include "vbscript/compile/library.h"

#include <map>
#include <memory>

namespace vbscript {

/// The names that a text may use beyond its own.
struct CompileContext {
    Names& names;
    Globals& globals;
    const Library& builtins;
    bool lines = false; ///< steps say which line they are of
};

/// A frame that is running, for text that runs in its midst: its variables by address.
struct LiveFrame {
    const Proc* proc = nullptr;
    Value* registers = nullptr;
    /// Variables made by earlier texts in the same frame.
    std::map<Atom, std::unique_ptr<Value>>* extra = nullptr;
};

/// Both throw CompileFault. The unit holds no reference to the syntax tree.
std::shared_ptr<Unit> compileModule(const CompileContext& context, const Module& module);
std::shared_ptr<Unit> compileInside(const CompileContext& context, const Module& module,
                                    LiveFrame live);

} // namespace vbscript
