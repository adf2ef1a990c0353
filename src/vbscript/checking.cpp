// SPDX-License-Identifier: Apache-2.0
#include "vbscript/checking.h"

#include "vbscript/check/checker.h"
#include "vbscript/library/standard.h"
#include "vbscript/surroundings/fault.h"
#include "vbscript/syntax/parser.h"

namespace vbscript {

namespace {

std::vector<std::string> collectNames() {
    const Provisions provisions = standardProvisions();
    std::vector<std::string> names{"Err", "Execute", "ExecuteGlobal", "Eval", "RegExp"};
    for (const auto& group : provisions.functions) {
        for (const Builtin& b : group)
            names.emplace_back(b.name);
    }
    for (const BuiltinConstant& c : provisions.constants)
        names.emplace_back(c.name);
    return names;
}

} // namespace

const std::vector<std::string>& languageNames() {
    static const std::vector<std::string> all = collectNames();
    return all;
}

Findings lookOver(std::string_view text, const Known& known) {
    try {
        Names names;
        const auto module = parseModule(text, names);
        return Checker(*module, names, known, languageNames()).run();
    } catch (const CompileFault&) {
        return {};
    }
}

} // namespace vbscript
