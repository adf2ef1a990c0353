// SPDX-License-Identifier: Apache-2.0
#include "vbscript/library/builtins.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/values/calendar.h"
#include "vbscript/values/convert.h"

#include <cmath>

namespace vbscript {

namespace {

double today(const LocalTime& t) { return static_cast<double>(dayNumber(t.year, t.month, t.day)); }
std::int64_t secondsNow(const LocalTime& t) { return (t.hour * 60 + t.minute) * 60 + t.second; }

Value now(Runtime& rt, Arguments) {
    const LocalTime t = rt.world.wallClock();
    return Value::date(joinTime(dayNumber(t.year, t.month, t.day), secondsNow(t)));
}

Value dateToday(Runtime& rt, Arguments) { return Value::date(today(rt.world.wallClock())); }

Value timeNow(Runtime& rt, Arguments) {
    return Value::date(joinTime(0, secondsNow(rt.world.wallClock())));
}

Value timer(Runtime& rt, Arguments) {
    const LocalTime t = rt.world.wallClock();
    return Value::single(static_cast<double>(secondsNow(t)) + t.millisecond / 1000.0);
}

/// The parts of a date argument; Null stays Null.
template <int Civil::*Part>
Value partOf(Runtime& rt, Arguments a) {
    Value v = plain(rt, a[0]);
    if (v.is(Type::Null)) return v;
    return Value::integer(civil(toDate(rt, v)).*Part);
}

int firstDay(Runtime& rt, Arguments a, std::size_t k) {
    const std::int64_t n = numberArg(rt, a, k, 1);
    if (n < 0 || n > 7) throw Fault(errors::invalidCall);
    return n == 0 ? rt.locale->firstWeekday : static_cast<int>(n);
}

Value weekdayOf(Runtime& rt, Arguments a) {
    Value v = plain(rt, a[0]);
    if (v.is(Type::Null)) return v;
    const int day = weekday(daysOf(toDate(rt, v)));
    return Value::integer((day - firstDay(rt, a, 1) + 7) % 7 + 1);
}

Value weekdayName(Runtime& rt, Arguments a) {
    const std::int64_t n = toLong(rt, a[0]);
    const bool abbreviated = given(a, 1) && toBool(rt, a[1]);
    if (n < 1 || n > 7) throw Fault(errors::invalidCall);
    const auto k = static_cast<std::size_t>((n + firstDay(rt, a, 2) - 2) % 7);
    return Value::string((abbreviated ? rt.locale->daysShort : rt.locale->days)[k]);
}

Value monthName(Runtime& rt, Arguments a) {
    const std::int64_t n = toLong(rt, a[0]);
    const bool abbreviated = given(a, 1) && toBool(rt, a[1]);
    if (n < 1 || n > 12) throw Fault(errors::invalidCall);
    return Value::string((abbreviated ? rt.locale->monthsShort
                                      : rt.locale->months)[static_cast<std::size_t>(n - 1)]);
}

Value dateSerial(Runtime& rt, Arguments a) {
    std::int64_t year = toInteger(rt, a[0]);
    if (year >= 0 && year < 100) year += year < 30 ? 2000 : 1900;
    return Value::date(serialDate(year, toLong(rt, a[1]), toLong(rt, a[2])));
}

Value timeSerial(Runtime& rt, Arguments a) {
    const std::int64_t seconds =
        toInteger(rt, a[0]) * 3600 + toInteger(rt, a[1]) * 60 + toInteger(rt, a[2]);
    if (seconds < 0) return Value::date(joinTime(seconds / 86400, seconds % 86400));
    return Value::date(joinTime(0, seconds));
}

/// What a person wrote as a date or a time: a number is not that, though CDate takes it.
double writtenDate(Runtime& rt, Arguments a) {
    const Value v = plain(rt, a[0]);
    if (v.is(Type::Null)) throw Fault(errors::invalidNull);
    double date = 0;
    if (v.is(Type::Date)) return v.d;
    if (!dateIn(rt, v, date)) throw Fault(errors::typeMismatch);
    return date;
}

Value dateValue(Runtime& rt, Arguments a) {
    return Value::date(static_cast<double>(daysOf(writtenDate(rt, a))));
}

Value timeValue(Runtime& rt, Arguments a) {
    return Value::date(joinTime(0, secondsOf(writtenDate(rt, a)) % 86400));
}

constexpr Builtin table[] = {
    {"Now", now, 0, 0},
    {"Date", dateToday, 0, 0},
    {"Time", timeNow, 0, 0},
    {"Timer", timer, 0, 0},
    {"Year", partOf<&Civil::year>, 1, 1},
    {"Month", partOf<&Civil::month>, 1, 1},
    {"Day", partOf<&Civil::day>, 1, 1},
    {"Hour", partOf<&Civil::hour>, 1, 1},
    {"Minute", partOf<&Civil::minute>, 1, 1},
    {"Second", partOf<&Civil::second>, 1, 1},
    {"Weekday", weekdayOf, 1, 2},
    {"WeekdayName", weekdayName, 1, 3},
    {"MonthName", monthName, 1, 2},
    {"DateSerial", dateSerial, 3, 3},
    {"TimeSerial", timeSerial, 3, 3},
    {"DateValue", dateValue, 1, 1},
    {"TimeValue", timeValue, 1, 1},
};

} // namespace

std::span<const Builtin> dateBuiltins() { return table; }

} // namespace vbscript
