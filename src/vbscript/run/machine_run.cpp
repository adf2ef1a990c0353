// SPDX-License-Identifier: Apache-2.0
#include "vbscript/run/machine_calls.h"
#include "vbscript/values/arithmetic.h"
#include "vbscript/values/convert.h"

#include <cmath>

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

/// to = from, mostly of something that lies in the value itself.
VBS_HOT void assign(Value& to, const Value& from) {
    if (to.owns() || from.owns()) {
        to = from;
    } else {
        to.type = from.type;
        to.i = from.i;
    }
}

VBS_HOT void putWhole(Value& to, Type a, Type b, std::int64_t n) {
    if (a == Type::Integer && b == Type::Integer && fits16(n))
        put(to, Type::Integer, n);
    else if (fits32(n))
        put(to, Type::Long, n);
    else
        put(to, static_cast<double>(n));
}

/// Both as doubles when each is a whole number or a Double.
VBS_HOT bool reals(const Value& a, const Value& b, double& x, double& y) {
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

} // namespace

// The way for all other operands: what is in between is done with when the result is there.
[[gnu::noinline]] void Machine::slow(const Instruction& i, BinaryFunction f) {
    workOn(at(i.b));
    workOn(at(i.c));
    Value v = f(*this, at(i.b), at(i.c));
    workOn(v);
    finished(i, i.b, i.c);
    at(i.a) = std::move(v);
}

void Machine::finished(const Instruction& i, Operand first, Operand second) {
    if (i.n & emptyFirst) at(first).clear();
    if (i.n & emptySecond) at(second).clear();
}

template <Kinds K>
VBS_HOT void Machine::addStep(Kind<K>, const Instruction& i) {
    const Value& b = first<K>(i.b);
    const Value& c = second<K>(i.c);
    Value& a = outcome<K>(i.a);
    double x = 0;
    double y = 0;
    if (b.isInt() && c.isInt()) return putWhole(a, b.type, c.type, b.i + c.i);
    if (reals(b, c, x, y) && std::isfinite(x + y)) return put(a, x + y);
    slow(i, add);
}

template <Kinds K>
VBS_HOT void Machine::subtractStep(Kind<K>, const Instruction& i) {
    const Value& b = first<K>(i.b);
    const Value& c = second<K>(i.c);
    Value& a = outcome<K>(i.a);
    double x = 0;
    double y = 0;
    if (b.isInt() && c.isInt()) return putWhole(a, b.type, c.type, b.i - c.i);
    if (reals(b, c, x, y) && std::isfinite(x - y)) return put(a, x - y);
    slow(i, subtract);
}

template <Kinds K>
VBS_HOT void Machine::multiplyStep(Kind<K>, const Instruction& i) {
    const Value& b = first<K>(i.b);
    const Value& c = second<K>(i.c);
    Value& a = outcome<K>(i.a);
    double x = 0;
    double y = 0;
    if (b.isInt() && c.isInt()) return putWhole(a, b.type, c.type, b.i * c.i);
    if (reals(b, c, x, y) && std::isfinite(x * y)) return put(a, x * y);
    slow(i, multiply);
}

VBS_HOT void Machine::opDivide(const Instruction& i) {
    const Value& b = at(i.b);
    const Value& c = at(i.c);
    double x = 0;
    double y = 0;
    if (reals(b, c, x, y) && y != 0 && std::isfinite(x / y)) return put(at(i.a), x / y);
    slow(i, divide);
}

VBS_HOT void Machine::opIntDivide(const Instruction& i) {
    const Value& b = at(i.b);
    const Value& c = at(i.c);
    if (b.isInt() && c.isInt() && c.i > 0) return putWhole(at(i.a), b.type, c.type, b.i / c.i);
    slow(i, intDivide);
}

VBS_HOT void Machine::opModulo(const Instruction& i) {
    const Value& b = at(i.b);
    const Value& c = at(i.c);
    if (b.isInt() && c.isInt() && c.i > 0) return putWhole(at(i.a), b.type, c.type, b.i % c.i);
    slow(i, modulo);
}

