// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

// The functions that see a string as bytes, two to a character, the low one first.

namespace vbscript {

namespace {

std::string bytesOf(std::u16string_view t) {
    std::string out;
    out.reserve(t.size() * 2);
    for (char16_t c : t) {
        out += static_cast<char>(c & 0xFF);
        out += static_cast<char>(c >> 8);
    }
    return out;
}

/// An odd byte at the end makes a character of its own.
Value fromBytes(std::string_view bytes) {
    std::u16string out;
    out.reserve(bytes.size() / 2 + 1);
    for (std::size_t k = 0; k < bytes.size(); k += 2) {
        const auto low = static_cast<unsigned char>(bytes[k]);
        const auto high = k + 1 < bytes.size() ? static_cast<unsigned char>(bytes[k + 1]) : 0U;
        out += static_cast<char16_t>(low | high << 8);
    }
    return Value::string(out);
}

std::size_t count(Runtime& rt, const Value& v) {
    const std::int64_t n = toLong(rt, v);
    if (n < 0) throw Fault(errors::invalidCall);
    return static_cast<std::size_t>(n);
}

Value lenB(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null)) return a[0];
    return Value::longint(static_cast<std::int64_t>(toText(rt, a[0]).chars().size()) * 2);
}

Value leftB(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null)) return a[0];
    return fromBytes(bytesOf(toText(rt, a[0]).chars()).substr(0, count(rt, a[1])));
}

Value rightB(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null)) return a[0];
    const std::string all = bytesOf(toText(rt, a[0]).chars());
    const std::size_t n = count(rt, a[1]);
    return fromBytes(n >= all.size() ? all : all.substr(all.size() - n));
}

Value midB(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null)) return a[0];
    const std::size_t start = count(rt, a[1]);
    if (start < 1) throw Fault(errors::invalidCall);
    const std::string all = bytesOf(toText(rt, a[0]).chars());
    if (start > all.size()) return Value::string({});
    return fromBytes(all.substr(start - 1, given(a, 2) ? count(rt, a[2]) : std::string::npos));
}

Value inStrB(Runtime& rt, Arguments a) {
    const std::size_t k = a.size() >= 3 ? 1 : 0;
    const std::int64_t start = k ? toLong(rt, a[0]) : 1;
    if (start < 1) throw Fault(errors::invalidCall);
    if (a[k].is(Type::Null) || a[k + 1].is(Type::Null)) return Value::null();
    std::u16string hay;
    std::u16string needle;
    for (char c : bytesOf(toText(rt, a[k]).chars()))
        hay += static_cast<unsigned char>(c);
    for (char c : bytesOf(toText(rt, a[k + 1]).chars()))
        needle += static_cast<unsigned char>(c);
    if (hay.empty()) return Value::longint(0);
    const std::size_t at = findText(hay, needle, static_cast<std::size_t>(start - 1));
    return Value::longint(at == std::u16string::npos ? 0 : static_cast<std::int64_t>(at) + 1);
}

Value ascB(Runtime& rt, Arguments a) {
    const Value t = toText(rt, a[0]);
    if (t.chars().empty()) throw Fault(errors::invalidCall);
    return Value::byte(t.chars()[0] & 0xFF);
}

Value chrB(Runtime& rt, Arguments a) {
    const std::int64_t n = toLong(rt, a[0]);
    if (n < 0 || n > 255) throw Fault(errors::invalidCall);
    const auto c = static_cast<char16_t>(n);
    return Value::string({&c, 1});
}

constexpr Builtin table[] = {
    {"LenB", lenB, 1, 1}, {"LeftB", leftB, 2, 2},   {"RightB", rightB, 2, 2},
    {"MidB", midB, 2, 3}, {"InStrB", inStrB, 2, 4}, {"AscB", ascB, 1, 1},
    {"ChrB", chrB, 1, 1},
};

} // namespace

std::span<const Builtin> byteBuiltins() { return table; }

} // namespace vbscript
