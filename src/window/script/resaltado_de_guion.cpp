// SPDX-License-Identifier: Apache-2.0
#include "window/script/resaltado_de_guion.h"

#include "window/controls/colores.h"

#include <QFont>
#include <QPalette>

namespace kv {
namespace {

constexpr int kLineaMasLarga = 5000; // nobody reads more; laying out its colours takes seconds

} // namespace

ResaltadoDeGuion::ResaltadoDeGuion(QTextDocument* documento, const QPalette& paleta)
    : QSyntaxHighlighter(documento) {
    // Not by colour alone: what is not code leans, what the language reserves is bold.
    formato(ClaseDeTramo::Palabra).setFontWeight(QFont::Bold);
    formato(ClaseDeTramo::Comentario).setFontItalic(true);
    elegirColores(paleta);
}

void ResaltadoDeGuion::elegirColores(const QPalette& paleta) {
    const bool oscura = esOscura(paleta);
    const auto color = [&](ClaseDeTramo clase, QRgb sobreClaro, QRgb sobreOscuro) {
        formato(clase).setForeground(QColor(oscura ? sobreOscuro : sobreClaro));
    };
    color(ClaseDeTramo::Palabra, 0x0B3D91, 0x82AAFF);
    color(ClaseDeTramo::Variable, 0x7A3E00, 0xFFB86C);
    color(ClaseDeTramo::Texto, 0x9C1C1C, 0xF28B82);
    color(ClaseDeTramo::Numero, 0x6A1B9A, 0xC792EA);
    color(ClaseDeTramo::Comentario, 0x2E6B2E, 0x8BC48A);
    rehighlight();
}

void ResaltadoDeGuion::highlightBlock(const QString& linea) {
    if (linea.size() > kLineaMasLarga) return;
    const QStringView v(linea);
    for (const TramoDeGuion& t : tramosDeGuion({v.utf16(), static_cast<std::size_t>(v.size())}))
        setFormat(static_cast<int>(t.desde), static_cast<int>(t.largo), formato(t.clase));
}

} // namespace kv
