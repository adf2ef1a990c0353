// SPDX-License-Identifier: Apache-2.0
#include "vbscript/values/calendar.h"

#include "text/fecha.h"
#include "vbscript/surroundings/errors.h"
#include "vbscript/surroundings/fault.h"
#include "vbscript/values/text.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace vbscript {

namespace {

constexpr std::int64_t secondsPerDay = 86400;
constexpr std::int64_t epoch = -25569; // 1899-12-30 counted from 1970-01-01

template <class... Args>
std::u16string formatted(const char* format, Args... args) {
    char buffer[64];
    const int n = std::snprintf(buffer, sizeof buffer, format, args...);
    return wide({buffer, static_cast<std::size_t>(n)});
}

std::u16string timeText(const Civil& c, const Locale& locale) {
    if (locale.clock24) return formatted("%02d:%02d:%02d", c.hour, c.minute, c.second);
    const int h = c.hour % 12 == 0 ? 12 : c.hour % 12;
    return formatted("%d:%02d:%02d %s", h, c.minute, c.second, c.hour < 12 ? "AM" : "PM");
}

std::u16string shortDate(const Civil& c, const Locale& locale) {
    return locale.dayFirst ? formatted("%02d/%02d/%04d", c.day, c.month, c.year)
                           : formatted("%d/%d/%d", c.month, c.day, c.year);
}

std::u16string longDate(const Civil& c, double date, const Locale& locale) {
    const std::u16string month(locale.months[static_cast<std::size_t>(c.month - 1)]);
    std::u16string out(locale.days[static_cast<std::size_t>(weekday(daysOf(date)) - 1)]);
    if (locale.dayFirst) {
        return out + u", " + formatted("%d", c.day) + u" de " + month + u" de " +
               formatted("%d", c.year);
    }
    return out + u", " + month + formatted(" %02d, %d", c.day, c.year);
}

} // namespace

std::int64_t dayNumber(std::int64_t year, int month, int day) {
    return kv::diasDesdeFecha(year, month, day) - epoch;
}

int daysInMonth(std::int64_t year, int month) {
    constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return month == 2 && leap ? 29 : days[month - 1];
}

int weekday(std::int64_t days) { return static_cast<int>(((days + 6) % 7 + 7) % 7) + 1; }

double serialDate(std::int64_t year, std::int64_t month, std::int64_t day) {
    std::int64_t y = year + (month - 1) / 12;
    std::int64_t m = (month - 1) % 12;
    if (m < 0) {
        m += 12;
        --y;
    }
    if (y < -10000 || y > 20000) throw Fault(errors::invalidCall);
    const auto days = static_cast<double>(dayNumber(y, static_cast<int>(m) + 1, 1) + day - 1);
    if (days < firstDate || days >= lastDate) throw Fault(errors::invalidCall);
    return days;
}

double joinTime(std::int64_t days, std::int64_t seconds) {
    days += seconds / secondsPerDay;
    seconds %= secondsPerDay;
    if (seconds < 0) {
        seconds += secondsPerDay;
        --days;
    }
    const double fraction = static_cast<double>(seconds) / static_cast<double>(secondsPerDay);
    const auto whole = static_cast<double>(days);
    return days < 0 ? whole - fraction : whole + fraction;
}

std::int64_t secondsOf(double date) {
    return std::llround((std::fabs(date) - std::floor(std::fabs(date))) * 86400.0);
}

std::int64_t daysOf(double date) {
    const auto days = static_cast<std::int64_t>(std::trunc(date));
    return secondsOf(date) == secondsPerDay ? days + 1 : days;
}

Civil civil(double date) {
    const kv::FechaHora f = kv::fechaDesdeSegundos((daysOf(date) + epoch) * secondsPerDay +
                                                   secondsOf(date) % secondsPerDay);
    return {f.anio, f.mes, f.dia, f.hora, f.minuto, f.segundo};
}

std::u16string dateText(double date, const Locale& locale, DateFormat format) {
    const Civil c = civil(date);
    switch (format) {
    case DateFormat::LongDate:
        return longDate(c, date, locale);
    case DateFormat::ShortDate:
        return shortDate(c, locale);
    case DateFormat::LongTime:
        return timeText(c, locale);
    case DateFormat::ShortTime:
        return formatted("%02d:%02d", c.hour, c.minute);
    case DateFormat::General:
        break;
    }
    const bool midnight = secondsOf(date) % secondsPerDay == 0;
    if (daysOf(date) == 0) return timeText(c, locale);
    if (midnight) return shortDate(c, locale);
    return shortDate(c, locale) + u' ' + timeText(c, locale);
}

} // namespace vbscript
