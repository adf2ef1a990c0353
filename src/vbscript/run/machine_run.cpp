// SPDX-License-Identifier: Apache-2.0
#include "vbscript/run/machine_calls.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/arithmetic.h"
#include "vbscript/values/convert.h"

#include <cmath>
#include <functional>

// The steps that loops and formulas are made of, in one file with the loop that runs them, so that
// the compiler can put them in line.

namespace vbscript {

namespace {

VBS_HOT bool fits16(std::int64_t n) { return n == static_cast<std::int16_t>(n); }
VBS_HOT bool fits32(std::int64_t n) { return n == static_cast<std::int32_t>(n); }

VBS_HOT void put(Value& to, Type type, std::int64_t n) {
    if (to.owns()) to.clear();
    to.type = type;
    to.i = n;
}

VBS_HOT void put(Value& to, double d) {
    if (to.owns()) to.clear();
    to.type = Type::Double;
    to.d = d;
}

VBS_HOT void assign(Value& to, const Value& from) {
    if (to.owns())
        to = from;
    else
        std::construct_at(&to, from); // there is nothing to let go
}

// The operands of a step, of which the second may be a Number.
VBS_HOT Value& valueOf(Value& v) { return v; }
VBS_HOT Value valueOf(Number<Type::Integer> n) { return Value::integer(n.i); }
VBS_HOT Value valueOf(Number<Type::Double> n) { return Value::real(n.d); }

template <class Second>
VBS_HOT unsigned bitsOf(const Value& a, const Second& b) {
    return static_cast<unsigned>(a.type) | static_cast<unsigned>(b.type);
}

template <class Second>
VBS_HOT bool wholes(const Value& a, const Second& b) {
    return bitsOf(a, b) <= static_cast<unsigned>(Type::Long);
}

/// A result of two whole numbers: an Integer of Integers, as long as it fits.
VBS_HOT void putWhole(Value& to, unsigned bits, std::int64_t n) {
    if (fits32(n)) [[likely]]
        put(to, static_cast<Type>(bits | (fits16(n) ? 0U : 1U)), n);
    else
        put(to, static_cast<double>(n));
}

/// Both as doubles when each is a whole number or a Double.
template <class Second>
VBS_HOT bool reals(const Value& a, const Second& b, double& x, double& y) {
    if (a.isReal())
        x = a.d;
    else if (a.isInt())
        x = static_cast<double>(a.i);
    else
        return false;
    if (b.isReal())
        y = b.d;
    else if (b.isInt())
        y = static_cast<double>(b.i);
    else
        return false;
    return true;
}

VBS_HOT Written leftOf(const Instruction& i) { return static_cast<Written>(i.n & 3); }
VBS_HOT Written rightOf(const Instruction& i) { return static_cast<Written>((i.n >> 2) & 3); }

template <Operator Which, class T>
VBS_HOT bool compares(T a, T b) {
    if constexpr (Which == Operator::Equal)
        return a == b;
    else if constexpr (Which == Operator::NotEqual)
        return a != b;
    else if constexpr (Which == Operator::Less)
        return a < b;
    else if constexpr (Which == Operator::Greater)
        return a > b;
    else if constexpr (Which == Operator::LessEqual)
        return a <= b;
    else
        return a >= b;
}

/// Whether it holds, in `yes`; false when the operands need a closer look.
template <Operator Which, class Second>
VBS_HOT bool compares(const Value& a, const Second& b, bool& yes) {
    double x = 0;
    double y = 0;
    if (wholes(a, b))
        yes = compares<Which>(a.i, b.i);
    else if (reals(a, b, x, y))
        yes = compares<Which>(x, y);
    else
        return false;
    return true;
}

/// The item of a list at a number; null: there is more to find out.
template <class Index>
VBS_HOT Value* itemOf(const Value& array, const Index& index) {
    const bool inside = array.is(Type::Array) && index.isInt() &&
                        static_cast<std::uint64_t>(index.i) < array.a->line;
    return inside ? &array.a->items[static_cast<std::size_t>(index.i)] : nullptr;
}

} // namespace

// The way for all other operands: what is in between is done with when the result is there.
[[gnu::noinline]] void Machine::slow(const Instruction& i, Value& a, Value& b, Value& c,
                                     BinaryFunction f) {
    workOn(b);
    workOn(c);
    Value v = f(*this, b, c);
    workOn(v);
    finished(i, b, c);
    a = std::move(v);
}

void Machine::finished(const Instruction& i, Value& first, Value& second) {
    if (i.n & emptyFirst) first.clear();
    if (i.n & emptySecond) second.clear();
}

template <class Operation, Machine::BinaryFunction Otherwise, Kinds K>
VBS_HOT void Machine::arithmeticStep(Kind<K>, const Instruction& i) {
    constexpr Operation apply;
    Value& b = first<K>(i.b);
    auto&& c = second<K>(i.c);
    Value& a = outcome<K>(i.a);
    double x = 0;
    double y = 0;
    if (wholes(b, c)) return putWhole(a, bitsOf(b, c), apply(b.i, c.i));
    if (reals(b, c, x, y) && std::isfinite(apply(x, y))) [[likely]]
        return put(a, apply(x, y));
    auto&& other = valueOf(c);
    slow(i, a, b, other, Otherwise);
}

template <Kinds K>
VBS_HOT void Machine::divideStep(Kind<K>, const Instruction& i) {
    Value& b = first<K>(i.b);
    auto&& c = second<K>(i.c);
    Value& a = outcome<K>(i.a);
    double x = 0;
    double y = 0;
    if (reals(b, c, x, y) && y != 0 && std::isfinite(x / y)) [[likely]]
        return put(a, x / y);
    auto&& other = valueOf(c);
    slow(i, a, b, other, divide);
}

// Mod and "\" of whole numbers.
template <class Operation, Machine::BinaryFunction Otherwise, Kinds K>
VBS_HOT void Machine::wholeStep(Kind<K>, const Instruction& i) {
    constexpr Operation apply;
    Value& b = first<K>(i.b);
    auto&& c = second<K>(i.c);
    Value& a = outcome<K>(i.a);
    if (wholes(b, c) && c.i > 0) [[likely]]
        return putWhole(a, bitsOf(b, c), apply(b.i, c.i));
    auto&& other = valueOf(c);
    slow(i, a, b, other, Otherwise);
}

/// 1, 0; -1: Null.
[[gnu::noinline]] int Machine::comparison(const Instruction& i, Value& a, Value& b,
                                          Operator which) {
    workOn(a);
    const Order o = order(*this, a, b, leftOf(i), rightOf(i));
    finished(i, a, b);
    if (o == Order::Unknown) return -1;
    return holds(which, o);
}

template <Operator Which>
VBS_HOT void Machine::compareStep(const Instruction& i) {
    Value& a = at(i.b);
    Value& b = at(i.c);
    bool yes = false;
    if (compares<Which>(a, b, yes)) return put(at(i.a), Type::Boolean, yes ? -1 : 0);
    const int c = comparison(i, a, b, Which);
    if (c < 0)
        at(i.a) = Value::null();
    else
        put(at(i.a), Type::Boolean, -c);
}

template <Operator Which, Kinds K>
VBS_HOT bool Machine::unlessStep(Kind<K>, const Instruction& i) {
    Value& a = first<K>(i.a);
    auto&& b = second<K>(i.b);
    bool yes = false;
    if (!compares<Which>(a, b, yes)) {
        auto&& other = valueOf(b);
        yes = comparison(i, a, other, Which) == 1;
    }
    return !yes;
}

template <Kinds K>
VBS_HOT void Machine::elementStep(Kind<K>, const Instruction& i) {
    const Value& array = first<K>(i.b);
    auto&& index = second<K>(i.c);
    Value& to = outcome<K>(i.a);
    const Value* const from = itemOf(array, index);
    if (from && !from->owns() && !to.owns()) [[likely]] {
        to.type = from->type;
        to.i = from->i;
        return;
    }
    auto&& other = valueOf(index);
    element(i, to, array, other);
}

[[gnu::noinline]] void Machine::element(const Instruction& i, Value& to, const Value& array,
                                        Value& index) {
    const Value* const from = itemOf(array, index);
    if (from && (i.n == 0 || !from->is(Type::Object))) {
        to = *from;
        return;
    }
    Value v = indexed(array, {&index, 1});
    if (i.n != 0) v = forStore(std::move(v), false);
    to = std::move(v);
}

template <Kinds K>
VBS_HOT void Machine::setElementStep(Kind<K>, const Instruction& i) {
    Value& array = first<K>(i.a);
    auto&& index = second<K>(i.b);
    Value& v = at(i.c);
    Value* const to = itemOf(array, index);
    if (to && !(i.n & 1) && array.a->refs - array.a->locks == 1 && !v.owns() && !to->owns())
        [[likely]] {
        to->type = v.type;
        to->i = v.i;
        return;
    }
    auto&& other = valueOf(index);
    setElement(i, array, other, v);
}

[[gnu::noinline]] void Machine::setElement(const Instruction& i, Value& array, Value& index,
                                           Value& v) {
    Value* const to = i.n & 1 ? nullptr : itemOf(array, index);
    if (to && v.type < Type::Array && array.a->refs - array.a->locks == 1) {
        if (i.n & emptySecond)
            *to = std::move(v);
        else
            *to = v;
        return;
    }
    Value copy(index);
    setIndexed(array, {&copy, 1}, v, (i.n & 1) != 0);
    finished(i, index, v);
}

VBS_HOT void Machine::opEqual(const Instruction& i) { compareStep<Operator::Equal>(i); }
VBS_HOT void Machine::opNotEqual(const Instruction& i) { compareStep<Operator::NotEqual>(i); }
VBS_HOT void Machine::opLess(const Instruction& i) { compareStep<Operator::Less>(i); }
VBS_HOT void Machine::opGreater(const Instruction& i) { compareStep<Operator::Greater>(i); }
VBS_HOT void Machine::opLessEqual(const Instruction& i) { compareStep<Operator::LessEqual>(i); }
VBS_HOT void Machine::opGreaterEqual(const Instruction& i) {
    compareStep<Operator::GreaterEqual>(i);
}

#define VBS_EACH_KIND(result, name, step)                                                          \
    VBS_HOT result Machine::op##name(const Instruction& i) { return step(Kind<Kinds::Any>(), i); } \
    VBS_HOT result Machine::op##name##R(const Instruction& i) {                                    \
        return step(Kind<Kinds::R>(), i);                                                          \
    }                                                                                              \
    VBS_HOT result Machine::op##name##D(const Instruction& i) {                                    \
        return step(Kind<Kinds::D>(), i);                                                          \
    }                                                                                              \
    VBS_HOT result Machine::op##name##I(const Instruction& i) { return step(Kind<Kinds::I>(), i); }
