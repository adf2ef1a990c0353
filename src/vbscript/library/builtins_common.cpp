// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

namespace vbscript {

std::int64_t numberArg(Runtime& rt, Arguments args, std::size_t k, std::int64_t otherwise) {
    return given(args, k) ? toLong(rt, args[k]) : otherwise;
}

bool textCompareArg(Runtime& rt, Arguments args, std::size_t k, CompareModes modes) {
    const std::int64_t mode = numberArg(rt, args, k, 0);
    if (mode < 0 || mode > (modes == CompareModes::Two ? 1 : 2)) throw Fault(errors::invalidCall);
    return mode != 0;
}

std::string shown(const Value& text) {
    constexpr std::size_t longest = 32768;
    return utf8(text.chars().substr(0, longest));
}

} // namespace vbscript
