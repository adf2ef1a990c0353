// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "vbscript/values/locale.h"

#include <string>
#include <string_view>

namespace vbscript {

/// As CStr writes: `digits` significant ones, no zeros at the end, exponent form from 1E+15.
std::u16string numberText(double v, int digits, char16_t decimal);
std::u16string currencyText(long long tenThousandths, char16_t decimal);
/// Reads a number as the country writes it: blanks around, sign, thousands, exponent, &H and &O.
bool parseNumber(std::u16string_view text, const Locale& locale, double& v);
/// `places` decimals, rounded half away from zero as Format functions do; ASCII digits and ".".
std::string fixedText(double v, int places);

} // namespace vbscript
