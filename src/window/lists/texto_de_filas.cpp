// SPDX-License-Identifier: Apache-2.0
#include "window/lists/texto_de_filas.h"

#include "text/numeros.h"

#include <QAbstractItemModel>
#include <QRegularExpression>

#include <cmath>

namespace kv {
namespace {

constexpr unsigned kBitsDeRegistro = 16;
constexpr unsigned kBitsPorGrupo = 4;

QString comoCampo(QString texto, QChar separador) {
    static const QRegularExpression partida("[\"\r\n\t]");
    if (separador == '\t') return texto.replace(partida, " ");
    if (!texto.contains(separador) && !texto.contains(partida)) return texto;
    return '"' + texto.replace('"', "\"\"") + '"';
}

} // namespace

std::string enBase(std::string texto, Base base) {
    const auto numero = base == Base::Decimal ? std::nullopt : numeroDeTexto(texto);
    if (!numero || *numero < 0 || *numero > UINT32_MAX || std::floor(*numero) != *numero)
        return texto;
    const auto valor = static_cast<std::uint32_t>(*numero);
    const unsigned bits = valor >> kBitsDeRegistro == 0 ? kBitsDeRegistro : 2 * kBitsDeRegistro;
    texto.clear();
    for (unsigned b = bits; b > 0;) {
        b -= kBitsPorGrupo;
        const unsigned grupo = valor >> b & 0xFU;
        if (base == Base::Hexadecimal) {
            texto += "0123456789ABCDEF"[grupo];
            continue;
        }
        if (!texto.empty()) texto += ' ';
        for (unsigned i = kBitsPorGrupo; i-- > 0;)
            texto += (grupo >> i & 1U) != 0 ? '1' : '0';
    }
    return texto;
}

QString textoDeFilas(const QAbstractItemModel& modelo, const QList<int>& filas,
                     const QList<int>& columnas, QChar separador) {
    QString todo;
    const auto renglon = [&](const auto& celda) {
        for (qsizetype c = 0; c < columnas.size(); ++c) {
            if (c > 0) todo += separador;
            todo += comoCampo(celda(columnas[c]), separador);
        }
        todo += separador == '\t' ? "\n" : "\r\n";
    };
    renglon([&](int c) { return modelo.headerData(c, Qt::Horizontal).toString(); });
    for (const int f : filas)
        renglon([&](int c) { return modelo.index(f, c).data().toString(); });
    return todo;
}

} // namespace kv
