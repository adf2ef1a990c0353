// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string_view>

namespace vbscript {

/// How a country writes numbers, dates and words.
struct Locale {
    std::string_view tag; ///< "es-AR"
    int lcid;
    char16_t decimal;
    char16_t thousands;
    std::u16string_view currency;
    bool dayFirst;
    bool clock24;
    int firstWeekday; ///< As vbUseSystemDayOfWeek: 1 is Sunday.
    std::u16string_view yes, no;
    std::array<std::u16string_view, 12> months, monthsShort;
    std::array<std::u16string_view, 7> days, daysShort; ///< From Sunday.
};

/// nullptr for a country that the engine does not know.
const Locale* localeByTag(std::string_view tag);
const Locale* localeByLcid(int lcid);
const Locale& spanish();
const Locale& english();

} // namespace vbscript
