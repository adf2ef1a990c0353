#include "vbscript/library/object_err.h"

#include "vbscript/library/builtins.h"
#include "vbscript/values/convert.h"

namespace vbscript {

void ErrObject::access(Runtime& rt, Atom member, Access how, std::span<Value> args, Value& result) {
    if (how == Access::Let) {
        if (args.size() != 1) throw Fault(450);
        assign(rt, member, args[0]);
        return;
    }
    if (how == Access::Set) throw Fault(438);
    const ErrState& e = rt.err;
    switch (member == 0 ? Word::Number : wordOf(member)) {
    case Word::Number:
        result = Value::longint(e.number);
        return;
    case Word::Description:
        result = Value::text(e.description);
        return;
    case Word::Source:
        result = Value::text(e.source);
        return;
    case Word::HelpFile:
        result = Value::text(e.helpFile);
        return;
    case Word::HelpContext:
        result = Value::longint(e.helpContext);
        return;
    case Word::Clear:
        rt.err.clear();
        return;
    case Word::Raise:
        raise(rt, args);
        return;
    default:
        throw Fault(438);
    }
}

void ErrObject::assign(Runtime& rt, Atom member, const Value& v) {
    ErrState& e = rt.err;
    switch (member == 0 ? Word::Number : wordOf(member)) {
    case Word::Number:
        e.number = static_cast<int>(toLong(rt, v));
        return;
    case Word::Description:
        e.description = toText(rt, v).utf8();
        return;
    case Word::Source:
        e.source = toText(rt, v).utf8();
        return;
    case Word::HelpFile:
        e.helpFile = toText(rt, v).utf8();
        return;
    case Word::HelpContext:
        e.helpContext = static_cast<int>(toLong(rt, v));
        return;
    default:
        throw Fault(438);
    }
}

void ErrObject::raise(Runtime& rt, std::span<Value> args) {
    if (args.empty() || args.size() > 5) throw Fault(450);
    const std::int64_t n = toLong(rt, args[0]);
    if (n == 0 || n > 65535) throw Fault(5);
    Fault f(static_cast<int>(n));
    f.raised = true;
    if (given(args, 1))
        f.source = toText(rt, args[1]).utf8();
    else
        f.source = errorText(f.number) == "Unknown runtime error" ? "" : runtimeSource;
    if (given(args, 2)) f.description = toText(rt, args[2]).utf8();
    if (given(args, 3)) f.helpFile = toText(rt, args[3]).utf8();
    if (given(args, 4)) f.helpContext = static_cast<int>(toLong(rt, args[4]));
    throw f;
}

} // namespace vbscript
