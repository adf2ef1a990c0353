// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace vbscript {

/// Strings of scripts are UTF-16; the host speaks UTF-8. Ill-formed UTF-8 is read byte by byte as
/// Windows-1252; a lone half of a pair is written as U+FFFD.
std::u16string utf16(std::string_view utf8);
std::string utf8(std::u16string_view text);
/// Reads one code point and moves `at` behind it.
char32_t nextUtf8(std::string_view text, std::size_t& at);

/// The Windows-1252 byte of a character; 63 ("?") for one that it does not have.
unsigned char ansiOf(char16_t c);
char16_t fromAnsi(unsigned char byte);

char16_t upper(char16_t c);
char16_t lower(char16_t c);
std::u16string lowered(std::u16string_view text);
inline char lowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; }

/// Finds `what` in `in` from `from` on: linear whatever the two hold. npos when not found.
std::size_t findText(std::u16string_view in, std::u16string_view what, std::size_t from);
/// -1, 0, 1; without regard to letter case when `asText`.
int compare(std::u16string_view a, std::u16string_view b, bool asText);

/// Widens ASCII.
std::u16string wide(std::string_view ascii);
/// Narrows; characters beyond ASCII become "?".
std::string narrow(std::u16string_view text);

} // namespace vbscript
