// SPDX-License-Identifier: Apache-2.0
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/arithmetic.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

namespace vbscript {

namespace {

Order orderOf(double a, double b) {
    return a < b ? Order::Less : a > b ? Order::Greater : Order::Equal;
}

Order orderOf(int c) { return c < 0 ? Order::Less : c > 0 ? Order::Greater : Order::Equal; }

Order turned(Order o) {
    return o == Order::Less ? Order::Greater : o == Order::Greater ? Order::Less : o;
}

/// A text on the left, another type on the right.
Order textWith(Runtime& rt, const Value& text, const Value& other, Written textAs,
               Written otherAs) {
    if (other.is(Type::Empty)) return orderOf(compare(text.chars(), {}, false));
    if (otherAs == Written::Number) return orderOf(toDouble(rt, text), toDouble(rt, other));
    if (otherAs == Written::Truth) {
        const auto* word = other.i ? u"True" : u"False";
        return orderOf(compare(text.chars(), word, false));
    }
    if (textAs == Written::Text) {
        const Value written = toText(rt, other);
        return orderOf(compare(text.chars(), written.chars(), false));
    }
    return Order::Greater; // a computed number is less than any text
}

} // namespace

Order order(Runtime& rt, const Value& a, const Value& b, Written left, Written right) {
    if (a.is(Type::Object) || b.is(Type::Object)) {
        return order(rt, plain(rt, a), plain(rt, b), left, right);
    }
    if (a.is(Type::Array) || b.is(Type::Array)) throw Fault(errors::typeMismatch);
    if (a.is(Type::Null) || b.is(Type::Null)) return Order::Unknown;
    const bool textLeft = a.is(Type::String);
    const bool textRight = b.is(Type::String);
    if (textLeft && textRight) return orderOf(compare(a.chars(), b.chars(), false));
    if (textLeft) return textWith(rt, a, b, left, right);
    if (textRight) return turned(textWith(rt, b, a, right, left));
    if (a.is(Type::Currency) && b.is(Type::Currency)) {
        return a.i < b.i ? Order::Less : a.i > b.i ? Order::Greater : Order::Equal;
    }
    return orderOf(toDouble(rt, a), toDouble(rt, b));
}

bool holds(Operator op, Order o) {
    switch (op) {
    case Operator::Equal:
        return o == Order::Equal;
    case Operator::NotEqual:
        return o == Order::Less || o == Order::Greater;
    case Operator::Less:
        return o == Order::Less;
    case Operator::Greater:
        return o == Order::Greater;
    case Operator::LessEqual:
        return o == Order::Less || o == Order::Equal;
    default:
        return o == Order::Greater || o == Order::Equal;
    }
}

bool sameObject(const Value& a, const Value& b) {
    if (!a.is(Type::Object) || !b.is(Type::Object)) throw Fault(errors::objectRequired);
    return a.o == b.o;
}

} // namespace vbscript