VBS_EACH_KIND(void, Add, (arithmeticStep<std::plus<>, add>))
VBS_EACH_KIND(void, Subtract, (arithmeticStep<std::minus<>, subtract>))
VBS_EACH_KIND(void, Multiply, (arithmeticStep<std::multiplies<>, multiply>))
VBS_EACH_KIND(void, Divide, divideStep)
VBS_EACH_KIND(void, IntDivide, (wholeStep<std::divides<>, intDivide>))
VBS_EACH_KIND(void, Modulo, (wholeStep<std::modulus<>, modulo>))
VBS_EACH_KIND(void, Index1, elementStep)
VBS_EACH_KIND(void, SetIndex1, setElementStep)
VBS_EACH_KIND(bool, UnlessEqual, unlessStep<Operator::Equal>)
VBS_EACH_KIND(bool, UnlessNotEqual, unlessStep<Operator::NotEqual>)
VBS_EACH_KIND(bool, UnlessLess, unlessStep<Operator::Less>)
VBS_EACH_KIND(bool, UnlessGreater, unlessStep<Operator::Greater>)
VBS_EACH_KIND(bool, UnlessLessEqual, unlessStep<Operator::LessEqual>)
VBS_EACH_KIND(bool, UnlessGreaterEqual, unlessStep<Operator::GreaterEqual>)
#undef VBS_EACH_KIND