/// 1, 0; -1: Null.
template <Operator Which, Kinds K>
VBS_HOT int Machine::comparison(const Instruction& i, Operand left, Operand right) {
    const Value& a = first<K>(left);
    const Value& b = second<K>(right);
    if (a.isInt() && b.isInt()) return compares<Which>(a.i, b.i);
    double x = 0;
    double y = 0;
    if (reals(a, b, x, y)) return compares<Which>(x, y);
    workOn(a);
    const Order o = order(*this, a, b, leftOf(i), rightOf(i));
    finished(i, left, right);
    if (o == Order::Unknown) return -1;
    return holds(Which, o);
}

template <Operator Which>
VBS_HOT void Machine::compareStep(const Instruction& i) {
    const int c = comparison<Which, Kinds::Any>(i, i.b, i.c);
    if (c < 0)
        at(i.a) = Value::null();
    else
        put(at(i.a), Type::Boolean, -c);
}

template <Operator Which, Kinds K>
VBS_HOT void Machine::unlessStep(Kind<K>, const Instruction& i) {
    if (comparison<Which, K>(i, i.a, i.b) != 1) {
        r_.pc = r_.code + i.c;
    }
}

VBS_HOT void Machine::opEqual(const Instruction& i) { compareStep<Operator::Equal>(i); }
VBS_HOT void Machine::opNotEqual(const Instruction& i) { compareStep<Operator::NotEqual>(i); }
VBS_HOT void Machine::opLess(const Instruction& i) { compareStep<Operator::Less>(i); }
VBS_HOT void Machine::opGreater(const Instruction& i) { compareStep<Operator::Greater>(i); }
VBS_HOT void Machine::opLessEqual(const Instruction& i) { compareStep<Operator::LessEqual>(i); }
VBS_HOT void Machine::opGreaterEqual(const Instruction& i) {
    compareStep<Operator::GreaterEqual>(i);
}

#define VBS_EACH_KIND(name, step)                                                                  \
    VBS_HOT void Machine::op##name(const Instruction& i) { step(Kind<Kinds::Any>(), i); }          \
    VBS_HOT void Machine::op##name##RR(const Instruction& i) { step(Kind<Kinds::RR>(), i); }       \
    VBS_HOT void Machine::op##name##RP(const Instruction& i) { step(Kind<Kinds::RP>(), i); }       \
    VBS_HOT void Machine::op##name##FP(const Instruction& i) { step(Kind<Kinds::FP>(), i); }
VBS_EACH_KIND(Add, addStep)
VBS_EACH_KIND(Subtract, subtractStep)
VBS_EACH_KIND(Multiply, multiplyStep)
VBS_EACH_KIND(UnlessEqual, unlessStep<Operator::Equal>)
VBS_EACH_KIND(UnlessNotEqual, unlessStep<Operator::NotEqual>)
VBS_EACH_KIND(UnlessLess, unlessStep<Operator::Less>)
VBS_EACH_KIND(UnlessGreater, unlessStep<Operator::Greater>)
VBS_EACH_KIND(UnlessLessEqual, unlessStep<Operator::LessEqual>)
VBS_EACH_KIND(UnlessGreaterEqual, unlessStep<Operator::GreaterEqual>)
#undef VBS_EACH_KIND

VBS_HOT void Machine::opJump(const Instruction& i) { r_.pc = r_.code + i.c; }

VBS_HOT void Machine::opRepeat(const Instruction& i) {
    tick();
    opJump(i);
}

VBS_HOT void Machine::opJumpFalse(const Instruction& i) {
    workOn(at(i.a));
    const bool yes = isTrue(*this, at(i.a));
    if (i.n) at(i.a).clear();
    if (!yes) opJump(i);
}

VBS_HOT void Machine::opJumpTrue(const Instruction& i) {
    workOn(at(i.a));
    const bool yes = isTrue(*this, at(i.a));
    if (i.n) at(i.a).clear();
    if (yes) opJump(i);
}

VBS_HOT void Machine::opCopy(const Instruction& i) { assign(at(i.a), at(i.b)); }
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

