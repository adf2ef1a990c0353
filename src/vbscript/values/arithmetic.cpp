// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/arithmetic.h"

#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"

#include <algorithm>
#include <cmath>

namespace vbscript {

namespace {

enum class Op { Add, Subtract, Multiply };

/// The arithmetic that two operands meet in, from the narrowest.
enum class Kind { Byte, Integer, Long, Single, Double, Currency, Date };

Kind kindOf(const Value& v) {
    switch (v.type) {
    case Type::Byte:
        return Kind::Byte;
    case Type::Empty:
    case Type::Boolean:
    case Type::Integer:
        return Kind::Integer;
    case Type::Long:
        return Kind::Long;
    case Type::Single:
        return Kind::Single;
    case Type::Double:
    case Type::String:
        return Kind::Double;
    case Type::Currency:
        return Kind::Currency;
    case Type::Date:
        return Kind::Date;
    case Type::Null:
        throw Fault(errors::invalidNull);
    default:
        throw Fault(errors::typeMismatch);
    }
}

Kind join(Op op, Kind a, Kind b) {
    if (a == b) return a;
    const Kind low = std::min(a, b);
    const Kind high = std::max(a, b);
    // A Single cannot hold a Long.
    if (high == Kind::Single && low == Kind::Long) return Kind::Double;
    // An amount and an amount stay exact; an amount times a factor is what the factor is.
    if (op == Op::Multiply && high == Kind::Currency && low == Kind::Double) return Kind::Double;
    return high;
}

std::int64_t whole(const Value& v) { return v.is(Type::Empty) ? 0 : v.i; }

/// An integer result in the narrowest subtype from `kind` up that holds it.
Value fit(Kind kind, std::int64_t n) {
    if (kind == Kind::Byte && n >= 0 && n <= 255) return Value::byte(n);
    if (kind <= Kind::Integer && n >= -32768 && n <= 32767) return Value::integer(n);
    if (n >= -2147483648LL && n <= 2147483647LL) return Value::longint(n);
    return Value::real(static_cast<double>(n));
}

Value finite(double d) {
    if (!std::isfinite(d)) throw Fault(errors::overflow);
    return Value::real(d);
}

Value fitSingle(double d) {
    if (!(std::fabs(d) <= 3.4028234663852886e38)) return finite(d);
    return Value::single(d);
}

std::int64_t apply(Op op, std::int64_t a, std::int64_t b) {
    return op == Op::Add ? a + b : op == Op::Subtract ? a - b : a * b;
}

double apply(Op op, double a, double b) {
    return op == Op::Add ? a + b : op == Op::Subtract ? a - b : a * b;
}

Value money(Op op, std::int64_t a, std::int64_t b) {
    __extension__ using Wide = __int128;
    Wide r = op == Op::Add ? Wide{a} + b : op == Op::Subtract ? Wide{a} - b : Wide{a} * b;
    if (op == Op::Multiply) {
        const Wide rest = r % 10000;
        r /= 10000;
        if (rest >= 5000) ++r;
        if (rest <= -5000) --r;
    }
    if (r > INT64_MAX || r < INT64_MIN) throw Fault(errors::overflow);
    return Value::currency(static_cast<std::int64_t>(r));
}

Value combine(Runtime& rt, Op op, const Value& a, const Value& b) {
    if (a.is(Type::Object) || b.is(Type::Object))
        return combine(rt, op, plain(rt, a), plain(rt, b));
    if (a.is(Type::Null) || b.is(Type::Null)) return Value::null();
    const Kind kind = join(op, kindOf(a), kindOf(b));
    switch (kind) {
    case Kind::Byte:
    case Kind::Integer:
    case Kind::Long:
        return fit(kind, apply(op, whole(a), whole(b)));
    case Kind::Single:
        return fitSingle(apply(op, toDouble(rt, a), toDouble(rt, b)));
    case Kind::Double:
        return finite(apply(op, toDouble(rt, a), toDouble(rt, b)));
    case Kind::Currency:
        return money(op, toCurrency(rt, a), toCurrency(rt, b));
    case Kind::Date:
        break;
    }
    const double d = apply(op, toDouble(rt, a), toDouble(rt, b));
    const bool difference = op == Op::Subtract && a.is(Type::Date) && b.is(Type::Date);
    if (difference || op == Op::Multiply) return finite(d);
    return Value::date(checkedDate(d));
}

/// Both sides of "\" and Mod, rounded to even.
std::int64_t operand(Runtime& rt, const Value& v) { return toLong(rt, v); }

Value narrowest(const Value& a, const Value& b, std::int64_t n) {
    const auto small = [](const Value& v) {
        return v.is(Type::Byte) || v.is(Type::Integer) || v.is(Type::Boolean) || v.is(Type::Empty);
    };
    if (a.is(Type::Byte) && b.is(Type::Byte)) return fit(Kind::Byte, n);
    if (n > 2147483647LL) throw Fault(errors::overflow);
    return fit(small(a) && small(b) ? Kind::Integer : Kind::Long, n);
}

} // namespace

Value add(Runtime& rt, const Value& a, const Value& b) {
    if (a.is(Type::String) && b.is(Type::String)) return concat(rt, a, b);
    if (a.is(Type::String) && b.is(Type::Empty)) return a;
    if (a.is(Type::Empty) && b.is(Type::String)) return b;
    if (a.is(Type::Object) || b.is(Type::Object)) return add(rt, plain(rt, a), plain(rt, b));
    return combine(rt, Op::Add, a, b);
}

Value subtract(Runtime& rt, const Value& a, const Value& b) {
    return combine(rt, Op::Subtract, a, b);
}
Value multiply(Runtime& rt, const Value& a, const Value& b) {
    return combine(rt, Op::Multiply, a, b);
}

Value divide(Runtime& rt, const Value& a, const Value& b) {
    if (a.is(Type::Object) || b.is(Type::Object)) return divide(rt, plain(rt, a), plain(rt, b));
    if (a.is(Type::Null) || b.is(Type::Null)) return Value::null();
    const double x = toDouble(rt, a);
    const double y = toDouble(rt, b);
    if (y == 0) throw Fault(x == 0 ? errors::overflow : errors::divisionByZero);
    if (a.is(Type::Single) && b.is(Type::Single)) return fitSingle(x / y);
    return finite(x / y);
}

Value intDivide(Runtime& rt, const Value& a, const Value& b) {
    if (a.is(Type::Object) || b.is(Type::Object)) return intDivide(rt, plain(rt, a), plain(rt, b));
    if (a.is(Type::Null) || b.is(Type::Null)) return Value::null();
    const std::int64_t x = operand(rt, a);
    const std::int64_t y = operand(rt, b);
    if (y == 0) throw Fault(errors::divisionByZero);
    return narrowest(a, b, x / y);
}

Value modulo(Runtime& rt, const Value& a, const Value& b) {
    if (a.is(Type::Object) || b.is(Type::Object)) return modulo(rt, plain(rt, a), plain(rt, b));
    if (a.is(Type::Null) || b.is(Type::Null)) return Value::null();
    const std::int64_t x = operand(rt, a);
    const std::int64_t y = operand(rt, b);
    if (y == 0) throw Fault(errors::divisionByZero);
    return narrowest(a, b, x % y);
}

Value power(Runtime& rt, const Value& a, const Value& b) {
    if (a.is(Type::Object) || b.is(Type::Object)) return power(rt, plain(rt, a), plain(rt, b));
    if (a.is(Type::Null) || b.is(Type::Null)) return Value::null();
    const double x = toDouble(rt, a);
    const double y = toDouble(rt, b);
    if ((x == 0 && y < 0) || (x < 0 && y != std::trunc(y))) throw Fault(errors::invalidCall);
    return finite(std::pow(x, y));
}

Value concat(Runtime& rt, const Value& a, const Value& b) {
    if (a.is(Type::Object) || b.is(Type::Object)) return concat(rt, plain(rt, a), plain(rt, b));
    if (a.is(Type::Null) && b.is(Type::Null)) return Value::null();
    const Value x = joinable(rt, a);
    const Value y = joinable(rt, b);
    Value r;
    const std::size_t length = std::size_t{x.s->length} + y.s->length;
    r = Value::room(length, length);
    std::copy_n(x.s->chars(), x.s->length, r.s->chars());
    std::copy_n(y.s->chars(), y.s->length, r.s->chars() + x.s->length);
    return r;
}

Value negate(Runtime& rt, const Value& a) {
    switch (a.type) {
    case Type::Null:
        return a;
    case Type::Byte:
    case Type::Empty:
    case Type::Boolean:
    case Type::Integer:
        return fit(Kind::Integer, -whole(a));
    case Type::Long:
        return fit(Kind::Long, -a.i);
    case Type::Single:
        return Value::single(-a.d);
    case Type::Currency:
        if (a.i == INT64_MIN) throw Fault(errors::overflow);
        return Value::currency(-a.i);
    case Type::Date:
        return Value::date(checkedDate(-a.d));
    case Type::Object:
        return negate(rt, plain(rt, a));
    default:
        return Value::real(-toDouble(rt, a));
    }
}

namespace {

/// An operand of a logical operator, with its width: Boolean, Byte, Integer, Long.
struct Bits {
    std::int64_t n = 0;
    Type type = Type::Long;
    bool null = false;
};

Bits bitsOf(Runtime& rt, const Value& v) {
    if (v.is(Type::Null)) return {0, Type::Null, true};
    if (v.is(Type::Boolean) || v.is(Type::Byte) || v.isInt()) return {v.i, v.type, false};
    if (v.is(Type::String)) {
        double n = 0;
        if (numberIn(rt, v, n)) return {fitLong(n), Type::Long, false};
        return {toBool(rt, v) ? -1 : 0, Type::Boolean, false};
    }
    return {toLong(rt, v), Type::Long, false};
}

Value wrap(Type type, std::int64_t n) {
    switch (type) {
    case Type::Boolean:
        return Value::boolean(n != 0);
    case Type::Byte:
        return Value::byte(n & 0xFF);
    case Type::Integer:
        return Value::integer(static_cast<std::int16_t>(n));
    default:
        return Value::longint(static_cast<std::int32_t>(n));
    }
}

std::int64_t bitwise(Operator op, std::int64_t a, std::int64_t b) {
    switch (op) {
    case Operator::And:
        return a & b;
    case Operator::Or:
        return a | b;
    case Operator::Xor:
        return a ^ b;
    case Operator::Eqv:
        return ~(a ^ b);
    default:
        return ~a | b;
    }
}

Type widest(Type a, Type b) {
    if (a == b) return a;
    if (a == Type::Long || b == Type::Long) return Type::Long;
    return Type::Integer;
}

/// One side is Null: the other decides where it can. What an Or knows to be set stays set.
Value withNull(Operator op, const Bits& a, const Bits& b) {
    const Bits& known = a.null ? b : a;
    if (known.null) return Value::null();
    if (op == Operator::And) return known.n == 0 ? wrap(known.type, 0) : Value::null();
    if (op != Operator::Or && op != Operator::Imp) return Value::null();
    const std::int64_t set = op == Operator::Imp && b.null ? ~known.n : known.n;
    return set != 0 ? wrap(known.type, set) : Value::null();
}

} // namespace

Value logicalNot(Runtime& rt, const Value& a) {
    if (a.is(Type::Object)) return logicalNot(rt, plain(rt, a));
    const Bits bits = bitsOf(rt, a);
    return bits.null ? Value::null() : wrap(bits.type, ~bits.n);
}

Value logical(Runtime& rt, Operator op, const Value& a, const Value& b) {
    if (a.is(Type::Object) || b.is(Type::Object))
        return logical(rt, op, plain(rt, a), plain(rt, b));
    const Bits x = bitsOf(rt, a);
    const Bits y = bitsOf(rt, b);
    if (x.null || y.null) return withNull(op, x, y);
    return wrap(widest(x.type, y.type), bitwise(op, x.n, y.n));
}

} // namespace vbscript
