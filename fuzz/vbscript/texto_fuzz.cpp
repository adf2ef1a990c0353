// SPDX-License-Identifier: Apache-2.0
#include "vbscript/check/checker.h"
#include "vbscript/checking.h"
#include "vbscript/compile/compiler.h"
#include "vbscript/compile/globals.h"
#include "vbscript/library/standard.h"
#include "vbscript/surroundings/fault.h"
#include "vbscript/syntax/parser.h"

#include <cstddef>
#include <cstdint>
#include <memory>

// Any bytes as source text: lexer, parser and compiler either take them or say where they do not.
// What they take is looked over, too.

namespace {

struct Words {
    vbscript::Names names;
    vbscript::Library library{names, vbscript::standardProvisions()};
};

const vbscript::Known known{{"MW_1"}, {}, {{"mw", {"writeMW"}}}};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // The names of the language are half of the work of a short text, and no text changes them.
    static auto words = std::make_unique<Words>();
    if (words->names.count() > 1000) words = std::make_unique<Words>();
    vbscript::Globals globals;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const auto tree = vbscript::parseModule(text, words->names);
        vbscript::compileModule({words->names, globals, words->library}, *tree);
        const auto found =
            vbscript::Checker(*tree, words->names, known, vbscript::languageNames()).run();
        if (found.warnings.size() > vbscript::mostWarnings) __builtin_trap();
        for (const auto& w : found.warnings) {
            if (w.line < 1 || w.column < 1) __builtin_trap();
        }
    } catch (const vbscript::CompileFault& f) {
        if (f.line < 1 || f.column < 1) __builtin_trap();
    }
    return 0;
}
