// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <algorithm>

namespace vbscript {

namespace {

constexpr std::size_t costOfHit = 50;
constexpr std::size_t npos = std::u16string_view::npos;

/// A string of `n` characters to fill in; error 14 before anything is allocated when it is absurd.
Value blank(std::int64_t n, char16_t fill) {
    if (n < 0) throw Fault(errors::invalidCall);
    Value v = Value::room(static_cast<std::size_t>(n), static_cast<std::size_t>(n));
    std::fill_n(v.s->chars(), n, fill);
    return v;
}

Value part(const Value& text, std::size_t from, std::size_t count) {
    const auto all = text.chars();
    if (from == 0 && count >= all.size()) return text;
    return Value::string(from >= all.size() ? std::u16string_view() : all.substr(from, count));
}

std::size_t countArg(Runtime& rt, const Value& v) {
    const std::int64_t n = toLong(rt, v);
    if (n < 0) throw Fault(errors::invalidCall);
    return static_cast<std::size_t>(n);
}

Value len(Runtime& rt, Arguments a) {
    Value v = plain(rt, a[0]);
    if (v.is(Type::Null)) return v;
    return Value::longint(static_cast<std::int64_t>(toText(rt, v).chars().size()));
}

Value left(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null)) return a[0];
    const std::size_t n = countArg(rt, a[1]);
    return part(toText(rt, a[0]), 0, n);
}

Value right(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null)) return a[0];
    const std::size_t n = countArg(rt, a[1]);
    const Value t = toText(rt, a[0]);
    const std::size_t size = t.chars().size();
    return part(t, n >= size ? 0 : size - n, n);
}

Value mid(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null)) return a[0];
    const std::int64_t start = toLong(rt, a[1]);
    if (start < 1) throw Fault(errors::invalidCall);
    const std::size_t n = given(a, 2) ? countArg(rt, a[2]) : npos;
    return part(toText(rt, a[0]), static_cast<std::size_t>(start - 1), n);
}

std::size_t findAs(const Value& in, const Value& what, std::size_t from, bool asText) {
    if (!asText) return findText(in.chars(), what.chars(), from);
    return findText(lowered(in.chars()), lowered(what.chars()), from);
}

Value inStr(Runtime& rt, Arguments a) {
    // The start comes first, but only when there are three arguments.
    const bool started = a.size() >= 3;
    const std::size_t k = started ? 1 : 0;
    const Value in = plain(rt, a[k]);
    const Value what = plain(rt, a[k + 1]);
    if (in.is(Type::Null) || what.is(Type::Null)) return Value::null();
    const std::int64_t start = started ? toLong(rt, a[0]) : 1;
    if (start < 1) throw Fault(errors::invalidCall);
    const bool asText = textCompareArg(rt, a, 3);
    const Value t = toText(rt, in);
    const Value w = toText(rt, what);
    const auto from = static_cast<std::size_t>(start - 1);
    if (t.chars().empty() || from >= t.chars().size()) return Value::longint(0);
    if (w.chars().empty()) return Value::longint(start);
    const std::size_t at = findAs(t, w, from, asText);
    return Value::longint(at == npos ? 0 : static_cast<std::int64_t>(at) + 1);
}

Value inStrRev(Runtime& rt, Arguments a) {
    const Value in = plain(rt, a[0]);
    const Value what = plain(rt, a[1]);
    if (in.is(Type::Null) || what.is(Type::Null)) throw Fault(errors::invalidNull);
    const std::int64_t start = numberArg(rt, a, 2, -1);
    if (start == 0 || start < -1) throw Fault(errors::invalidCall);
    const bool asText = textCompareArg(rt, a, 3, CompareModes::Two);
    const Value tv = toText(rt, in);
    const Value wv = toText(rt, what);
    std::u16string t = asText ? lowered(tv.chars()) : std::u16string(tv.chars());
    std::u16string w = asText ? lowered(wv.chars()) : std::u16string(wv.chars());
    if (t.empty() || start > static_cast<std::int64_t>(t.size())) return Value::longint(0);
    const std::size_t end = start == -1 ? t.size() : static_cast<std::size_t>(start);
    if (w.empty()) return Value::longint(static_cast<std::int64_t>(end));
    if (w.size() > end) return Value::longint(0);
    // Backwards in both: the search stays linear.
    t.resize(end);
    std::reverse(t.begin(), t.end());
    std::reverse(w.begin(), w.end());
    const std::size_t at = findText(t, w, 0);
    return Value::longint(at == npos ? 0 : static_cast<std::int64_t>(end - at - w.size()) + 1);
}

