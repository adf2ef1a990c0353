// SPDX-License-Identifier: Apache-2.0
#include "vbscript/run/machine_calls.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"

namespace vbscript {

void Machine::followReferences(std::span<Value> args) {
    for (Value& a : args) {
        if (!a.is(Type::Ref)) continue;
        Value copy(*a.ref);
        a.swap(copy);
    }
}

std::size_t Machine::offset(Runtime& rt, const ArrayData& a, std::span<Value> indexes) {
    if (indexes.size() != a.extents.size()) throw Fault(errors::subscriptOutOfRange);
    std::size_t at = 0;
    std::size_t stride = 1;
    for (std::size_t k = 0; k < indexes.size(); ++k) {
        const std::int64_t n = toLong(rt, indexes[k]);
        if (n < 0 || n >= static_cast<std::int64_t>(a.extents[k]))
            throw Fault(errors::subscriptOutOfRange);
        at += static_cast<std::size_t>(n) * stride;
        stride *= a.extents[k];
    }
    return at;
}

Value Machine::indexed(const Value& base, std::span<Value> indexes, int notIndexed) {
    if (base.is(Type::Array)) {
        const Value held = base; // converting an index may run code that replaces the array
        return held.a->items[offset(*this, *held.a, indexes)];
    }
    if (!base.is(Type::Object)) throw Fault(notIndexed);
    Value result;
    callOn(base, 0, Access::Get, indexes, result);
    return result;
}

Value Machine::forStore(Value v, bool isSet) {
    if (isSet && !v.is(Type::Object)) throw Fault(errors::objectRequired);
    if (!isSet && v.is(Type::Object)) return defaultOf(v);
    return v;
}

void Machine::setIndexed(Value& base, std::span<Value> indexes, Value v, bool isSet) {
    if (base.is(Type::Object)) {
        if (!base.o) throw Fault(errors::objectNotSet);
        std::vector<Value> args(indexes.begin(), indexes.end());
        args.push_back(std::move(v));
        Value ignored;
        const Value held = base;
        callOn(held, 0, isSet ? Access::Set : Access::Let, args, ignored);
        return;
    }
    if (!base.is(Type::Array)) throw Fault(errors::typeMismatch);
    Value stored = forStore(std::move(v), isSet);
    for (Value& k : indexes) {
        if (k.is(Type::Object)) k = defaultOf(k);
    }
    if (!base.is(Type::Array)) throw Fault(errors::typeMismatch);
    const std::size_t at = offset(*this, *base.a, indexes);
    makeOwn(base);
    base.a->items[at] = std::move(stored);
}

void Machine::makeOwn(Value& array) {
    if (array.a->refs - array.a->locks > 1) workOnItems(array.a->items.size());
    makeUnique(array);
}

void Machine::opIndex(const Instruction& i) {
    const auto args = registersFrom(i.c, i.n);
    const Value base = at(i.b);
    if (args.empty() && !base.is(Type::Object))
        throw Fault(base.is(Type::Array) ? errors::subscriptOutOfRange : errors::typeMismatch);
    Value v = indexed(base, args);
    clearAll(args);
    at(i.a) = std::move(v);
}

void Machine::opSetIndex(const Instruction& i) {
    const std::size_t n = i.n & 0xFF;
    const auto args = registersFrom(i.b, n + 1);
    setIndexed(at(i.a), args.first(n), std::move(args[n]), (i.n & flagBit) != 0);
    clearAll(args);
}

// a = reference to an element; what is no array gives the value itself. With the flag a lock on
// the array goes to the first index's register.
void Machine::opElement(const Instruction& i) {
    const auto args = registersFrom(i.c, i.n & 0xFF);
    Value& array = at(i.b);
    const bool locking = (i.n & flagBit) != 0;
    if (!array.is(Type::Array)) {
        const Value base = array;
        Value v = indexed(base, args);
        clearAll(args);
        r_.fp[i.a & operand::indexMask] = std::move(v);
        return;
    }
    for (Value& k : args) {
        if (k.is(Type::Object)) k = defaultOf(k);
    }
    const std::size_t k = offset(*this, *array.a, args);
    makeOwn(array);
    Value* element = &array.a->items[k];
    clearAll(args);
    r_.fp[i.a & operand::indexMask] = Value::reference(element);
    if (!locking) return;
    Value lock = array;
    lock.type = Type::Lock;
    ++lock.a->locks;
    args[0] = std::move(lock);
}

void Machine::callOn(const Value& object, Atom member, Access how, std::span<Value> args,
                     Value& result) {
    if (!object.is(Type::Object)) throw Fault(errors::objectRequired);
    if (!object.o) throw Fault(errors::objectNotSet);
    followReferences(args);
    for (const Value& a : args)
        workOn(a);
    object.o->access(*this, member, how, args, result);
    workOn(result);
}

void Machine::callProc(const Proc& proc, const Instruction& i, Value self) {
    push(proc, r_.fp + i.b, i.n & 0xFF, i.a, std::move(self));
}

void Machine::opGetMember(const Instruction& i) {
    Value& object = r_.fp[i.b];
    if (!object.is(Type::Object)) throw Fault(errors::objectRequired);
    if (!object.o) throw Fault(errors::objectNotSet);
    if (Instance* instance = object.o->instance()) return getInstance(*instance, i);
    const auto args = registersFrom(i.b + 1, i.n & 0xFF);
    tick();
    Value held;
    held.swap(object);
    Value result;
    callOn(held, i.c, i.n & flagBit ? Access::Method : Access::Get, args, result);
    clearAll(args);
    at(i.a) = std::move(result);
}

// A procedure of an object takes a frame like any other, so objects may call each other as deep as
// procedures may.
void Machine::getInstance(Instance& o, const Instruction& i) {
    const bool inside = insideOf(o);
    const std::size_t n = i.n & 0xFF;
    const Member& m = o.find(i.c, inside);
    if (m.get && (inside || m.getPublic) && (n == 0 || !m.get->parameters.empty())) {
        Value self = r_.fp[i.b];
        Instruction call = i;
        call.b = i.b + 1;
        callProc(*m.get, call, std::move(self));
        r_.fp[-1].clear(); // the object's own register lies just before the new frame
        return;
    }
    Value held;
    held.swap(r_.fp[i.b]);
    const auto args = registersFrom(i.b + 1, n);
    followReferences(args);
    Value result;
    accessInstance(o, i.c, Access::Get, args, result);
    clearAll(args);
    at(i.a) = std::move(result);
}

void Machine::opLetMember(const Instruction& i) { letMember(i, false); }
void Machine::opSetMember(const Instruction& i) { letMember(i, true); }

void Machine::letMember(const Instruction& i, bool isSet) {
    Value& object = r_.fp[i.b];
    if (!object.is(Type::Object)) throw Fault(errors::objectRequired);
    if (!object.o) throw Fault(errors::objectNotSet);
    const auto args = registersFrom(i.b + 1, i.n + std::size_t{1});
    if (isSet && !args.back().is(Type::Object)) throw Fault(errors::objectRequired);
    if (Instance* instance = object.o->instance()) return letInstance(*instance, i, isSet);
    tick();
    Value held;
    held.swap(object);
    Value ignored;
    callOn(held, i.c, isSet ? Access::Set : Access::Let, args, ignored);
    clearAll(args);
}

void Machine::letInstance(Instance& o, const Instruction& i, bool isSet) {
    const bool inside = insideOf(o);
    const Member& m = o.find(i.c, inside);
    const Proc* p = isSet ? m.set : m.let;
    if (p && (inside || (isSet ? m.setPublic : m.letPublic))) {
        Value self = r_.fp[i.b];
        Instruction call = i;
        call.a = operand::none;
        call.b = i.b + 1;
        call.n = static_cast<std::uint16_t>(i.n + 1);
        callProc(*p, call, std::move(self));
        r_.fp[-1].clear();
        return;
    }
    Value held;
    held.swap(r_.fp[i.b]);
    const auto args = registersFrom(i.b + 1, i.n + std::size_t{1});
    Value ignored;
    accessInstance(o, i.c, isSet ? Access::Set : Access::Let, args, ignored);
    clearAll(args);
}

void Machine::putVariable(Value& v, Access how, std::span<Value> args) {
    const bool isSet = how == Access::Set;
    Value last = args.back();
    if (args.size() > 1 && !v.is(Type::Array) && !v.is(Type::Object))
        throw Fault(errors::noSuchMember);
    if (args.size() > 1)
        setIndexed(v, args.first(args.size() - 1), std::move(last), isSet);
    else
        v = forStore(std::move(last), isSet);
}

// The way in for everything but the steps above: default members, Eval'd code, the host.
void Machine::accessInstance(Instance& o, Atom member, Access how, std::span<Value> args,
                             Value& result) {
    const bool inside = insideOf(o);
    const Member& m = o.find(member, inside);
    const bool reads = how == Access::Get || how == Access::Method;
    if (m.variable >= 0) {
        if (!inside && !m.variablePublic) throw Fault(errors::noSuchMember);
        Value& v = o.variables()[m.variable];
        if (!reads)
            putVariable(v, how, args);
        else if (args.empty())
            result = v;
        else
            // The same for an index behind one that holds no list.
            result = indexed(v, args, errors::noSuchMember);
        return;
    }
    const Proc* p = reads ? m.get : how == Access::Set ? m.set : m.let;
    const bool open = reads ? m.getPublic : how == Access::Set ? m.setPublic : m.letPublic;
    const bool getter = m.get && (inside || m.getPublic) && m.get->parameters.empty();
    if (p && (inside || open) && !(reads && getter && !args.empty())) {
        result = invoke(*p, &o, args);
        return;
    }
    // A property that gives a list or an array, with indexes behind it.
    if (!getter || args.size() < (reads ? 1U : 2U)) throw Fault(errors::noSuchMember);
    Value list = invoke(*m.get, &o, {});
    if (reads)
        result = indexed(list, args, errors::noSuchMember);
    else
        putVariable(list, how, args);
}

} // namespace vbscript
