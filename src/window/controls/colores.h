// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QColor>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace kv {

// Contrast as the guidelines for accessible contents count it, 1 to 21.
inline constexpr double kContrasteDeTexto = 4.5;
inline constexpr double kContrasteDeSigno = 3;

[[nodiscard]] inline double luz(const QColor& color) {
    const auto lineal = [](double x) {
        return x <= 0.03928 ? x / 12.92 : std::pow((x + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * lineal(color.redF()) + 0.7152 * lineal(color.greenF()) +
           0.0722 * lineal(color.blueF());
}
[[nodiscard]] inline double contraste(const QColor& a, const QColor& b) {
    constexpr double kBruma = 0.05; // light that falls on the screen
    return (std::max(luz(a), luz(b)) + kBruma) / (std::min(luz(a), luz(b)) + kBruma);
}

/// `encima` over `papel`, `parte` of it (0 to 1), and of that as much as it is opaque.
[[nodiscard]] inline QColor mezcla(const QColor& papel, const QColor& encima, float parte) {
    const float cuanto = parte * encima.alphaF();
    const auto uno = [cuanto](float a, float b) { return a + (b - a) * cuanto; };
    return QColor::fromRgbF(uno(papel.redF(), encima.redF()), uno(papel.greenF(), encima.greenF()),
                            uno(papel.blueF(), encima.blueF()));
}

/// Whether the palette's paper is dark.
[[nodiscard]] inline bool esOscura(const QPalette& paleta) {
    return paleta.color(QPalette::Base).lightness() < 128;
}

/// `encima` over the palette's paper, `parte` of it (0 to 1).
[[nodiscard]] inline QColor sobrePapel(const QPalette& paleta, const QColor& encima, float parte) {
    return mezcla(paleta.color(QPalette::Base), encima, parte);
}

/// Of what is BAD: text or sign, on this palette's paper.
[[nodiscard]] inline QColor colorDeBad(const QPalette& paleta) {
    return esOscura(paleta) ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0x1C, 0x1C);
}

} // namespace kv
