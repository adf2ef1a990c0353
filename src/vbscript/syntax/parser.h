#pragma once

#include "vbscript/syntax/ast.h"

#include <memory>
#include <string_view>

namespace vbscript {

/// Both throw CompileFault with the place of the mistake.
/// `me`: the text will run where Me has a meaning.
std::unique_ptr<Module> parseModule(std::string_view source, Names& names, bool me = false);
/// The text of an Eval: one expression, in which "=" compares.
std::unique_ptr<Module> parseExpression(std::string_view source, Names& names, bool me = false);

} // namespace vbscript
