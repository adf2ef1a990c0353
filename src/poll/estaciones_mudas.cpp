// SPDX-License-Identifier: Apache-2.0
#include "poll/estaciones_mudas.h"

#include "plant/valor_y_estado.h"

#include <algorithm>

namespace kv {
EstacionesMudas::EstacionesMudas(Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                                 RelojDeBloques& reloj, Sucesos& sucesos)
    : tablas_(tablas), turnos_(turnos), publicacion_(publicacion), reloj_(reloj),
      sucesos_(sucesos) {}

void EstacionesMudas::alAgotar(Indice bloque, bool estabaOK) {
    Estacion& e = tablas_.estacionDe(tablas_.bloques[bloque]);
    if (e.muda) {
        reloj_.parar(bloque);
        return turnarSondeo(e);
    }
    if (limite_ < 1 || ++e.agotados < limite_) return;
    const auto otro = std::find_if(e.bloques.begin(), e.bloques.end(), [&](Indice i) {
        const BloqueLectura& x = tablas_.bloques[i];
        return x.estado == kOk && x.sePuedePedir();
    });
    if (otro == e.bloques.end() || (estabaOK && e.agotados > limite_)) return enmudecer(e, bloque);
    // The verdict is this one's, and need not wait for its scan.
    reloj_.pedir(*otro);
}

void EstacionesMudas::callar(Indice bloque) {
    reloj_.callar(bloque);
    publicacion_.sinRespuesta(bloque, FraseDeEstado::EstacionMuda);
}

void EstacionesMudas::enmudecer(Estacion& e, Indice salvo) {
    e.muda = true;
    // Of a lost link it has not answered anything since: no news, but for whoever looks on.
    const bool yaDicha = std::exchange(e.dichaMuda, true);
    for (const Indice i : e.bloques) {
        if (i != salvo && tablas_.bloques[i].activo) callar(i);
    }
    reloj_.parar(salvo);
    turnarSondeo(e);
    sucesos_.decir({.que = Que::EstacionMuda,
                    .detalle = static_cast<std::int16_t>(yaDicha),
                    .conexion = tablas_.bloques[salvo].idConexion,
                    .bloque = salvo});
}

void EstacionesMudas::turnarSondeo(Estacion& e) {
    // Each has its turn: the register that asks may be one that the station does not have.
    for (std::size_t k = 0; k < e.bloques.size(); ++k) {
        e.sondea = (e.sondea + 1) % static_cast<std::uint32_t>(e.bloques.size());
        const BloqueLectura& b = tablas_.bloques[e.bloques[e.sondea]];
        if (b.activo && b.tieneTrama) return reloj_.sondear(b.indice, turnos_.descanso(b));
    }
}

void EstacionesMudas::alContestar(Indice bloque) {
    Estacion& e = tablas_.estacionDe(tablas_.bloques[bloque]);
    e.agotados = 0;
    reloj_.olvidarFallidos(bloque);
    reloj_.volver(bloque); // also when it was a write that was answered
    if (!e.dichaMuda) return;
    e.dichaMuda = false;
    if (std::exchange(e.muda, false)) {
        for (const Indice i : e.bloques) {
            if (reloj_.volver(i) && tablas_.bloques[i].activo) reloj_.pedir(i);
        }
    }
    sucesos_.decir({.que = Que::EstacionContesta,
                    .conexion = tablas_.bloques[bloque].idConexion,
                    .bloque = bloque});
}

void EstacionesMudas::alCambiarActivo(Indice bloque) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    Estacion& e = tablas_.estacionDe(b);
    if (!e.muda) return;
    if (b.activo && b.habilitadoPorRespuestas && !b.sondeo) callar(bloque);
    // The block that asked for all may have been switched off, or no block could ask until now.
    const bool alguien = std::any_of(e.bloques.begin(), e.bloques.end(), [&](Indice i) {
        return tablas_.bloques[i].activo &&
               (reloj_.enMarcha(i) || tablas_.bloques[i].habilitadoPorRespuestas);
    });
    if (!alguien) turnarSondeo(e);
}

void EstacionesMudas::olvidar(Indice conexion) {
    auto& estaciones = tablas_.conexiones[conexion].estaciones;
    for (std::size_t k = 0; k < estaciones.limiteSuperior(); ++k) {
        estaciones[k].agotados = 0;
        estaciones[k].muda = false;
    }
}

} // namespace kv
