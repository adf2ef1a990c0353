// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/object_err.h"

#include "vbscript/library/builtins.h"
#include "vbscript/library/members.h"
#include "vbscript/values/convert.h"

#include <algorithm>
#include <iterator>

namespace vbscript {

namespace {

struct Result {
    std::uint32_t code;
    int number;
};

// What automation's results are called in the language, ordered by code: number by number, most of
// them without another use, and so without a name. What each says stands in errorText's table.
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

class ErrObject : public Native<ErrObject> {
  public:
    [[nodiscard]] std::string typeName() const override { return "Object"; }
    static Members<ErrObject> members();

  private:
    template <int ErrState::*Field>
    Value number(Runtime& rt, Arguments /*none*/) {
        return Value::longint(rt.err.*Field);
    }
    template <int ErrState::*Field>
    void setNumber(Runtime& rt, Arguments args) {
        rt.err.*Field = static_cast<int>(toLong(rt, args[0]));
    }
    template <std::string ErrState::*Field>
    Value text(Runtime& rt, Arguments /*none*/) {
        return Value::text(rt.err.*Field);
    }
    template <std::string ErrState::*Field>
    void setText(Runtime& rt, Arguments args) {
        rt.err.*Field = shown(toText(rt, args[0]));
    }
    Value clear(Runtime& rt, Arguments /*none*/) {
        rt.err.clear();
        return {};
    }
    Value raise(Runtime& rt, Arguments args);
};

Members<ErrObject> ErrObject::members() {
    using E = ErrObject;
    using S = ErrState;
    static constexpr MemberOf<E> all[] = {
        {Word::Number, {0, 0}, &E::number<&S::number>, &E::setNumber<&S::number>},
        {Word::Description, {0, 0}, &E::text<&S::description>, &E::setText<&S::description>},
        {Word::Clear, {0, 0}, &E::clear},
        {Word::Raise, {1, 5}, &E::raise},
        {Word::Source, {0, 0}, &E::text<&S::source>, &E::setText<&S::source>},
        {Word::HelpFile, {0, 0}, &E::text<&S::helpFile>, &E::setText<&S::helpFile>},
        {Word::HelpContext, {0, 0}, &E::number<&S::helpContext>, &E::setNumber<&S::helpContext>},
    };
    return {Word::Number, all};
}

Value ErrObject::raise(Runtime& rt, Arguments args) {
    const std::int64_t n = numberOfResult(toLong(rt, args[0]));
    if (n == 0 || n > 65535) throw Fault(errors::invalidCall);
    Fault f(static_cast<int>(n));
    f.raised = true;
    if (given(args, 1))
        f.source = shown(toText(rt, args[1]));
    else
        f.source = errorText(f.number) == "Unknown runtime error" ? "" : runtimeSource;
    if (given(args, 2)) f.description = shown(toText(rt, args[2]));
    if (given(args, 3)) f.helpFile = shown(toText(rt, args[3]));
    if (given(args, 4)) f.helpContext = static_cast<int>(toLong(rt, args[4]));
    throw f;
}

} // namespace

Value makeErr() { return Value::object(new ErrObject); }

} // namespace vbscript