VBS_HOT bool Machine::opJump(const Instruction&) { return true; }

VBS_HOT bool Machine::opRepeat(const Instruction&) {
    tick();
    return true;
}

VBS_HOT bool Machine::opJumpTrue(const Instruction& i) {
    workOn(at(i.a));
    const bool yes = isTrue(*this, at(i.a));
    if (i.n) at(i.a).clear();
    return yes;
}

VBS_HOT bool Machine::opJumpFalse(const Instruction& i) { return !opJumpTrue(i); }

VBS_HOT void Machine::opCopy(const Instruction& i) { assign(at(i.a), anywhere(i.b)); }
VBS_HOT void Machine::opMove(const Instruction& i) { at(i.a) = std::move(at(i.b)); }

VBS_HOT void Machine::opLet(const Instruction& i) {
    Value& from = at(i.b);
    if (from.is(Type::Object)) {
        Value v = defaultOf(from);
        if (i.n) from.clear();
        at(i.a) = std::move(v);
    } else if (i.n) {
        at(i.a) = std::move(from);
    } else if (from.is(Type::Array) && from.a->locks != 0) {
        at(i.a) = Value::array(ArrayData::copyOf(*from.a));
    } else {
        assign(at(i.a), from);
    }
}

VBS_HOT bool Machine::opForNext(const Instruction& i) {
    const Value* state = r_.fp + i.b; // limit, step, ready
    Value& v = at(i.a);
    if (!state[2].is(Type::Ref)) throw Fault(errors::forNotInitialized);
    tick();
    if (wholes(v, state[0]) && state[1].isInt()) {
        const std::int64_t n = v.i + state[1].i;
        putWhole(v, bitsOf(v, state[1]), n);
        return state[1].i >= 0 ? n <= state[0].i : n >= state[0].i;
    }
    v = add(*this, v, state[1]);
    const bool up = toDouble(*this, state[1]) >= 0;
    const Order o = order(*this, v, state[0], Written::Number, Written::Number);
    return o == Order::Equal || o == (up ? Order::Less : Order::Greater);
}

