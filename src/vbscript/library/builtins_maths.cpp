// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"

#include <cmath>

namespace vbscript {

namespace {

Value realOf(double d) {
    if (!std::isfinite(d)) throw Fault(errors::overflow);
    return Value::real(d);
}

Value absolute(Runtime& rt, Arguments a) {
    Value v = plain(rt, a[0]);
    switch (v.type) {
    case Type::Null:
    case Type::Byte:
        return v;
    case Type::Empty:
        return Value::integer(0);
    case Type::Boolean:
    case Type::Integer:
        return v.i == -32768 ? Value::longint(32768) : Value::integer(std::abs(v.i));
    case Type::Long:
        if (v.i == -2147483648LL) return Value::real(2147483648.0);
        return Value::longint(std::abs(v.i));
    case Type::Single:
        return Value::single(std::fabs(v.d));
    case Type::Currency:
        if (v.i == INT64_MIN) throw Fault(errors::overflow);
        return Value::currency(std::abs(v.i));
    case Type::Date:
        return Value::date(std::fabs(v.d));
    default:
        return Value::real(std::fabs(toDouble(rt, v)));
    }
}

Value atn(Runtime& rt, Arguments a) { return realOf(std::atan(toDouble(rt, a[0]))); }
Value cosine(Runtime& rt, Arguments a) { return realOf(std::cos(toDouble(rt, a[0]))); }
Value sine(Runtime& rt, Arguments a) { return realOf(std::sin(toDouble(rt, a[0]))); }
Value tangent(Runtime& rt, Arguments a) { return realOf(std::tan(toDouble(rt, a[0]))); }
Value exponential(Runtime& rt, Arguments a) { return realOf(std::exp(toDouble(rt, a[0]))); }

Value logarithm(Runtime& rt, Arguments a) {
    const double d = toDouble(rt, a[0]);
    if (d <= 0) throw Fault(errors::invalidCall);
    return realOf(std::log(d));
}

Value squareRoot(Runtime& rt, Arguments a) {
    const double d = toDouble(rt, a[0]);
    if (d < 0) throw Fault(errors::invalidCall);
    return realOf(std::sqrt(d));
}

std::int64_t roundedDown(std::int64_t tenThousandths, bool towardZero) {
    std::int64_t rest = tenThousandths % 10000;
    if (!towardZero && rest < 0) rest += 10000;
    return tenThousandths - rest;
}

Value whole(Runtime& rt, const Value& given0, bool towardZero) {
    Value v = plain(rt, given0);
    switch (v.type) {
    case Type::Null:
    case Type::Byte:
    case Type::Integer:
    case Type::Long:
        return v;
    case Type::Empty:
        return Value::integer(0);
    case Type::Boolean:
        return Value::integer(v.i);
    case Type::Currency:
        return Value::currency(roundedDown(v.i, towardZero));
    default:
        break;
    }
    const double d = toDouble(rt, v);
    const double r = towardZero ? std::trunc(d) : std::floor(d);
    if (v.is(Type::Single)) return Value::single(r);
    return v.is(Type::Date) ? Value::date(r) : Value::real(r);
}

Value fix(Runtime& rt, Arguments a) { return whole(rt, a[0], true); }
Value integerPart(Runtime& rt, Arguments a) { return whole(rt, a[0], false); }

Value sign(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null)) return a[0];
    const double d = toDouble(rt, a[0]);
    return Value::integer(d > 0 ? 1 : d < 0 ? -1 : 0);
}

Value roundTo(Runtime& rt, Arguments a) {
    Value v = plain(rt, a[0]);
    const std::int64_t places = numberArg(rt, a, 1, 0);
    if (places < 0 || places > 22) throw Fault(errors::invalidCall);
    if (v.is(Type::Null) || v.isInt() || v.is(Type::Byte)) return v;
    if (v.is(Type::Boolean)) return Value::integer(v.i);
    if (v.is(Type::Empty)) return Value::integer(0);
    const double d = toDouble(rt, v);
    const double scale = std::pow(10.0, static_cast<double>(places));
    const double scaled = d * scale;
    const double r = std::fabs(scaled) < 1e15 ? roundEven(scaled) / scale : d;
    if (v.is(Type::Single)) return Value::single(r);
    if (v.is(Type::Currency))
        return Value::currency(static_cast<std::int64_t>(roundEven(r * 10000.0)));
    return v.is(Type::Date) ? Value::date(r) : Value::real(r);
}

Value random(Runtime& rt, Arguments a) {
    const double d = given(a, 0) ? toDouble(rt, a[0]) : 1.0;
    if (d == 0) return Value::single(rt.chance.last());
    if (d < 0) rt.chance.seed(static_cast<float>(d));
    return Value::single(rt.chance.next());
}

Value randomize(Runtime& rt, Arguments a) {
    if (given(a, 0)) {
        rt.chance.randomize(toDouble(rt, a[0]));
    } else {
        const LocalTime t = rt.world.wallClock();
        rt.chance.randomize(((t.hour * 60 + t.minute) * 60 + t.second) + t.millisecond / 1000.0);
    }
    return {};
}

Value rgb(Runtime& rt, Arguments a) {
    std::int64_t colour = 0;
    for (std::size_t k = 3; k-- > 0;) {
        const std::int64_t part = toLong(rt, a[k]);
        if (part < 0) throw Fault(errors::invalidCall);
        colour = colour * 256 + std::min<std::int64_t>(part, 255);
    }
    return Value::longint(colour);
}

constexpr Builtin table[] = {
    {"Abs", absolute, 1, 1},    {"Atn", atn, 1, 1},    {"Cos", cosine, 1, 1},
    {"Exp", exponential, 1, 1}, {"Fix", fix, 1, 1},    {"Int", integerPart, 1, 1},
    {"Log", logarithm, 1, 1},   {"Rnd", random, 0, 1}, {"Round", roundTo, 1, 2},
    {"Sgn", sign, 1, 1},        {"Sin", sine, 1, 1},   {"Sqr", squareRoot, 1, 1},
    {"Tan", tangent, 1, 1},     {"RGB", rgb, 3, 3},    {"Randomize", randomize, 0, 1},
};

} // namespace

std::span<const Builtin> mathBuiltins() { return table; }

} // namespace vbscript
