// SPDX-License-Identifier: Apache-2.0
#include "vbscript/run/machine.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/syntax/parser.h"
#include "vbscript/values/arithmetic.h"
#include "vbscript/values/convert.h"

#include <algorithm>
#include <cmath>

// The steps that are not in every loop.

namespace vbscript {

namespace {

// Texts are mostly put together from few characters, for which a call takes longer than they do.
char16_t* write(std::u16string_view text, char16_t* to) {
    constexpr std::size_t few = 8;
    if (text.size() > few) return std::copy(text.begin(), text.end(), to);
    for (const char16_t c : text)
        *to++ = c;
    return to;
}

} // namespace

void Machine::opSetObject(const Instruction& i) {
    Value& from = at(i.b);
    if (!from.is(Type::Object)) throw Fault(errors::objectRequired);
    if (i.n)
        at(i.a) = std::move(from);
    else
        at(i.a) = from;
}

void Machine::opPower(const Instruction& i) { slow(i, at(i.a), at(i.b), at(i.c), power); }

void Machine::opConcat(const Instruction& i) {
    Value& to = at(i.a);
    const Value& right = at(i.c);
    // An object's default member may run code, which may change the left side meanwhile.
    const bool inPlace = &to == &at(i.b) && to.is(Type::String) && !right.is(Type::Object);
    if (!inPlace) return slow(i, to, at(i.b), at(i.c), concat);
    const Value more = joinable(*this, right);
    work(appendTo(to, more.chars()));
    finished(i, at(i.b), at(i.c));
}

void Machine::opLogical(const Instruction& i) {
    const Value& b = at(i.b);
    const Value& c = at(i.c);
    const auto op = static_cast<Operator>(i.n & 0xFF);
    if (b.is(Type::Boolean) && c.is(Type::Boolean) && (op == Operator::And || op == Operator::Or)) {
        at(i.a) = Value::boolean(op == Operator::And ? (b.i & c.i) != 0 : (b.i | c.i) != 0);
        return;
    }
    Value v = logical(*this, op, b, c);
    finished(i, at(i.b), at(i.c));
    at(i.a) = std::move(v);
}

void Machine::opIs(const Instruction& i) {
    const bool same = sameObject(at(i.b), at(i.c));
    finished(i, at(i.b), at(i.c));
    at(i.a) = Value::boolean(same);
}
void Machine::opNot(const Instruction& i) { at(i.a) = logicalNot(*this, at(i.b)); }
void Machine::opNegate(const Instruction& i) { at(i.a) = negate(*this, at(i.b)); }

void Machine::opPlus(const Instruction& i) {
    const Value v = plain(*this, at(i.b));
    if (v.is(Type::Array)) throw Fault(errors::typeMismatch);
    at(i.a) = v;
}

void Machine::opJoin(const Instruction& i) {
    const auto parts = registersFrom(i.b, i.n);
    std::size_t length = 0;
    bool allNull = true;
    for (Value& p : parts) {
        if (p.is(Type::Object)) p = plain(*this, p);
        allNull = allNull && p.is(Type::Null);
        if (!p.is(Type::String)) p = joinable(*this, p);
        length += p.s->length;
    }
    work(length);
    Value all;
    if (allNull) {
        all = Value::null();
    } else {
        all = Value::room(length, length);
        char16_t* to = all.s->chars();
        for (const Value& p : parts)
            to = write(p.chars(), to);
    }
    clearAll(parts);
    at(i.a) = std::move(all);
}

void Machine::opAppend(const Instruction& i) {
    const auto parts = registersFrom(i.b, i.n);
    bool allNull = true;
    for (Value& p : parts) {
        if (p.is(Type::Object)) p = plain(*this, p);
        allNull = allNull && p.is(Type::Null);
        if (!p.is(Type::String)) p = joinable(*this, p);
    }
    Value& to = at(i.a);
    if (allNull && to.is(Type::Null)) return clearAll(parts);
    if (!to.is(Type::String)) {
        Value start = joinable(*this, to);
        to = std::move(start);
    }
    work(appendAll(to, parts));
    clearAll(parts);
}

bool Machine::opForPrepare(const Instruction& i) {
    Value* state = r_.fp + i.b;
    const auto number = [&](const Value& v) {
        if (isNumericType(v.type) || v.is(Type::Date))
            return v.is(Type::Boolean) ? Value::integer(v.i) : v;
        if (v.is(Type::Empty)) return Value::integer(0);
        return Value::real(toDouble(*this, v));
    };
    const Value start = number(state[2]);
    state[0] = number(state[0]);
    state[1] = number(state[1]);
    at(i.a) = start;
    state[2] = Value::reference(nullptr); // ready
    const bool up = toDouble(*this, state[1]) >= 0;
    const Order o = order(*this, start, state[0], Written::Number, Written::Number);
    return o != Order::Equal && o != (up ? Order::Less : Order::Greater);
}

void Machine::opEachPrepare(const Instruction& i) {
    const Value source = at(i.b);
    Value list;
    if (source.is(Type::Array)) {
        list = source.a->locks ? Value::array(ArrayData::copyOf(*source.a)) : source;
    } else {
        if (source.is(Type::Object) && !source.o) throw Fault(errors::objectNotSet);
        if (!source.is(Type::Object) || !source.o->elements(*this, list))
            throw Fault(errors::notACollection);
    }
    if (list.a->refs == 1) workOnItems(list.a->items.size()); // made for this
    r_.fp[i.a] = std::move(list);
    r_.fp[i.a + 1] = Value::longint(0);
}

bool Machine::opEachNext(const Instruction& i) {
    Value& list = r_.fp[i.b];
    Value& next = r_.fp[i.b + 1];
    if (!list.is(Type::Array)) throw Fault(errors::forNotInitialized);
    const auto k = static_cast<std::size_t>(next.i);
    if (k >= list.a->items.size()) return false;
    tick();
    ++next.i;
    at(i.a) = list.a->items[k];
    return true;
}

void Machine::opClear(const Instruction& i) { clearAll(registersFrom(i.a, i.b)); }

void Machine::opRef(const Instruction& i) {
    Value& v = at(i.b);
    r_.fp[i.a] = Value::reference(&v);
}

void Machine::opThis(const Instruction& i) { at(i.a) = frames_.back().me; }
void Machine::opResumeNext(const Instruction&) { frames_.back().resumeNext = true; }

void Machine::opGotoZero(const Instruction&) {
    frames_.back().resumeNext = false;
    err.clear();
}

void Machine::opLine(const Instruction& i) {
    if (lines_) lines_->at(static_cast<int>(i.c));
}

void Machine::opFail(const Instruction& i) { throw Fault(i.n); }

void Machine::opBindAuto(const Instruction& i) {
    Global& g = globals[i.c];
    if (g.defined) r_.fp[i.a] = Value::reference(&g.value);
}

// A variable of the running procedure that a text executed in it has made.
Value* Machine::madeHere(const Global& g) const {
    const auto& extra = frames_.back().extra;
    return extra ? extra->find(g.name) : nullptr;
}

Value& Machine::named(Global& g) {
    Value* const made = madeHere(g);
    return made ? *made : g.value;
}

void Machine::opCheckDefined(const Instruction& i) {
    const Global& g = globals[i.c];
    if (g.defined || g.proc() || g.cls() || madeHere(g)) return;
    Fault f(errors::undefined);
    f.detail = names.text(g.name);
    throw f;
}

void Machine::opLoadName(const Instruction& i) {
    Global& g = globals[i.c];
    if (g.proc())
        callProc(*g.proc(), {i.op, 0, i.a, frames_.back().proc->registers - 1, i.c}, Value());
    else
        at(i.a) = named(g);
}

void Machine::opLoadAuto(const Instruction& i) {
    const Global& g = globals[i.c];
    if (g.proc() || g.defined)
        opLoadName(i);
    else
        at(i.a) = at(i.b | operand::follow);
}

void Machine::opRefName(const Instruction& i) {
    Global& g = globals[i.c];
    if (g.proc())
        opLoadName(i);
    else
        r_.fp[i.a] = Value::reference(&named(g));
}

void Machine::opCallOwn(const Instruction& i) {
    callProc(*frames_.back().proc->callees[i.c], i, frames_.back().me);
}

void Machine::opCallName(const Instruction& i) {
    Global& g = globals[i.c];
    if (g.proc()) return callProc(*g.proc(), i, Value());
    const auto args = registersFrom(i.b, i.n);
    followReferences(args);
    const Value& called = named(g);
    if (args.empty() && !called.is(Type::Object)) throw Fault(errors::typeMismatch);
    Value v = indexed(called, args);
    clearAll(args);
    at(i.a) = std::move(v);
}

void Machine::opCallValue(const Instruction& i) {
    const Value v = at(i.b);
    if (!v.is(Type::Object)) throw Fault(errors::typeMismatch);
    const auto args = registersFrom(i.c, i.n);
    Value result;
    callOn(v, 0, Access::Method, args, result);
    clearAll(args);
    at(i.a) = std::move(result);
}

void Machine::opCallBuiltin(const Instruction& i) {
    const auto args = registersFrom(i.b, i.n);
    const Builtin& f = library.at(i.c);
    if (args.size() < f.least || args.size() > f.most) throw Fault(errors::wrongArguments);
    tick();
    for (const Value& a : args)
        workOn(a);
    Value v = f.run(*this, args);
    workOn(v);
    clearAll(args);
    at(i.a) = std::move(v);
}

void Machine::opNewArray(const Instruction& i) {
    at(i.a) = Value::array(ArrayData::make({i.c}, false));
}

void Machine::opFill(const Instruction& i) {
    tick();
    auto to = at(i.a).a->items.begin() + i.c;
    for (Value& v : registersFrom(i.b, i.n))
        *to++ = std::move(v);
}

void Machine::opNew(const Instruction& i) { at(i.a) = newObject(i.c); }

Value Machine::newObject(std::uint32_t slot) {
    const Global& g = globals[slot];
    if (g.name == atomOf(Word::RegExp)) return library.newRegExp();
    if (!g.cls()) throw Fault(errors::classNotDefined);
    tick();
    const ClassInfo& cls = *g.cls();
    Value v = Value::object(new Instance(*this, cls, ring_));
    workOnItems(static_cast<Instance*>(v.o)->items());
    if (cls.initialize) invoke(*cls.initialize, static_cast<Instance*>(v.o), {});
    return v;
}

void Machine::opWithObject(const Instruction& i) {
    const Value& v = at(i.b);
    if (!v.is(Type::Object)) throw Fault(errors::objectRequired);
    at(i.a) = v;
}

void Machine::opDim(const Instruction& i) {
    const ArrayShape& shape = frames_.back().proc->unit->shapes[i.c];
    Value& v = at(i.a);
    // A text that is added again finds its arrays as it left them.
    const bool keeps = i.n == 1 && v.is(Type::Array) && v.a->fixed == shape.fixed;
    if (keeps && (!shape.fixed || v.a->extents == shape.extents)) return;
    v = Value::array(ArrayData::make(shape.extents, shape.fixed));
    workOnItems(v.a->items.size());
}

void Machine::opReDim(const Instruction& i) {
    const auto bounds = registersFrom(i.b, i.n & 0xFF);
    std::vector<std::uint32_t> extents;
    for (const Value& b : bounds) {
        const std::int64_t n = toLong(*this, b) + 1;
        if (n < 0) throw Fault(errors::subscriptOutOfRange);
        extents.push_back(static_cast<std::uint32_t>(n));
    }
    Value& v = at(i.a);
    if (v.is(Type::Array) && (v.a->fixed || v.a->locks != 0)) throw Fault(errors::arrayLocked);
    const bool keeps = (i.n & flagBit) && v.is(Type::Array) && !v.a->extents.empty();
    if (!keeps) {
        v = Value::array(ArrayData::make(std::move(extents), false));
        workOnItems(v.a->items.size());
        return;
    }
    const auto& old = v.a->extents;
    if (old.size() != extents.size() || !std::equal(old.begin(), old.end() - 1, extents.begin()))
        throw Fault(errors::subscriptOutOfRange);
    workOnItems(v.a->items.size());
    makeUnique(v);
    v.a->resizeLast(extents.back());
}

void Machine::opErase(const Instruction& i) {
    Value& v = at(i.a);
    if (!v.is(Type::Array)) throw Fault(errors::typeMismatch);
    if (v.a->locks != 0) throw Fault(errors::arrayLocked);
    workOnItems(v.a->items.size());
    auto extents = v.a->extents;
    if (v.a->fixed)
        v = Value::array(ArrayData::make(std::move(extents), true));
    else
        v = Value::array(ArrayData::make({}, false));
}

void Machine::opExecute(const Instruction& i) {
    const Value text = plain(*this, at(i.b));
    if (!text.is(Type::String)) {
        if (i.n != 2) throw Fault(errors::typeMismatch);
        at(i.a) = text;
        return;
    }
    tick();
    const std::string source = text.utf8();
    work(source.size() * 10);
    Value result;
    try {
        auto frame = static_cast<int>(frames_.size()) - 1;
        if (frames_.back().inside >= 0) frame = frames_.back().inside;
        const Frame& f = frames_[static_cast<std::size_t>(frame)];
        const bool module = i.n == 1 || (i.n == 0 && f.proc->kind == ProcKind::Main);
        if (module) {
            const auto unit = unitFor(source);
            unit->ran = true;
            declare(*unit);
            invoke(*unit->main, nullptr, {});
        } else {
            if (!f.extra)
                frames_[static_cast<std::size_t>(frame)].extra = std::make_unique<MadeNames>();
            const bool me = f.me.is(Type::Object);
            const auto tree = i.n == 2 ? parseExpression(source, names, me, this)
                                       : parseModule(source, names, me, this);
            const LiveFrame live{f.proc, f.registers, f.extra.get()};
            const auto unit = compileInside(context(), *tree, live);
            unit->source = source;
            unit->charge();
            unit->ran = true;
            result = runInside(unit, frame);
            if (!unit->declares.empty() || !unit->classes.empty()) retire(unit);
        }
    } catch (const CompileFault& f) {
        Fault fault(i.n == 2 ? errors::syntax : f.number,
                    f.description.empty() ? std::string(errorText(f.number)) : f.description);
        fault.source = compileSource;
        fault.at = {0, 0, firstWords(source), f.line, f.column};
        throw fault;
    }
    at(i.a) = std::move(result);
}

} // namespace vbscript
