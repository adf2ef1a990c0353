// SPDX-License-Identifier: Apache-2.0
#include "window/history/recuerdo_de_sucesos.h"

#include "window/controls/control.h"

#include <algorithm>
#include <limits>
#include <vector>

namespace kv {
namespace {

enum Parte { kPrimero, kUltimo, kVeces, kGravedad, kReconocida, kDonde, kQue, kPartes };

QString enUnRenglon(QString texto) {
    for (QChar& c : texto) {
        if (c == '\t' || c == '\n' || c == '\r') c = ' ';
    }
    return texto;
}

std::optional<Anotacion> leer(const QByteArray& renglon) {
    const QStringList partes = QString::fromUtf8(renglon).split('\t');
    if (partes.size() != kPartes) return std::nullopt;
    bool bien = true;
    const auto numero = [&](Parte cual, qint64 hasta) {
        bool es = false;
        const qint64 n = partes[cual].toLongLong(&es);
        bien = bien && es && n >= 0 && n <= hasta;
        return n;
    };
    Anotacion a;
    a.primero = numero(kPrimero, std::numeric_limits<qint64>::max());
    a.suceso.instante = numero(kUltimo, std::numeric_limits<qint64>::max());
    a.veces = static_cast<std::uint32_t>(numero(kVeces, std::numeric_limits<std::int32_t>::max()));
    a.gravedad = static_cast<Gravedad>(numero(kGravedad, static_cast<qint64>(Gravedad::Alarma)));
    a.reconocida = numero(kReconocida, 1) == 1;
    a.deAntes = DeAntes{deQt(partes[kDonde]), deQt(partes[kQue])};
    if (!bien || partes[kQue].isEmpty()) return std::nullopt;
    return a;
}

} // namespace

QByteArray comoRecuerdo(const LibroDeSucesos& libro, const Tablas& tablas) {
    const std::uint64_t hay = libro.siguiente() - libro.primera();
    QString todo;
    for (std::uint64_t n = libro.siguiente() - std::min<std::uint64_t>(hay, libro.kDeAntes);
         n < libro.siguiente(); ++n) {
        const Anotacion& a = libro[n];
        const QStringList partes{
            QString::number(a.primero),     QString::number(a.suceso.instante),
            QString::number(a.veces),       QString::number(static_cast<int>(a.gravedad)),
            a.reconocida ? "1" : "0",       enUnRenglon(enQt(lugarDe(a, tablas))),
            enUnRenglon(fraseDe(a, tablas))};
        todo += partes.join('\t') + '\n';
    }
    return todo.toUtf8();
}

void volverAPoner(LibroDeSucesos& libro, const QByteArray& recuerdo) {
    std::vector<Anotacion> lineas;
    for (const QByteArray& renglon : recuerdo.split('\n')) {
        if (auto a = leer(renglon.left(4 * libro.kTextoMaximo))) lineas.push_back(std::move(*a));
    }
    for (auto a = lineas.rbegin(); a != lineas.rend(); ++a) {
        if (!libro.anteponer(std::move(*a))) return;
    }
}

} // namespace kv
