// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QPalette>

namespace kv {

/// Whether the palette's paper is dark.
[[nodiscard]] inline bool esOscura(const QPalette& paleta) {
    return paleta.color(QPalette::Base).lightness() < 128;
}

/// `encima` over the palette's paper, `parte` of it (0 to 1).
[[nodiscard]] inline QColor sobrePapel(const QPalette& paleta, const QColor& encima, float parte) {
    const QColor papel = paleta.color(QPalette::Base);
    const auto mezcla = [parte](float a, float b) { return a + (b - a) * parte; };
    return QColor::fromRgbF(mezcla(papel.redF(), encima.redF()),
                            mezcla(papel.greenF(), encima.greenF()),
                            mezcla(papel.blueF(), encima.blueF()));
}

/// Of what is BAD: text or sign, on this palette's paper.
[[nodiscard]] inline QColor colorDeBad(const QPalette& paleta) {
    return esOscura(paleta) ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0x1C, 0x1C);
}

} // namespace kv
