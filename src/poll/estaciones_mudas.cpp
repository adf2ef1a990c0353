#include "poll/estaciones_mudas.h"

#include "plant/bases.h"
#include "text/numeros.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::size_t kHabilitado = 3; // column of the blocks list
constexpr std::string_view kSinRespuesta = "BAD - Estacion sin respuesta";

std::string nombreDe(const ConexionIP& c, const Estacion& e) {
    return "[PLC " + textoDeNumero(e.numero) + " - Indice " + textoDeNumero(e.indice) + "] " +
           c.ip + ":" + c.puertoTCP;
}

} // namespace

EstacionesMudas::EstacionesMudas(Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
                                 Vista& vista, Sello& sello, ArchivoLog& log,
                                 ArregloDeTemporizadores& Timer1_Bloques)
    : tablas_(tablas), turnos_(turnos), publicacion_(publicacion), vista_(vista), sello_(sello),
      log_(log), Timer1_Bloques_(Timer1_Bloques) {}

void EstacionesMudas::alAgotar(Indice bloque, bool estabaOK) {
    const BloqueLectura& b = tablas_.bloques[bloque];
    Estacion& e = tablas_.estacionDe(b);
    if (e.muda) {
        Timer1_Bloques_[bloque].habilitar(false);
        return turnarSondeo(e);
    }
    if (limite_ < 1 || ++e.agotados < limite_) return;
    const auto otro = std::find_if(e.bloques.begin(), e.bloques.end(), [&](Indice i) {
        const BloqueLectura& x = tablas_.bloques[i];
        return x.estado == kOk && x.activo && x.habilitadoPorRespuestas && x.tieneTrama;
    });
    if (otro == e.bloques.end() || (estabaOK && e.agotados > limite_)) return enmudecer(e, bloque);
    // The verdict is this one's, and need not wait for its scan.
    tablas_.ponerPendiente(*otro, true);
}

void EstacionesMudas::callar(BloqueLectura& b) {
    tablas_.habilitar(b.indice, false);
    Timer1_Bloques_[b.indice].habilitar(false);
    b.reintentos = 0;
    b.enDuda = false;
    publicacion_.sinRespuesta(b.indice, kSinRespuesta);
    vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kHabilitado,
                                        "Estacion sin respuesta desde " + sello_.ahora());
}

void EstacionesMudas::enmudecer(Estacion& e, Indice salvo) {
    const ConexionIP& c = tablas_.conexiones[tablas_.bloques[salvo].idConexion];
    const std::string quien = nombreDe(c, e);
    e.muda = true;
    for (const Indice i : e.bloques) {
        if (i != salvo && tablas_.bloques[i].activo) callar(tablas_.bloques[i]);
    }
    Timer1_Bloques_[salvo].habilitar(false);
    turnarSondeo(e);
    vista_.txtTramas.agregar(sello_.ahora() + " Estacion sin respuesta " + quien + "\r\n");
    log_.escribirLog("DRIVER", "Estacion sin respuesta", quien);
}

void EstacionesMudas::turnarSondeo(Estacion& e) {
    // Each has its turn: the register that asks may be one that the station does not have.
    for (std::size_t k = 0; k < e.bloques.size(); ++k) {
        e.sondea = (e.sondea + 1) % static_cast<std::uint32_t>(e.bloques.size());
        const BloqueLectura& b = tablas_.bloques[e.bloques[e.sondea]];
        if (!b.activo || !b.tieneTrama) continue;
        tablas_.habilitar(b.indice, false);
        return Timer1_Bloques_[b.indice].rearmar(turnos_.descanso(b));
    }
}

void EstacionesMudas::alContestar(Indice bloque) {
    Estacion& e = tablas_.estacionDe(tablas_.bloques[bloque]);
    e.agotados = 0;
    volver(tablas_.bloques[bloque]); // also when it was a write that was answered
    if (!e.muda) return;
    e.muda = false;
    for (const Indice i : e.bloques) {
        BloqueLectura& b = tablas_.bloques[i];
        if (volver(b) && b.activo) tablas_.ponerPendiente(i, true);
    }
    const std::string quien = nombreDe(tablas_.conexiones[tablas_.bloques[bloque].idConexion], e);
    vista_.txtTramas.agregar(sello_.ahora() + " Estacion contesta " + quien + "\r\n");
    log_.escribirLog("DRIVER", "Estacion contesta", quien);
}

/// Ends a block's rest. False when it did not rest.
bool EstacionesMudas::volver(BloqueLectura& b) {
    b.sondeo = false;
    if (b.habilitadoPorRespuestas) return false;
    tablas_.habilitar(b.indice, true);
    if (!b.activo) return true;
    Timer1_Bloques_[b.indice].rearmar(b.scanMs);
    vista_.lstViewEstadoDeBloques.poner(b.filaBloque, kHabilitado,
                                        "Habilitado desde " + sello_.ahora());
    return true;
}

void EstacionesMudas::alCambiarActivo(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    Estacion& e = tablas_.estacionDe(b);
    if (!e.muda) return;
    if (b.activo && b.habilitadoPorRespuestas && !b.sondeo) callar(b);
    // Whoever asked for all may have been switched off, or nobody could until now.
    const bool alguien = std::any_of(e.bloques.begin(), e.bloques.end(), [&](Indice i) {
        return tablas_.bloques[i].activo &&
               (Timer1_Bloques_[i].habilitado() || tablas_.bloques[i].habilitadoPorRespuestas);
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
