// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/values/convert.h"

namespace vbscript {

namespace {

Value isArray(Runtime&, Arguments a) { return Value::boolean(a[0].is(Type::Array)); }
Value isEmpty(Runtime&, Arguments a) { return Value::boolean(a[0].is(Type::Empty)); }
Value isNull(Runtime&, Arguments a) { return Value::boolean(a[0].is(Type::Null)); }
Value isObject(Runtime&, Arguments a) { return Value::boolean(a[0].is(Type::Object)); }

Value isDate(Runtime& rt, Arguments a) {
    double date = 0;
    return Value::boolean(a[0].is(Type::Date) || dateIn(rt, a[0], date));
}

Value isNumeric(Runtime& rt, Arguments a) {
    Value v = a[0];
    if (v.is(Type::Object)) {
        if (!v.o) return Value::boolean(false);
        try {
            v = rt.defaultOf(v);
        } catch (const Fault&) {
            return Value::boolean(false);
        }
    }
    double n = 0;
    return Value::boolean(isNumericType(v.type) || v.is(Type::Empty) || numberIn(rt, v, n));
}

Value typeName(Runtime&, Arguments a) { return Value::text(typeNameOf(a[0])); }

Value varType(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Object) && a[0].o) {
        // The classic function looks through an object to its default value when there is one.
        try {
            return Value::integer(varTypeOf(rt.defaultOf(a[0])));
        } catch (const Fault&) {
            return Value::integer(9);
        }
    }
    return Value::integer(varTypeOf(a[0]));
}

constexpr Builtin table[] = {
    {"IsArray", isArray, 1, 1},   {"IsDate", isDate, 1, 1},       {"IsEmpty", isEmpty, 1, 1},
    {"IsNull", isNull, 1, 1},     {"IsNumeric", isNumeric, 1, 1}, {"IsObject", isObject, 1, 1},
    {"TypeName", typeName, 1, 1}, {"VarType", varType, 1, 1},
};

} // namespace

std::span<const Builtin> typeBuiltins() { return table; }

} // namespace vbscript
