// SPDX-License-Identifier: Apache-2.0
#include "poll/reloj_de_bloques.h"

#include "plant/duraciones.h"
#include "text/numeros.h"
#include "view/columnas.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace kv {

RelojDeBloques::RelojDeBloques(Bucle& bucle, Tablas& tablas, Publicacion& publicacion,
                               Sucesos& sucesos, Vista& vista, Sello& sello,
                               std::function<void(Indice)> alTocarle)
    : tablas_(tablas), publicacion_(publicacion), sucesos_(sucesos), vista_(vista), sello_(sello),
      cola_(bucle.temporizadores()), alTocarle_(std::move(alTocarle)) {}

void RelojDeBloques::agregar(Indice bloque, double scanSegundos) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.scanSegundos = b.scanConfigurado = scanSegundos;
    b.scanMs = milisegundos(scanSegundos);
    b.habilitadoPorRespuestas = !tablas_.estacionDe(b).muda;
    Timer1_Bloques_.emplace_back(cola_, AlTicar::a<&RelojDeBloques::tic>(*this, bloque))
        .tocarUnaVez();
}

void RelojDeBloques::retirar(Indice bloque) {
    encender(bloque, false, 0);
    parar(bloque);
    tablas_.habilitar(bloque, true);
    tablas_.ponerPendiente(bloque, false);
}

void RelojDeBloques::mostrar(const BloqueLectura& b, std::size_t columna, std::string_view texto) {
    vista_.lstViewEstadoDeBloques.poner(b.filaBloque, columna, texto);
}

void RelojDeBloques::tic(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    const bool descansaba = !b.habilitadoPorRespuestas;
    if (b.activo)
        sucesos_.decir({.que = descansaba ? Que::FinDelDescanso : Que::TicDeBloque,
                        .conexion = b.idConexion,
                        .bloque = bloque});
    if (descansaba) habilitar(b);
    if (!b.activo) return;
    b.sondeo = descansaba; // after a rest it is asked once
    tablas_.ponerPendiente(bloque, true);
    alTocarle_(bloque);
}

void RelojDeBloques::habilitar(BloqueLectura& b) {
    tablas_.habilitar(b.indice, true);
    sucesos_.decir({.que = Que::BloqueHabilitado, .conexion = b.idConexion, .bloque = b.indice});
    mostrarHabilitado(b);
}

void RelojDeBloques::mostrarHabilitado(const BloqueLectura& b) {
    mostrar(b, de_bloques::kHabilitado, "Habilitado desde " + sello_.ahora());
}

void RelojDeBloques::empezar(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.sondeo = b.enDuda = b.saltado = false;
    if (!b.habilitadoPorRespuestas) habilitar(b);
    if (!b.activoPorDefecto && !b.activo) return;
    publicacion_.ponerActivo(bloque, true);
    pedir(bloque);
}

void RelojDeBloques::parar(Indice bloque) {
    Timer1_Bloques_[bloque].habilitar(false);
    tablas_.bloques[bloque].reintentos = 0;
}

void RelojDeBloques::pedir(Indice bloque) {
    if (tablas_.bloques[bloque].habilitadoPorRespuestas) Timer1_Bloques_[bloque].habilitar(false);
    tablas_.ponerPendiente(bloque, true);
}

void RelojDeBloques::salir(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.lecturaForzada = b.forzado;
}

void RelojDeBloques::contestar(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.reintentos = 0;
    b.sondeo = b.enDuda = false;
    tablas_.ponerPendiente(bloque, false);
    Timer1_Bloques_[bloque].rearmar(b.scanMs, tablas_.conexiones[b.idConexion].recibidoUs);
    if (b.forzado && b.lecturaForzada) avanzarForzado(b);
}

void RelojDeBloques::avanzarForzado(BloqueLectura& b) {
    ++b.forzadoContador;
    if (b.forzadoContador < b.forzadoVeces) {
        // The text counts the first answer as the second, as it always did.
        mostrar(b, de_bloques::kNota,
                "FORZADO POR NIVEL: Recepcion " + textoDeNumero(b.forzadoContador + 1) + " de " +
                    textoDeNumero(b.forzadoVeces));
        if (b.scanMs == 0) pedir(b.indice);
        return;
    }
    b.forzado = false;
    if (!b.activoSinForzar) publicacion_.ponerActivo(b.indice, false);
    mostrar(b, de_bloques::kNota, "FORZADO POR NIVEL OK");
}

