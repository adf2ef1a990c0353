// SPDX-License-Identifier: Apache-2.0
#include "window/lists/estado_de_fila.h"

#include "view/columnas.h"
#include "window/controls/colores.h"
#include "window/controls/control.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPalette>
#include <QPixmap>

#include <array>

namespace kv {
namespace {

constexpr int kLado = 16;

/// `elegida`: for a chosen row, whose colour may be near the sign's: it stands on light ground
/// there.
QPixmap dibujar(EstadoDeFila estado, int lado, bool elegida) {
    QPixmap lienzo(lado, lado);
    lienzo.fill(Qt::transparent);
    QPainter p(&lienzo);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(lado / double{kLado}, lado / double{kLado});
    if (elegida) {
        p.setPen(Qt::NoPen);
        p.setBrush(Qt::white);
        p.drawEllipse(QRectF(0, 0, kLado, kLado));
    }
    switch (estado) {
    case EstadoDeFila::Bien: // a full disc
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0x2E, 0x9E, 0x44));
        p.drawEllipse(QRectF(3, 3, 10, 10));
        break;
    case EstadoDeFila::Mal: // a cross
        p.setPen(QPen(QColor(0xD6, 0x2D, 0x2D), 3, Qt::SolidLine, Qt::RoundCap));
        p.drawLine(QPointF(4, 4), QPointF(12, 12));
        p.drawLine(QPointF(12, 4), QPointF(4, 12));
        break;
    case EstadoDeFila::Descansa: // two bars
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0xC8, 0x74, 0x00));
        p.drawRect(QRectF(3.5, 3, 3.5, 10));
        p.drawRect(QRectF(9, 3, 3.5, 10));
        break;
    case EstadoDeFila::Desconectada: // a ring with a stroke through it
        p.setPen(QPen(QColor(0xD6, 0x2D, 0x2D), 2));
        p.drawEllipse(QRectF(3, 3, 10, 10));
        p.drawLine(QPointF(4.5, 11.5), QPointF(11.5, 4.5));
        break;
    case EstadoDeFila::Apagada: // an empty ring
        p.setPen(QPen(QColor(0x8A, 0x8A, 0x8A), 1.6));
        p.drawEllipse(QRectF(3.5, 3.5, 9, 9));
        break;
    case EstadoDeFila::Vieja: // a clock
        p.setPen(QPen(QColor(0xC0, 0x6A, 0x00), 1.8));
        p.drawEllipse(QRectF(2.5, 2.5, 11, 11));
        p.drawPolyline(QList<QPointF>{{8, 4.5}, {8, 8}, {11, 9.5}});
        break;
    default:
        break;
    }
    return lienzo;
}

EstadoDeFila deConexion(const Lista& lista, std::uint32_t fila) {
    const std::string texto = lista.texto(fila, de_conexiones::kEstado);
    if (texto.empty()) return EstadoDeFila::Ninguno;
    return texto == de_conexiones::kConectado ? EstadoDeFila::Bien : EstadoDeFila::Desconectada;
}

EstadoDeFila deVariable(const Lista& lista, std::uint32_t fila) {
    if (!lista.tildada(fila)) return EstadoDeFila::Apagada;
    const std::string texto = lista.texto(fila, de_variables::kEstado);
    if (texto == "OK") return EstadoDeFila::Bien;
    return texto == "BAD" ? EstadoDeFila::Mal : EstadoDeFila::Descansa;
}

EstadoDeFila deBloque(const Lista& lista, std::uint32_t fila) {
    return lista.tildada(fila) ? EstadoDeFila::Bien : EstadoDeFila::Apagada;
}

std::string tal(const Lista& lista, std::uint32_t fila, std::size_t columna) {
    return lista.texto(fila, columna);
}

/// What is switched off keeps its state and is not looked at any more: its text must not say less
/// than its sign.
std::string conApagado(const Lista& lista, std::uint32_t fila, std::size_t columna) {
    if (lista.tildada(fila)) return tal(lista, fila, columna);
    return deQt(QCoreApplication::translate("kv::Form1", "%1 (apagado)")
                    .arg(enQt(lista.texto(fila, columna))));
}

