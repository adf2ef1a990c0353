// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <cmath>

namespace vbscript {

namespace {

Value cBool(Runtime& rt, Arguments a) { return Value::boolean(toBool(rt, a[0])); }

Value cByte(Runtime& rt, Arguments a) {
    Value v = plain(rt, a[0]);
    if (v.is(Type::Boolean)) return Value::byte(v.i ? 255 : 0);
    const std::int64_t n = toLong(rt, v);
    if (n < 0 || n > 255) throw Fault(errors::overflow);
    return Value::byte(n);
}

Value cCur(Runtime& rt, Arguments a) { return Value::currency(toCurrency(rt, plain(rt, a[0]))); }
Value cDate(Runtime& rt, Arguments a) { return Value::date(toDate(rt, a[0])); }
Value cDbl(Runtime& rt, Arguments a) { return Value::real(toDouble(rt, a[0])); }
Value cInt(Runtime& rt, Arguments a) { return Value::integer(toInteger(rt, a[0])); }
Value cLng(Runtime& rt, Arguments a) { return Value::longint(toLong(rt, a[0])); }

Value cSng(Runtime& rt, Arguments a) {
    const double d = toDouble(rt, a[0]);
    if (std::fabs(d) > 3.4028234663852886e38) throw Fault(errors::overflow);
    return Value::single(d);
}

Value cStr(Runtime& rt, Arguments a) { return toText(rt, a[0]); }

Value radix(Runtime& rt, const Value& given0, unsigned shift) {
    Value v = plain(rt, given0);
    if (v.is(Type::Null)) return v;
    const std::int64_t n = toLong(rt, v);
    // An Integer shows sixteen bits, and so does whatever fits one without being its lowest value.
    const bool small = n > -32768 && n < 0;
    auto bits = static_cast<std::uint32_t>(n);
    if (small) bits &= 0xFFFFU;
    std::u16string out;
    do {
        const unsigned digit = bits & ((1U << shift) - 1);
        out.insert(out.begin(), u"0123456789ABCDEF"[digit]);
        bits >>= shift;
    } while (bits != 0);
    return Value::string(out);
}

Value hex(Runtime& rt, Arguments a) { return radix(rt, a[0], 4); }
Value oct(Runtime& rt, Arguments a) { return radix(rt, a[0], 3); }

char16_t firstChar(Runtime& rt, Arguments a) {
    const Value t = toText(rt, a[0]);
    if (t.chars().empty()) throw Fault(errors::invalidCall);
    return t.chars()[0];
}

Value asc(Runtime& rt, Arguments a) { return Value::integer(ansiOf(firstChar(rt, a))); }

Value ascW(Runtime& rt, Arguments a) {
    return Value::integer(static_cast<std::int16_t>(firstChar(rt, a)));
}

Value oneChar(char16_t c) { return Value::string({&c, 1}); }

Value chr(Runtime& rt, Arguments a) {
    const std::int64_t n = toLong(rt, a[0]);
    if (n < 0 || n > 255) throw Fault(errors::invalidCall);
    return oneChar(fromAnsi(static_cast<unsigned char>(n)));
}

Value chrW(Runtime& rt, Arguments a) {
    const std::int64_t n = toLong(rt, a[0]);
    if (n < -32768 || n > 65535) throw Fault(errors::invalidCall);
    return oneChar(static_cast<char16_t>(n));
}

constexpr Builtin table[] = {
    {"CBool", cBool, 1, 1}, {"CByte", cByte, 1, 1}, {"CCur", cCur, 1, 1}, {"CDate", cDate, 1, 1},
    {"CDbl", cDbl, 1, 1},   {"CInt", cInt, 1, 1},   {"CLng", cLng, 1, 1}, {"CSng", cSng, 1, 1},
    {"CStr", cStr, 1, 1},   {"Hex", hex, 1, 1},     {"Oct", oct, 1, 1},   {"Asc", asc, 1, 1},
    {"AscW", ascW, 1, 1},   {"Chr", chr, 1, 1},     {"ChrW", chrW, 1, 1},
};

} // namespace

std::span<const Builtin> convertBuiltins() { return table; }

} // namespace vbscript
