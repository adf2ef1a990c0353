// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <algorithm>

namespace vbscript {

namespace {

constexpr std::size_t costOfPart = 100;
constexpr std::size_t npos = std::u16string_view::npos;

/// What an element costs that became text, as Runtime::spend counts: numbers have to be written.
std::size_t costOf(const Value& v, const Value& text) {
    constexpr std::size_t element = 30;
    constexpr std::size_t number = 300;
    return text.s->length + (v.is(Type::String) ? element : number);
}

Value array(Runtime&, Arguments a) { return arrayOf({a.begin(), a.end()}); }

std::size_t dimension(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Object) && !a[0].o) throw Fault(errors::objectNotSet);
    if (!a[0].is(Type::Array)) throw Fault(errors::typeMismatch);
    const std::int64_t n = numberArg(rt, a, 1, 1);
    if (n < 1 || n > static_cast<std::int64_t>(a[0].a->extents.size()))
        throw Fault(errors::subscriptOutOfRange);
    return static_cast<std::size_t>(n - 1);
}

Value lBound(Runtime& rt, Arguments a) {
    dimension(rt, a);
    return Value::longint(0);
}

Value uBound(Runtime& rt, Arguments a) {
    const std::size_t k = dimension(rt, a);
    return Value::longint(static_cast<std::int64_t>(a[0].a->extents[k]) - 1);
}

Value split(Runtime& rt, Arguments a) {
    const Value t = toText(rt, a[0]);
    const Value by = given(a, 1) ? toText(rt, a[1]) : Value::text(" ");
    std::int64_t most = numberArg(rt, a, 2, -1);
    if (most < -1) throw Fault(errors::invalidCall);
    const bool asText = textCompareArg(rt, a, 3, CompareModes::Two);
    std::vector<Value> parts;
    const auto all = t.chars();
    if (all.empty() || most == 0) return arrayOf({});
    if (by.chars().empty()) return arrayOf({t});
    const std::u16string folded = asText ? lowered(all) : std::u16string();
    const std::u16string needle = asText ? lowered(by.chars()) : std::u16string(by.chars());
    const std::u16string_view hay = asText ? std::u16string_view(folded) : all;
    std::size_t at = 0;
    for (;;) {
        const std::size_t hit = most == 1 ? npos : findText(hay, needle, at);
        parts.push_back(Value::string(all.substr(at, hit == npos ? npos : hit - at)));
        if (hit == npos) break;
        at = hit + needle.size();
        if (most > 0) --most;
        rt.spend(costOfPart);
    }
    return arrayOf(std::move(parts));
}

Value join(Runtime& rt, Arguments a) {
    if (!a[0].is(Type::Array)) throw Fault(errors::typeMismatch);
    if (a[0].a->extents.size() > 1) throw Fault(errors::invalidCall);
    const Value by = given(a, 1) ? toText(rt, a[1]) : Value::text(" ");
    Value out = Value::string({});
    bool first = true;
    const Value held = a[0];
    for (const Value& v : held.a->items) {
        if (!first) appendTo(out, by.chars());
        first = false;
        const Value t = joinable(rt, v);
        appendTo(out, t.chars());
        rt.spend(by.s->length + costOf(v, t));
    }
    return out;
}

Value filter(Runtime& rt, Arguments a) {
    if (!a[0].is(Type::Array)) throw Fault(errors::typeMismatch);
    if (a[0].a->extents.size() > 1) throw Fault(errors::typeMismatch);
    const Value what = toText(rt, a[1]);
    const bool include = !given(a, 2) || toBool(rt, a[2]);
    const bool asText = textCompareArg(rt, a, 3);
    const std::u16string needle = asText ? lowered(what.chars()) : std::u16string(what.chars());
    std::vector<Value> kept;
    const Value held = a[0];
    for (const Value& v : held.a->items) {
        const Value t = toText(rt, v);
        const bool has = (asText ? findText(lowered(t.chars()), needle, 0)
                                 : findText(t.chars(), needle, 0)) != npos;
        if (has == include) kept.push_back(t);
        rt.spend(needle.size() + costOf(v, t));
    }
    return arrayOf(std::move(kept));
}

bool plainInEscape(char16_t c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           std::u16string_view(u"@*_+-./").find(c) != npos;
}

void putHex(std::u16string& out, unsigned v, int digits) {
    for (int k = digits - 1; k >= 0; --k)
        out += u"0123456789ABCDEF"[(v >> (4 * k)) & 15U];
}

Value escape(Runtime& rt, Arguments a) {
    const Value t = toText(rt, a[0]);
    Value result = Value::string({});
    std::u16string out;
    for (char16_t c : t.chars()) {
        out.clear();
        if (plainInEscape(c)) {
            out += c;
        } else if (c < 256) {
            out += u'%';
            putHex(out, c, 2);
        } else {
            out += u"%u";
            putHex(out, c, 4);
        }
        appendTo(result, out);
    }
    return result;
}

int hexAt(std::u16string_view t, std::size_t at, std::size_t digits) {
    if (at + digits > t.size()) return -1;
    int v = 0;
    for (std::size_t k = at; k < at + digits; ++k) {
        const char16_t c = lower(t[k]);
        if (c >= '0' && c <= '9')
            v = v * 16 + (c - '0');
        else if (c >= 'a' && c <= 'f')
            v = v * 16 + (c - 'a' + 10);
        else
            return -1;
    }
    return v;
}

Value unescape(Runtime& rt, Arguments a) {
    const Value t = toText(rt, a[0]);
    const auto in = t.chars();
    Value result = Value::string({});
    for (std::size_t k = 0; k < in.size(); ++k) {
        char16_t c = in[k];
        if (c == '%') {
            const bool wideForm = k + 1 < in.size() && lower(in[k + 1]) == 'u';
            const int v = wideForm ? hexAt(in, k + 2, 4) : hexAt(in, k + 1, 2);
            if (v >= 0) {
                c = static_cast<char16_t>(v);
                k += wideForm ? 5 : 2;
            }
        }
        appendTo(result, {&c, 1});
    }
    return result;
}

constexpr Builtin table[] = {
    {"Array", array, 0, 255}, {"LBound", lBound, 1, 2},     {"UBound", uBound, 1, 2},
    {"Split", split, 1, 4},   {"Join", join, 1, 2},         {"Filter", filter, 2, 4},
    {"Escape", escape, 1, 1}, {"Unescape", unescape, 1, 1},
};

} // namespace

std::span<const Builtin> listBuiltins() { return table; }

} // namespace vbscript
