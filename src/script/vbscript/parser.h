#pragma once

#include "script/vbscript/ast.h"

#include <memory>
#include <string_view>

namespace vbscript {

/// Both throw CompileFault with the place of the mistake.
std::unique_ptr<Module> parseModule(std::string_view source, Names& names);
/// The text of an Eval: one expression, in which "=" compares.
std::unique_ptr<Module> parseExpression(std::string_view source, Names& names);

} // namespace vbscript
