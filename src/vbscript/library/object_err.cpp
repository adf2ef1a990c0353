// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/object_err.h"

#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <algorithm>
#include <iterator>

namespace vbscript {

namespace {

struct Result {
    std::uint32_t code;
    int number;
};

// What automation's results are called in the language, ordered by code.
constexpr Result results[] = {
    {0x80004001, 445}, {0x80004002, 430}, {0x80020001, 438}, {0x80020003, 438},   {0x80020004, 448},
    {0x80020005, 13},  {0x80020006, 438}, {0x80020007, 446}, {0x80020008, 458},   {0x8002000A, 6},
    {0x8002000B, 9},   {0x8002000C, 447}, {0x8002000D, 10},  {0x8002000E, 450},   {0x8002000F, 449},
    {0x80020011, 451}, {0x80020012, 11},  {0x8002801D, 48},  {0x8002802B, 32811}, {0x8002802F, 453},
    {0x80028CA0, 13},  {0x80028CA1, 9},   {0x80028CA2, 57},  {0x80028CA3, 322},   {0x80030002, 53},
    {0x80030003, 76},  {0x80030004, 67},  {0x80030005, 70},  {0x80030008, 7},     {0x80030012, 67},
    {0x80030013, 70},  {0x80030019, 5},   {0x8003001D, 57},  {0x8003001E, 57},    {0x80030020, 75},
    {0x80030021, 70},  {0x80030050, 58},  {0x80030070, 61},  {0x800300FC, 53},    {0x80030100, 70},
    {0x80030101, 70},  {0x80030103, 57},  {0x80040154, 429}, {0x800401E3, 429},   {0x800401E6, 432},
    {0x800401EA, 432}, {0x800401F3, 429}, {0x800401F5, 429}, {0x800401FE, 429},   {0x80070005, 70},
    {0x8007000E, 7},   {0x80070057, 5},   {0x800706BA, 462}, {0x80080005, 429},
};

/// An HRESULT that stands for a number of the language becomes that number: those above, and
/// 0x800Axxxx, which is how the language's own numbers travel.
std::int64_t numberOfResult(std::int64_t n) {
    const auto code = static_cast<std::uint32_t>(n);
    if (n >= 0) return n;
    if ((code & 0xFFFF0000U) == 0x800A0000U) return code & 0xFFFFU;
    const auto* at = std::lower_bound(std::begin(results), std::end(results), code,
                                      [](const Result& r, std::uint32_t c) { return r.code < c; });
    return at != std::end(results) && at->code == code ? at->number : n;
}

/// Err keeps no more of a text than anybody would read.
std::string textFor(Runtime& rt, const Value& v) {
    constexpr std::size_t longest = 32768;
    const Value t = toText(rt, v);
    return utf8(t.chars().substr(0, longest));
}

} // namespace

void ErrObject::access(Runtime& rt, Atom member, Access how, std::span<Value> args, Value& result) {
    if (how == Access::Let) {
        if (args.size() != 1) throw Fault(errors::wrongArguments);
        assign(rt, member, args[0]);
        return;
    }
    if (how == Access::Set) throw Fault(errors::noSuchMember);
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
        throw Fault(errors::noSuchMember);
    }
}

void ErrObject::assign(Runtime& rt, Atom member, const Value& v) {
    ErrState& e = rt.err;
    switch (member == 0 ? Word::Number : wordOf(member)) {
    case Word::Number:
        e.number = static_cast<int>(toLong(rt, v));
        return;
    case Word::Description:
        e.description = textFor(rt, v);
        return;
    case Word::Source:
        e.source = textFor(rt, v);
        return;
    case Word::HelpFile:
        e.helpFile = textFor(rt, v);
        return;
    case Word::HelpContext:
        e.helpContext = static_cast<int>(toLong(rt, v));
        return;
    default:
        throw Fault(errors::noSuchMember);
    }
}

void ErrObject::raise(Runtime& rt, std::span<Value> args) {
    if (args.empty() || args.size() > 5) throw Fault(errors::wrongArguments);
    const std::int64_t n = numberOfResult(toLong(rt, args[0]));
    if (n == 0 || n > 65535) throw Fault(errors::invalidCall);
    Fault f(static_cast<int>(n));
    f.raised = true;
    if (given(args, 1))
        f.source = textFor(rt, args[1]);
    else
        f.source = errorText(f.number) == "Unknown runtime error" ? "" : runtimeSource;
    if (given(args, 2)) f.description = textFor(rt, args[2]);
    if (given(args, 3)) f.helpFile = textFor(rt, args[3]);
    if (given(args, 4)) f.helpContext = static_cast<int>(toLong(rt, args[4]));
    throw f;
}

} // namespace vbscript