// What is at most the limit has not grown too big for a whole number.
VBS_HOT bool Machine::opForNextUp(const Instruction& i) {
    const Value* state = r_.fp + i.b;
    Value& v = at(i.a);
    const std::int64_t n = v.i + i.n;
    if (!state[2].is(Type::Ref) || !wholes(v, state[0]) || n > state[0].i) return opForNext(i);
    tick();
    if (!fits16(n)) v.type = Type::Long;
    v.i = n;
    return true;
}

VBS_HOT void Machine::opCallGlobal(const Instruction& i) {
    push(*globals[i.c].proc(), r_.fp + i.b, i.n & 0xFF, i.a, Value());
}

// The step that comes next is kept apart from r_, which only says where an error happened. Every
// step jumps to the next one from a place of its own, by which the processor learns what follows
// what: a loop around a switch has one such place for all of them.
// clang-format off
void Machine::execute() {
#define VBS_LABEL(name) __extension__ &&step##name,
    static constexpr const void* steps[] = {VBS_OPS(VBS_LABEL) __extension__ &&stepReturn};
#undef VBS_LABEL
#define VBS_NEXT __extension__({ goto *steps[static_cast<std::size_t>(pc->op)]; })

    const Instruction* pc = r_.pc;
    VBS_NEXT;

#define VBS_STEP(name)                                                                             \
step##name:                                                                                        \
    r_.pc = ++pc;                                                                                  \
    op##name(pc[-1]);                                                                              \
    VBS_NEXT;
    VBS_PLAIN_OPS(VBS_STEP)
#undef VBS_STEP

#define VBS_STEP(name)                                                                             \
step##name:                                                                                        \
    r_.pc = ++pc;                                                                                  \
    if (op##name(pc[-1])) pc = r_.code + pc[-1].c;                                                 \
    VBS_NEXT;
    VBS_JUMP_OPS(VBS_STEP)
#undef VBS_STEP

#define VBS_STEP(name)                                                                             \
step##name:                                                                                        \
    r_.pc = ++pc;                                                                                  \
    op##name(pc[-1]);                                                                              \
    pc = r_.pc;                                                                                    \
    VBS_NEXT;
    VBS_CALL_OPS(VBS_STEP)
#undef VBS_STEP

stepReturn:
    if (leave()) return;
    pc = r_.pc;
    VBS_NEXT;
#undef VBS_NEXT
}
// clang-format on

} // namespace vbscript
