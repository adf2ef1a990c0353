// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/runtime.h"

#include <cstdint>
#include <string>

namespace vbscript {

/// The language's coercions. An object stands for its default member; Null throws Fault 94, text
/// that is no number 13, what does not fit 6.
double toDouble(Runtime& rt, const Value& v);
std::int64_t toLong(Runtime& rt, const Value& v);     ///< Rounded to even, within 32 bits.
std::int64_t toInteger(Runtime& rt, const Value& v);  ///< Within 16 bits.
std::int64_t toCurrency(Runtime& rt, const Value& v); ///< In ten-thousandths.
double toDate(Runtime& rt, const Value& v);
bool toBool(Runtime& rt, const Value& v);
/// A condition: as toBool, but Null counts as false.
bool isTrue(Runtime& rt, const Value& v);
/// A String value; shares the characters when `v` is one already.
Value toText(Runtime& rt, const Value& v);
/// For "&": Null is "".
Value joinable(Runtime& rt, const Value& v);
/// An object's default member, anything else as it is.
Value plain(Runtime& rt, const Value& v);

bool isNumericType(Type t);
std::string typeNameOf(const Value& v);
int varTypeOf(const Value& v);
double roundEven(double v);
/// A double as Long, 6 when it does not fit.
std::int64_t fitLong(double v);
/// The number in a text or false; no error.
bool numberIn(Runtime& rt, const Value& v, double& n);
bool dateIn(Runtime& rt, const Value& v, double& date);
double checkedDate(double days);

} // namespace vbscript
