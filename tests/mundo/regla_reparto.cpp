// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_reparto.h"

#include <algorithm>

namespace kv::mundo {
namespace {

constexpr std::int64_t kHastaConocerUs = 180'000'000;
constexpr std::int64_t kMinimoUs = 1'200'000'000;
constexpr double kHolgura = 0.35; // until the stations' habit is known, and beside other trouble

} // namespace

void ReglaDeReparto::alContestar(Indice bloque) {
    const Indice n = c_.motor.tablas.bloques[bloque].idConexion;
    if (n < cuentas_.size()) cuentas_[n].contestada = true;
}

void ReglaDeReparto::mirar() {
    cuentas_.resize(c_.conexiones());
    for (std::size_t n = 0; n < cuentas_.size(); ++n) {
        if (c_.lineas[n]->plan().aparte) mirar(n, cuentas_[n]);
    }
}

/// The time since the last look belongs to what the connection was doing then. An answer makes the
/// request that it answers, and the pause behind it, time of the living.
void ReglaDeReparto::mirar(std::size_t n, Cuenta& k) {
    const ConexionIP& c = c_.conexion(n);
    const std::int64_t ahora = c_.ahoraUs();
    const bool vale = k.desdeUs >= kHastaConocerUs && c_.supervisada(n) &&
                      c_.motor.turnos.pausa() == static_cast<double>(c_.plan.pausaMs);
    if (c.turno == k.visto && !k.contestada) return;
    const std::int64_t us = ahora - k.desdeUs;
    const bool perdido = (k.visto == EstadoDeTurno::Esperando && !k.contestada) ||
                         (k.visto == EstadoDeTurno::EnPausa && k.pausaDe == De::Muertos);
    if (vale) k.totalUs += us;
    if (vale && perdido) k.perdidoUs += us;
    if (c.turno == EstadoDeTurno::EnPausa)
        k.pausaDe = k.contestada && !c.retenida ? De::Vivos : De::Muertos;
    k.contestada = false;
    k.visto = c.turno;
    k.desdeUs = ahora;
}

/// Stations that say what they answer are asked once a rest, without retries. Where they do not,
/// the described times are allowed, in which each block uses up its tries and rests; or, where it
/// is more, what a line costs that has to fall silent after each try, which makes the rest longer.
double ReglaDeReparto::admitido(const PlanDeConexion& p) const {
    if (p.muertos == 0) return kHolgura;
    const auto pausa = static_cast<double>(c_.plan.pausaMs);
    const auto tiempoFuera = static_cast<double>(p.tiempoFueraMs);
    const auto descanso = static_cast<double>(p.reconexionMs);
    const auto parte = [descanso](double coste) { return coste / (descanso + coste); };
    if (p.habitos.front() <= Habito::RepiteSinOrden) return parte(tiempoFuera + pausa) + kHolgura;
    const double descrita = p.muertos * parte((p.reintentos + 1) * tiempoFuera + pausa);
    const double demora = static_cast<double>(p.demoraUs) / 1000;
    const double callada = parte(6 * tiempoFuera + 2 * (pausa + demora));
    return std::min(1.0, std::max(descrita, callada)) + kHolgura;
}

void ReglaDeReparto::alFinal() {
    for (std::size_t n = 0; n < cuentas_.size(); ++n) {
        const Cuenta& k = cuentas_[n];
        if (k.totalUs < kMinimoUs) continue;
        // Where the stations do not say what they answer the cost of quiet lines has no close bound
        // here; the scenes measure it.
        if (c_.lineas[n]->plan().habitos.front() > Habito::RepiteSinOrden) continue;
        const double parte = static_cast<double>(k.perdidoUs) / static_cast<double>(k.totalUs);
        c_.exigir(parte <= admitido(c_.lineas[n]->plan()), "the living have their share", n);
    }
}

} // namespace kv::mundo
