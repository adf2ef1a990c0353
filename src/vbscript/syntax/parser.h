// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/syntax/ast.h"
#include "vbscript/values/names.h"
#include "vbscript/values/runtime.h"

#include <memory>
#include <string_view>

namespace vbscript {

/// Both throw CompileFault with the place of the mistake.
/// `me`: the text will run where Me has a meaning. `run`: what the time is charged to; null outside
/// of any run.
std::unique_ptr<Module> parseModule(std::string_view source, Names& names, bool me = false,
                                    Runtime* run = nullptr);
/// The text of an Eval: one expression, in which "=" compares.
std::unique_ptr<Module> parseExpression(std::string_view source, Names& names, bool me = false,
                                        Runtime* run = nullptr);

} // namespace vbscript
