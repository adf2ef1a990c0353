// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/calendar.h"
#include "vbscript/values/convert.h"
#include "vbscript/values/text.h"

#include <cmath>

// DateAdd, DateDiff, DatePart: arithmetic by named intervals.

namespace vbscript {

namespace {

enum class Interval { Year, Quarter, Month, DayOfYear, Day, Weekday, Week, Hour, Minute, Second };

Interval intervalArg(Runtime& rt, const Value& v) {
    const Value t = toText(rt, v);
    const std::u16string name = lowered(t.chars());
    constexpr std::pair<std::u16string_view, Interval> all[] = {
        {u"yyyy", Interval::Year},   {u"q", Interval::Quarter}, {u"m", Interval::Month},
        {u"y", Interval::DayOfYear}, {u"d", Interval::Day},     {u"w", Interval::Weekday},
        {u"ww", Interval::Week},     {u"h", Interval::Hour},    {u"n", Interval::Minute},
        {u"s", Interval::Second}};
    for (const auto& [text, interval] : all) {
        if (text == name) return interval;
    }
    throw Fault(errors::invalidCall);
}

int firstDayArg(Runtime& rt, Arguments a, std::size_t k) {
    const std::int64_t n = numberArg(rt, a, k, 1);
    if (n < 0 || n > 7) throw Fault(errors::invalidCall);
    return n == 0 ? rt.locale->firstWeekday : static_cast<int>(n);
}

double inRange(double date) {
    if (!(date >= firstDate && date < lastDate)) throw Fault(errors::invalidCall);
    return date;
}

/// Months on; a day that the month does not have becomes its last.
double addMonths(double date, std::int64_t months) {
    const Civil c = civil(date);
    const std::int64_t count = std::int64_t{c.year} * 12 + (c.month - 1) + months;
    if (count < std::int64_t{100} * 12 || count >= std::int64_t{10000} * 12)
        throw Fault(errors::invalidCall);
    const std::int64_t year = count / 12;
    const auto month = static_cast<int>(count % 12) + 1;
    const int day = std::min(c.day, daysInMonth(year, month));
    return joinTime(dayNumber(year, month, day), secondsOf(date) % 86400);
}

Value dateAdd(Runtime& rt, Arguments a) {
    const Interval what = intervalArg(rt, a[0]);
    const double amount = std::trunc(toDouble(rt, a[1]));
    if (a[2].is(Type::Null)) return a[2];
    const double date = toDate(rt, a[2]);
    if (!(std::fabs(amount) < 1e12)) throw Fault(errors::invalidCall);
    const auto n = static_cast<std::int64_t>(amount);
    const std::int64_t days = daysOf(date);
    const std::int64_t seconds = secondsOf(date) % 86400;
    switch (what) {
    case Interval::Year:
        return Value::date(addMonths(date, n * 12));
    case Interval::Quarter:
        return Value::date(addMonths(date, n * 3));
    case Interval::Month:
        return Value::date(addMonths(date, n));
    case Interval::Week:
        return Value::date(inRange(joinTime(days + n * 7, seconds)));
    case Interval::Hour:
        return Value::date(inRange(joinTime(days, seconds + n * 3600)));
    case Interval::Minute:
        return Value::date(inRange(joinTime(days, seconds + n * 60)));
    case Interval::Second:
        return Value::date(inRange(joinTime(days, seconds + n)));
    default:
        return Value::date(inRange(joinTime(days + n, seconds)));
    }
}

std::int64_t floorDiv(std::int64_t a, std::int64_t b) {
    const std::int64_t q = a / b;
    return a % b != 0 && (a < 0) != (b < 0) ? q - 1 : q;
}

/// Number of the week that a day lies in, counted from any fixed one.
std::int64_t weekNumber(std::int64_t days, int firstDay) {
    // Day 0 (1899-12-30) is a Saturday, 7.
    return floorDiv(days - (firstDay - 7), 7);
}

Value dateDiff(Runtime& rt, Arguments a) {
    const Interval what = intervalArg(rt, a[0]);
    if (a[1].is(Type::Null) || a[2].is(Type::Null)) return Value::null();
    const double from = toDate(rt, a[1]);
    const double to = toDate(rt, a[2]);
    const int first = firstDayArg(rt, a, 3);
    const Civil x = civil(from);
    const Civil y = civil(to);
    const std::int64_t days = daysOf(to) - daysOf(from);
    const std::int64_t sx = daysOf(from) * 86400 + secondsOf(from) % 86400;
    const std::int64_t sy = daysOf(to) * 86400 + secondsOf(to) % 86400;
    const std::int64_t mx = std::int64_t{x.year} * 12 + x.month - 1;
    const std::int64_t my = std::int64_t{y.year} * 12 + y.month - 1;
    std::int64_t r = days;
    switch (what) {
    case Interval::Year:
        r = y.year - x.year;
        break;
    case Interval::Quarter:
        r = floorDiv(my, 3) - floorDiv(mx, 3);
        break;
    case Interval::Month:
        r = my - mx;
        break;
    case Interval::Weekday:
        r = days / 7;
        break;
    case Interval::Week:
        r = weekNumber(daysOf(to), first) - weekNumber(daysOf(from), first);
        break;
    case Interval::Hour:
        r = floorDiv(sy, 3600) - floorDiv(sx, 3600);
        break;
    case Interval::Minute:
        r = floorDiv(sy, 60) - floorDiv(sx, 60);
        break;
    case Interval::Second:
        r = sy - sx;
        break;
    default:
        break;
    }
    if (r > 2147483647LL || r < -2147483648LL) throw Fault(errors::overflow);
    return Value::longint(r);
}

/// First day of week 1 of a year.
std::int64_t firstWeek(std::int64_t year, int firstDay, std::int64_t rule) {
    const std::int64_t newYear = dayNumber(year, 1, 1);
    const int into = (weekday(newYear) - firstDay + 7) % 7; // days of its week before 1 January
    const std::int64_t start = newYear - into;
    const int daysInYear = 7 - into;
    const bool counts = rule <= 1 || (rule == 2 ? daysInYear >= 4 : daysInYear == 7);
    return counts ? start : start + 7;
}

std::int64_t weekOfYear(double date, int firstDay, std::int64_t rule) {
    const std::int64_t days = daysOf(date);
    const std::int64_t year = civil(date).year;
    if (rule >= 2 && days >= firstWeek(year + 1, firstDay, rule)) return 1;
    std::int64_t start = firstWeek(year, firstDay, rule);
    if (days < start) start = firstWeek(year - 1, firstDay, rule);
    return (days - start) / 7 + 1;
}

Value datePart(Runtime& rt, Arguments a) {
    const Interval what = intervalArg(rt, a[0]);
    if (a[1].is(Type::Null)) return a[1];
    const double date = toDate(rt, a[1]);
    const int first = firstDayArg(rt, a, 2);
    const std::int64_t rule = numberArg(rt, a, 3, 1);
    if (rule < 0 || rule > 3) throw Fault(errors::invalidCall);
    const Civil c = civil(date);
    switch (what) {
    case Interval::Year:
        return Value::integer(c.year);
    case Interval::Quarter:
        return Value::integer((c.month - 1) / 3 + 1);
    case Interval::Month:
        return Value::integer(c.month);
    case Interval::DayOfYear:
        return Value::integer(daysOf(date) - dayNumber(c.year, 1, 1) + 1);
    case Interval::Day:
        return Value::integer(c.day);
    case Interval::Weekday:
        return Value::integer((weekday(daysOf(date)) - first + 7) % 7 + 1);
    case Interval::Week:
        return Value::integer(weekOfYear(date, first, rule));
    case Interval::Hour:
        return Value::integer(c.hour);
    case Interval::Minute:
        return Value::integer(c.minute);
    case Interval::Second:
        break;
    }
    return Value::integer(c.second);
}

constexpr Builtin table[] = {
    {"DateAdd", dateAdd, 3, 3}, {"DateDiff", dateDiff, 3, 5}, {"DatePart", datePart, 2, 4}};

} // namespace

std::span<const Builtin> datePartBuiltins() { return table; }

} // namespace vbscript
