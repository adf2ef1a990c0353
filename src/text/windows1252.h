// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

namespace kv {

/// Field files and the client's wire are Windows-1252; text in memory is UTF-8. The five bytes that
/// Windows-1252 leaves undefined become the control characters of the same number, so any sequence
/// of bytes survives the way in and out unchanged.
[[nodiscard]] std::string utf8DesdeWindows1252(std::string_view bytes);

/// The way out. A character that Windows-1252 does not have becomes "?"; bytes that are not valid
/// UTF-8 pass as they are. Linear in the text's length.
[[nodiscard]] std::string windows1252DesdeUtf8(std::string_view texto);

/// Whether `texto` is well-formed UTF-8 with at least one character outside ASCII: the mark of a
/// file that was saved in the wrong encoding.
[[nodiscard]] bool pareceUtf8(std::string_view texto);

/// Whether a file begins as editors begin one that they save as UTF-16.
[[nodiscard]] inline bool empiezaComoUtf16(std::string_view bytes) {
    return bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF");
}

} // namespace kv
