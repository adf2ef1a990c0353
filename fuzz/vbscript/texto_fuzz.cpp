#include "script/vbscript/compiler.h"
#include "script/vbscript/fault.h"
#include "script/vbscript/globals.h"
#include "script/vbscript/library.h"
#include "script/vbscript/parser.h"

#include <cstddef>
#include <cstdint>

// Any bytes as source text: lexer, parser and compiler either take them or say where they do not.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vbscript::Names names;
    vbscript::Globals globals;
    const vbscript::Library library(names);
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    try {
        const auto tree = vbscript::parseModule(text, names);
        vbscript::compileModule({names, globals, library}, *tree);
    } catch (const vbscript::CompileFault& f) {
        if (f.line < 1 || f.column < 1) __builtin_trap();
    }
    return 0;
}
