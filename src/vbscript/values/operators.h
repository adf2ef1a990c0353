// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

namespace vbscript {

enum class Operator : std::uint8_t {
    Add,
    Subtract,
    Multiply,
    Divide,
    IntDivide,
    Modulo,
    Power,
    Concat,
    Equal,
    NotEqual,
    Less,
    Greater,
    LessEqual,
    GreaterEqual,
    Is,
    And,
    Or,
    Xor,
    Eqv,
    Imp,
    Not,
    Negate,
    Plus
};

} // namespace vbscript
