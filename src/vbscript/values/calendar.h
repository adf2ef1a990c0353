// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/locale.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace vbscript {

/// A date value is a count of days from 1899-12-30; before it the time of day still counts
/// forward, so the fraction is taken without its sign.
struct Civil {
    int year = 1899, month = 12, day = 30, hour = 0, minute = 0, second = 0;
};

inline constexpr double firstDate = -657434.0; ///< 1 January 100
inline constexpr double lastDate = 2958466.0;  ///< Behind 31 December 9999

std::int64_t dayNumber(std::int64_t year, int month, int day);
/// Any month and day count on from the others, as in DateSerial. Throws Fault 5 out of range.
double serialDate(std::int64_t year, std::int64_t month, std::int64_t day);
/// Joins days and a time of day in seconds.
double joinTime(std::int64_t days, std::int64_t seconds);
Civil civil(double date);
std::int64_t daysOf(double date);
std::int64_t secondsOf(double date);
int daysInMonth(std::int64_t year, int month);
int weekday(std::int64_t days); ///< 1 is Sunday.

/// A date as people write it; order by the country, names of months in it or in English.
/// `yearNow`: for a text without a year; 0: such a text is refused.
bool parseDate(std::u16string_view text, const Locale& locale, int yearNow, double& date);
/// Between # marks: month first in every country.
bool parseDateLiteral(std::u16string_view text, double& date);

enum class DateFormat { General = 0, LongDate = 1, ShortDate = 2, LongTime = 3, ShortTime = 4 };
std::u16string dateText(double date, const Locale& locale, DateFormat format = DateFormat::General);

} // namespace vbscript