void RelojDeBloques::fallar(Indice bloque, FinDeIntento como) {
    BloqueLectura& b = tablas_.bloques[bloque];
    const std::int64_t ahora = sello_.reloj().monotonicoMs();
    b.fallidos.sumar(como, ahora);
    tablas_.estacionDe(b).fallidos.sumar(como, ahora);
}

void RelojDeBloques::olvidarFallidos(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (b.fallidos.desde.hay()) b.fallidos = {};
    if (Estacion& e = tablas_.estacionDe(b); e.fallidos.desde.hay()) e.fallidos = {};
}

std::int64_t RelojDeBloques::faltanMs(Indice bloque) const {
    const Temporizador& t = Timer1_Bloques_[bloque];
    if (!t.habilitado() || t.intervalo() == 0) return -1;
    return std::max<std::int64_t>(0, t.venceMs() - sello_.reloj().monotonicoMs());
}

bool RelojDeBloques::dudar(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    return std::exchange(b.enDuda, true) && b.activo;
}

bool RelojDeBloques::reintentar(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (b.sondeo || b.reintentos >= b.reintentosMax) return false;
    b.reintentos += 1;
    return true;
}

void RelojDeBloques::descansar(Indice bloque, std::int64_t ms) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.reintentos = 0;
    b.enDuda = false;
    tablas_.habilitar(bloque, false);
    Timer1_Bloques_[bloque].rearmar(ms);
    mostrar(b, de_bloques::kHabilitado,
            "Deshabilitado por " + textoDeNumero(static_cast<double>(b.reconeccionMs) / 1000) +
                "(s) Desde " + sello_.ahora());
    sucesos_.decir({.que = Que::BloqueDeshabilitado, .conexion = b.idConexion, .bloque = bloque});
}

void RelojDeBloques::callar(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    tablas_.habilitar(bloque, false);
    parar(bloque);
    b.enDuda = false;
    mostrar(b, de_bloques::kHabilitado, "Estacion sin respuesta desde " + sello_.ahora());
}

void RelojDeBloques::sondear(Indice bloque, std::int64_t ms) {
    tablas_.habilitar(bloque, false);
    Timer1_Bloques_[bloque].rearmar(ms);
}

bool RelojDeBloques::volver(Indice bloque) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.sondeo = false;
    if (b.habilitadoPorRespuestas) return false;
    tablas_.habilitar(bloque, true);
    if (!b.activo) return true;
    if (b.pendiente) {
        Timer1_Bloques_[bloque].habilitar(false);
    } else {
        Timer1_Bloques_[bloque].rearmar(b.scanMs);
    }
    mostrarHabilitado(b);
    return true;
}

void RelojDeBloques::forzar(Indice bloque, double veces, std::string_view nota) {
    BloqueLectura& b = tablas_.bloques[bloque];
    if (!b.forzado) b.activoSinForzar = b.activo;
    b.forzado = true;
    b.lecturaForzada = false; // an answer that is already on its way does not count
    b.forzadoVeces = static_cast<std::uint32_t>(std::clamp(std::ceil(veces), 1.0, 4e9));
    b.forzadoContador = 0;
    mostrar(b, de_bloques::kNota, nota);
}

void RelojDeBloques::encender(Indice bloque, bool activo, std::uint8_t ordenante) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.ordenante = ordenante;
    b.ordenDesde = Momento(sello_.reloj().monotonicoMs());
    if (b.forzado) mostrar(b, de_bloques::kNota, "");
    b.forzado = b.lecturaForzada = false;
    publicacion_.ponerActivo(bloque, activo);
    if (activo) return;
    if (b.habilitadoPorRespuestas) Timer1_Bloques_[bloque].habilitar(false);
    b.reintentos = 0;
    b.enDuda = false;
}

void RelojDeBloques::cambiarScan(Indice bloque, double segundos) {
    BloqueLectura& b = tablas_.bloques[bloque];
    b.scanSegundos = segundos;
    b.scanMs = milisegundos(segundos);
    vista_.lstViewEstadoDeBloques.cambio(b.filaBloque);
}

} // namespace kv