std::string textoDeVariable(const Lista& lista, std::uint32_t fila, std::size_t columna) {
    return columna == de_variables::kEstado ? conApagado(lista, fila, columna)
                                            : tal(lista, fila, columna);
}

/// A scan of 0 is no pace: it says when the block is read all the same.
std::string textoDeBloque(const Lista& lista, std::uint32_t fila, std::size_t columna) {
    if (columna == de_bloques::kScan && lista.texto(fila, columna) == "0")
        return deQt(QCoreApplication::translate("kv::Form1", "0: al conectar y al forzar"));
    return columna == de_bloques::kHabilitado ? conApagado(lista, fila, columna)
                                              : tal(lista, fila, columna);
}

} // namespace

QIcon senalDeEstado(EstadoDeFila estado) {
    static const auto todas = [] {
        std::array<QIcon, kEstadosDeFila> iconos;
        for (std::size_t i = 1; i < iconos.size(); ++i) {
            for (const int lado : {kLado, kLado * 2, kLado * 3})
                // On a chosen row the toolkit would tint it.
                for (const QIcon::Mode modo : {QIcon::Normal, QIcon::Selected})
                    iconos[i].addPixmap(
                        dibujar(static_cast<EstadoDeFila>(i), lado, modo == QIcon::Selected), modo);
        }
        return iconos;
    }();
    return todas[static_cast<std::size_t>(estado)];
}

QColor colorDeEstado(EstadoDeFila estado, const QPalette& paleta) {
    const bool oscura = esOscura(paleta);
    switch (estado) {
    case EstadoDeFila::Mal:
    case EstadoDeFila::Desconectada:
        return colorDeBad(paleta);
    case EstadoDeFila::Descansa:
    case EstadoDeFila::Vieja:
        return oscura ? QColor(0xFF, 0xC1, 0x66) : QColor(0x8A, 0x52, 0x00);
    case EstadoDeFila::Apagada:
        // Paler than the rest, and still to be read: the toolkit's own colour for it is not.
        return sobrePapel(paleta, paleta.color(QPalette::Text), 0.65F);
    default:
        return {};
    }
}

const FormaDeLista& formaDeSockets() {
    static const FormaDeLista forma{
        .conTildes = false,
        .columnaDeEstado = de_conexiones::kEstado,
        .columnaDeCifras = -1,
        .estado = deConexion,
        .texto = tal,
        .especies = {Especie::Numero, Especie::Texto, Especie::Texto, Especie::Texto,
                     Especie::Numero, Especie::Texto, Especie::Texto, Especie::Texto},
        .filtrables = {de_conexiones::kPuerto, de_conexiones::kDireccion, de_conexiones::kEstado,
                       de_conexiones::kEstaciones},
        .anchos = {2, 17, 58, 26, 2, 2, 2, 2}};
    return forma;
}

const FormaDeLista& formaDeVariables() {
    static const FormaDeLista forma{
        .conTildes = true,
        .columnaDeEstado = de_variables::kEstado,
        .columnaDeCifras = de_variables::kValor,
        .estado = deVariable,
        .texto = textoDeVariable,
        .especies = {Especie::Direccion, Especie::Numero, Especie::Texto, Especie::Fecha,
                     Especie::Texto},
        .filtrables = {de_variables::kDireccion, de_variables::kEstado, de_variables::kNombre},
        .anchos = {14, 8, 38, 24, 22}};
    return forma;
}

const FormaDeLista& formaDeBloques() {
    static const FormaDeLista forma{
        .conTildes = true,
        .columnaDeEstado = de_bloques::kHabilitado,
        .columnaDeCifras = -1,
        .estado = deBloque,
        .texto = textoDeBloque,
        .especies = {Especie::Direccion, Especie::Numero, Especie::Numero, Especie::Texto,
                     Especie::Texto},
        .filtrables = {de_bloques::kDireccion, de_bloques::kNivel, de_bloques::kHabilitado},
        .anchos = {14, 5, 5, 60, 30}};
    return forma;
}

} // namespace kv
