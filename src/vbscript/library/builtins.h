// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/builtin.h"

#include <string>
#include <vector>

namespace vbscript {

/// The groups, one file each.
std::span<const Builtin> convertBuiltins();
std::span<const Builtin> typeBuiltins();
std::span<const Builtin> mathBuiltins();
std::span<const Builtin> stringBuiltins();
std::span<const Builtin> listBuiltins();
std::span<const Builtin> byteBuiltins();
std::span<const Builtin> dateBuiltins();
std::span<const Builtin> datePartBuiltins();
std::span<const Builtin> formatBuiltins();
std::span<const Builtin> hostBuiltins();

/// Made anew for each engine: values are not shared between threads.
std::vector<BuiltinConstant> builtinConstants();

/// An argument that may be left out: whether it is there.
inline bool given(Arguments args, std::size_t k) { return k < args.size() && !args[k].isMissing(); }
/// A whole number argument, or what it stands for when it is left out.
std::int64_t numberArg(Runtime& rt, Arguments args, std::size_t k, std::int64_t otherwise);
/// Whether a comparison is to disregard letter case: vbBinaryCompare, vbTextCompare, or
/// vbDatabaseCompare, which is another word for it where it may stand. Throws Fault 5 for another
/// number.
enum class CompareModes { Two, Three };
bool textCompareArg(Runtime& rt, Arguments args, std::size_t k,
                    CompareModes modes = CompareModes::Three);
/// What a box or Err keeps of a string: no more than anybody would read.
std::string shown(const Value& text);

} // namespace vbscript
