// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/operators.h"
#include "vbscript/values/runtime.h"

namespace vbscript {

/// The operators on any two values, with the language's promotion. Throw Fault 6, 11, 13, 438.
Value add(Runtime& rt, const Value& a, const Value& b);
Value subtract(Runtime& rt, const Value& a, const Value& b);
Value multiply(Runtime& rt, const Value& a, const Value& b);
Value divide(Runtime& rt, const Value& a, const Value& b);
Value intDivide(Runtime& rt, const Value& a, const Value& b);
Value modulo(Runtime& rt, const Value& a, const Value& b);
Value power(Runtime& rt, const Value& a, const Value& b);
Value concat(Runtime& rt, const Value& a, const Value& b);
Value negate(Runtime& rt, const Value& a);
Value logicalNot(Runtime& rt, const Value& a);
Value logical(Runtime& rt, Operator op, const Value& a, const Value& b);

/// How the operands of a comparison are written decides how text meets a number.
enum class Written : std::uint8_t { Computed, Number, Text, Truth };
enum class Order : std::uint8_t { Less, Equal, Greater, Unknown };
/// Unknown: one of them is Null.
Order order(Runtime& rt, const Value& a, const Value& b, Written left, Written right);
bool holds(Operator op, Order o);
bool sameObject(const Value& a, const Value& b);

} // namespace vbscript
