// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/calendar.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/number_text.h"
#include "vbscript/values/text.h"

#include <cmath>

namespace vbscript {

namespace {

/// A choice of yes, no or as the country does (-2).
bool choice(Runtime& rt, Arguments a, std::size_t k, bool usual) {
    const std::int64_t n = numberArg(rt, a, k, -2);
    if (n < -2 || n > 0) throw Fault(errors::invalidCall);
    return n == -2 ? usual : n == -1;
}

struct Shape {
    std::u16string digits; ///< Without sign.
    bool negative;
    bool brackets;
};

Shape shaped(Runtime& rt, Arguments a, double v, bool bracketsUsual) {
    const std::int64_t places = numberArg(rt, a, 1, -1);
    if (places < -1 || places > 99) throw Fault(errors::invalidCall);
    const bool leading = choice(rt, a, 2, true);
    const bool brackets = choice(rt, a, 3, bracketsUsual);
    const bool grouped = choice(rt, a, 4, true);
    const std::string fixed = fixedText(v, places == -1 ? 2 : static_cast<int>(places));
    const std::size_t point = fixed.find('.');
    const std::string whole = fixed.substr(0, point);
    Shape s{{}, v < 0 && fixed.find_first_of("123456789") != std::string::npos, brackets};
    for (std::size_t k = 0; k < whole.size(); ++k) {
        if (grouped && k > 0 && (whole.size() - k) % 3 == 0) s.digits += rt.locale->thousands;
        s.digits += static_cast<char16_t>(whole[k]);
    }
    if (!leading && whole == "0" && point != std::string::npos) s.digits.clear();
    if (point != std::string::npos) {
        s.digits += rt.locale->decimal;
        s.digits += wide(std::string_view(fixed).substr(point + 1));
    }
    return s;
}

Value withSign(const Shape& s, const std::u16string& body) {
    if (!s.negative) return Value::string(body);
    return Value::string(s.brackets ? u"(" + body + u")" : u"-" + body);
}

Value formatNumber(Runtime& rt, Arguments a) {
    const Shape s = shaped(rt, a, toDouble(rt, a[0]), false);
    return withSign(s, s.digits);
}

Value formatPercent(Runtime& rt, Arguments a) {
    const Shape s = shaped(rt, a, toDouble(rt, a[0]) * 100.0, false);
    return withSign(s, s.digits + u"%");
}

Value formatCurrency(Runtime& rt, Arguments a) {
    const Locale& l = *rt.locale;
    const Shape s = shaped(rt, a, toDouble(rt, a[0]), !l.dayFirst);
    const std::u16string sign(l.currency);
    if (!l.dayFirst) return withSign(s, sign + s.digits);
    // The peso's sign stands before the minus.
    if (s.negative && !s.brackets) return Value::string(sign + u" -" + s.digits);
    return withSign(s, sign + u" " + s.digits);
}

Value formatDateTime(Runtime& rt, Arguments a) {
    const double date = toDate(rt, a[0]);
    const std::int64_t format = numberArg(rt, a, 1, 0);
    if (format < 0 || format > 4) throw Fault(errors::invalidCall);
    return Value::string(dateText(date, *rt.locale, static_cast<DateFormat>(format)));
}

Value getLocale(Runtime& rt, Arguments) { return Value::longint(rt.locale->lcid); }

Value setLocale(Runtime& rt, Arguments a) {
    const int before = rt.locale->lcid;
    const Locale* wanted = nullptr;
    if (!given(a, 0)) {
        wanted = &spanish();
    } else {
        Value v = plain(rt, a[0]);
        double n = 0;
        if (v.is(Type::String) && !numberIn(rt, v, n))
            wanted = localeByTag(v.utf8());
        else if (toLong(rt, v) == 0)
            wanted = &spanish();
        else
            wanted = localeByLcid(static_cast<int>(toLong(rt, v)));
    }
    if (!wanted) throw Fault(errors::noSuchLocale);
    rt.locale = wanted;
    return Value::longint(before);
}

constexpr Builtin table[] = {
    {"FormatNumber", formatNumber, 1, 5},     {"FormatPercent", formatPercent, 1, 5},
    {"FormatCurrency", formatCurrency, 1, 5}, {"FormatDateTime", formatDateTime, 1, 2},
    {"GetLocale", getLocale, 0, 0},           {"SetLocale", setLocale, 0, 1},
};

} // namespace

std::span<const Builtin> formatBuiltins() { return table; }

} // namespace vbscript