Value replace(Runtime& rt, Arguments a) {
    const Value t = toText(rt, a[0]);
    const Value what = toText(rt, a[1]);
    const Value with = toText(rt, a[2]);
    const std::int64_t start = numberArg(rt, a, 3, 1);
    const std::int64_t count = numberArg(rt, a, 4, -1);
    if (start < 1 || count < -1) throw Fault(errors::invalidCall);
    const bool asText = textCompareArg(rt, a, 5);
    const auto from = static_cast<std::size_t>(start - 1);
    if (from >= t.chars().size()) return Value::string({});
    const auto tail = t.chars().substr(from);
    if (what.chars().empty() || count == 0) return Value::string(tail);
    const std::u16string folded = asText ? lowered(tail) : std::u16string();
    const std::u16string needle = asText ? lowered(what.chars()) : std::u16string(what.chars());
    const std::u16string_view hay = asText ? std::u16string_view(folded) : tail;
    // Counted first: what comes out may be far larger than all that went in.
    std::int64_t hits = 0;
    for (std::size_t at = findText(hay, needle, 0); at != npos && hits != count; ++hits) {
        at = findText(hay, needle, at + needle.size());
        rt.spend(costOfHit);
    }
    const auto grows =
        static_cast<std::int64_t>(with.chars().size()) - static_cast<std::int64_t>(needle.size());
    Value out = blank(static_cast<std::int64_t>(tail.size()) + hits * grows, 0);
    char16_t* to = out.s->chars();
    std::size_t at = 0;
    for (; hits > 0; --hits) {
        const std::size_t hit = findText(hay, needle, at);
        to = std::copy(tail.begin() + at, tail.begin() + hit, to);
        to = std::copy(with.chars().begin(), with.chars().end(), to);
        at = hit + needle.size();
        rt.spend(costOfHit + with.chars().size());
    }
    std::copy(tail.begin() + at, tail.end(), to);
    return out;
}

Value trimmed(Runtime& rt, const Value& v, bool front, bool back) {
    if (v.is(Type::Null)) return v;
    const Value t = toText(rt, v);
    const auto all = t.chars();
    std::size_t from = 0;
    std::size_t to = all.size();
    while (front && from < to && all[from] == ' ')
        ++from;
    while (back && to > from && all[to - 1] == ' ')
        --to;
    return part(t, from, to - from);
}

Value trim(Runtime& rt, Arguments a) { return trimmed(rt, a[0], true, true); }
Value ltrim(Runtime& rt, Arguments a) { return trimmed(rt, a[0], true, false); }
Value rtrim(Runtime& rt, Arguments a) { return trimmed(rt, a[0], false, true); }

Value mapped(Runtime& rt, const Value& v, char16_t (*f)(char16_t)) {
    if (v.is(Type::Null)) return v;
    const Value t = toText(rt, v);
    Value out = blank(static_cast<std::int64_t>(t.chars().size()), 0);
    std::transform(t.chars().begin(), t.chars().end(), out.s->chars(), f);
    return out;
}

Value uCase(Runtime& rt, Arguments a) { return mapped(rt, a[0], upper); }
Value lCase(Runtime& rt, Arguments a) { return mapped(rt, a[0], lower); }
Value space(Runtime& rt, Arguments a) { return blank(toLong(rt, a[0]), ' '); }

Value stringOf(Runtime& rt, Arguments a) {
    const std::int64_t n = toLong(rt, a[0]);
    if (a[1].is(Type::Null)) return a[1];
    if (!a[1].is(Type::String)) {
        return blank(n, fromAnsi(static_cast<unsigned char>(toLong(rt, a[1]) & 0xFF)));
    }
    if (a[1].chars().empty()) throw Fault(errors::invalidCall);
    return blank(n, a[1].chars()[0]);
}

Value strReverse(Runtime& rt, Arguments a) {
    const Value t = toText(rt, a[0]);
    Value out = blank(static_cast<std::int64_t>(t.chars().size()), 0);
    std::reverse_copy(t.chars().begin(), t.chars().end(), out.s->chars());
    return out;
}

Value strComp(Runtime& rt, Arguments a) {
    if (a[0].is(Type::Null) || a[1].is(Type::Null)) return Value::null();
    const bool asText = textCompareArg(rt, a, 2);
    const Value x = toText(rt, a[0]);
    const Value y = toText(rt, a[1]);
    return Value::integer(compare(x.chars(), y.chars(), asText));
}

constexpr Builtin table[] = {
    {"Len", len, 1, 1},         {"Left", left, 2, 2},       {"Right", right, 2, 2},
    {"Mid", mid, 2, 3},         {"InStr", inStr, 2, 4},     {"InStrRev", inStrRev, 2, 4},
    {"Replace", replace, 3, 6}, {"Trim", trim, 1, 1},       {"LTrim", ltrim, 1, 1},
    {"RTrim", rtrim, 1, 1},     {"UCase", uCase, 1, 1},     {"LCase", lCase, 1, 1},
    {"Space", space, 1, 1},     {"String", stringOf, 2, 2}, {"StrReverse", strReverse, 1, 1},
    {"StrComp", strComp, 2, 3},
};

} // namespace

std::span<const Builtin> stringBuiltins() { return table; }

} // namespace vbscript
