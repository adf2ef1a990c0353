// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/literals.h"

#include "vbscript/values/text.h"

#include <charconv>
#include <cmath>

namespace vbscript {

namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

std::size_t digitsFrom(std::string_view t, std::size_t at) {
    while (at < t.size() && isDigit(t[at]))
        ++at;
    return at;
}

int digitValue(char c, int base) {
    const char l = lowerAscii(c);
    const int v = isDigit(l) ? l - '0' : l >= 'a' && l <= 'f' ? l - 'a' + 10 : 99;
    return v < base ? v : -1;
}

} // namespace

std::size_t scanDecimal(std::string_view t, Value& v) {
    std::size_t end = digitsFrom(t, 0);
    bool whole = true;
    if (end < t.size() && t[end] == '.') {
        whole = false;
        end = digitsFrom(t, end + 1);
    }
    if (end < t.size() && lowerAscii(t[end]) == 'e') {
        std::size_t sign = end + 1;
        if (sign < t.size() && (t[sign] == '+' || t[sign] == '-')) ++sign;
        const std::size_t after = digitsFrom(t, sign);
        if (after > sign) {
            whole = false;
            end = after;
        }
    }
    double d = 0;
    const auto r = std::from_chars(t.data(), t.data() + end, d);
    if (r.ec == std::errc::result_out_of_range) {
        // Too small is 0; too large is no number. from_chars does not say which of the two.
        const std::size_t e = t.substr(0, end).find_first_of("eE");
        const bool tiny = e != std::string_view::npos && e + 1 < end && t[e + 1] == '-';
        const bool pointFirst = t[0] == '.' || t.substr(0, 2) == "0.";
        v = tiny || pointFirst ? Value::real(0) : Value::null();
        return end;
    }
    v = whole && d <= 2147483647.0 ? Value::smallest(static_cast<std::int64_t>(d)) : Value::real(d);
    return end;
}

std::size_t scanRadix(std::string_view t, Value& v) {
    if (t.size() < 2) return 0;
    const char mark = lowerAscii(t[1]);
    const int base = mark == 'h' ? 16 : 8;
    std::size_t at = mark == 'h' || mark == 'o' ? 2 : 1;
    const std::size_t first = at;
    std::uint64_t n = 0;
    bool tooLarge = false;
    for (; at < t.size() && digitValue(t[at], base) >= 0; ++at) {
        n = n * static_cast<unsigned>(base) + static_cast<unsigned>(digitValue(t[at], base));
        tooLarge = tooLarge || n > 0xFFFFFFFFU;
        if (tooLarge) n = 0;
    }
    if (at == first) return 0;
    const bool closed = at < t.size() && t[at] == '&'; // sixteen bits are no sign then
    if (closed) ++at;
    if (tooLarge) {
        v = Value::null();
    } else if (n <= (closed ? 0x7FFFU : 0xFFFFU)) {
        const auto small = static_cast<std::int16_t>(n);
        v = small == -32768 ? Value::longint(small) : Value::integer(small);
    } else {
        v = Value::longint(static_cast<std::int32_t>(n));
    }
    return at;
}

} // namespace vbscript