VBS_HOT void Machine::opForNext(const Instruction& i) {
    const Value* state = r_.fp + i.b; // limit, step, ready
    Value& v = at(i.a);
    if (state[0].isInt() && state[1].isInt() && v.isInt() && state[2].is(Type::Ref)) {
        const std::int64_t n = v.i + state[1].i;
        putWhole(v, v.type, state[1].type, n);
        tick();
        if (state[1].i >= 0 ? n <= state[0].i : n >= state[0].i) opJump(i);
        return;
    }
    if (!state[2].is(Type::Ref)) throw Fault(92);
    v = add(*this, v, state[1]);
    tick();
    const bool up = toDouble(*this, state[1]) >= 0;
    const Order o = order(*this, v, state[0], Written::Number, Written::Number);
    if (o == Order::Equal || o == (up ? Order::Less : Order::Greater)) opJump(i);
}

VBS_HOT void Machine::opIndex1(const Instruction& i) {
    const Value& array = at(i.b);
    Value& index = at(i.c);
    if (array.is(Type::Array) && index.isInt() && array.a->extents.size() == 1) {
        if (static_cast<std::uint64_t>(index.i) >= array.a->items.size()) throw Fault(9);
        const Value& element = array.a->items[static_cast<std::size_t>(index.i)];
        if (i.n == 0 || !element.is(Type::Object)) {
            assign(at(i.a), element);
            return;
        }
    }
    Value v = indexed(array, {&index, 1});
    if (i.n != 0) v = forStore(std::move(v), false);
    at(i.a) = std::move(v);
}

VBS_HOT void Machine::opSetIndex1(const Instruction& i) {
    Value& array = at(i.a);
    Value& index = at(i.b);
    Value& v = at(i.c);
    if (array.is(Type::Array) && index.isInt() && array.a->extents.size() == 1 && !(i.n & 1) &&
        v.type < Type::Array && array.a->refs - array.a->locks == 1) {
        if (static_cast<std::uint64_t>(index.i) >= array.a->items.size()) throw Fault(9);
        Value& element = array.a->items[static_cast<std::size_t>(index.i)];
        if (i.n & emptySecond)
            element = std::move(v);
        else
            assign(element, v);
        return;
    }
    Value copy(index);
    setIndexed(array, {&copy, 1}, v, (i.n & 1) != 0);
    finished(i, i.b, i.c);
}

VBS_HOT void Machine::opCallGlobal(const Instruction& i) {
    push(*globals[i.c].proc, r_.fp + i.b, i.n & 0xFF, i.a, Value());
}

// The step that comes next is kept apart from r_, which only says where an error happened. Every
// step jumps to the next one from a place of its own, by which the processor learns what follows
// what: a loop around a switch has one such place for all of them.
// clang-format off
void Machine::execute() {
#define VBS_LABEL(name) __extension__ &&step##name,
    static constexpr const void* steps[] = {VBS_OPS(VBS_LABEL) __extension__ &&stepReturn};
#undef VBS_LABEL
#define VBS_NEXT                                                                                   \
    i = pc++;                                                                                      \
    r_.pc = pc;                                                                                    \
    __extension__({ goto *steps[static_cast<std::size_t>(i->op)]; })

    const Instruction* pc = r_.pc;
    const Instruction* i = nullptr;
    VBS_NEXT;

#define VBS_STEP(name)                                                                             \
step##name:                                                                                        \
    op##name(*i);                                                                                  \
    VBS_NEXT;
    VBS_PLAIN_OPS(VBS_STEP)
#undef VBS_STEP

#define VBS_STEP(name)                                                                             \
step##name:                                                                                        \
    op##name(*i);                                                                                  \
    pc = r_.pc;                                                                                    \
    VBS_NEXT;
    VBS_CONTROL_OPS(VBS_STEP)
#undef VBS_STEP

stepReturn:
    if (leave()) return;
    pc = r_.pc;
    VBS_NEXT;
#undef VBS_NEXT
}
// clang-format on

} // namespace vbscript
