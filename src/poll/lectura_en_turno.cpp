// SPDX-License-Identifier: Apache-2.0
#include "poll/lectura_en_turno.h"

namespace kv {
namespace {

// So many waiting blocks are looked at for one whose answer could be told apart, before the first
// in turn is asked all the same.
constexpr int kMiradas = 16;

} // namespace

LecturaEnTurno lecturaEnTurno(const Tablas& tablas, const Turnos& turnos, Indice conexion) {
    const ConexionIP& c = tablas.conexiones[conexion];
    const auto cuenta = [&](const BloqueLectura& b) {
        return turnos.permiso(conexion, registroDe(b.tramaSolicitud)).cuenta;
    };
    if (c.bloqueDePrueba != kNinguno) {
        const BloqueLectura& b = tablas.bloques[c.bloqueDePrueba];
        if (b.pendiente && b.sePuedePedir()) return {b.indice, cuenta(b)};
    }
    const std::size_t primera = tablas.siguientePorPolear(conexion);
    if (primera == ConjuntoDePosiciones::kNinguna) return {};
    if (c.debidas.limpia()) return {c.bloques[primera], true};
    std::size_t posicion = primera;
    for (int miradas = 0; miradas < kMiradas; ++miradas) {
        const BloqueLectura& b = tablas.bloques[c.bloques[posicion]];
        if (cuenta(b)) return {b.indice, true};
        if (b.saltado) break;
        posicion = tablas.siguientePorPolear(conexion, posicion);
        if (posicion == primera) break;
    }
    return {c.bloques[primera], false};
}

} // namespace kv
