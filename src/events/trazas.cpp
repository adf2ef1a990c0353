// SPDX-License-Identifier: Apache-2.0
#include "events/trazas.h"

#include <algorithm>
#include <vector>

namespace kv {
namespace {

/// The steps of writes have a box of their own besides: what of theirs is in another.
Caja deOtra(const Suceso& s) {
    const bool paso = s.que >= Que::EscrituraLee && s.que <= Que::EscrituraAbandonada;
    return paso ? cajasDe(s).primera : Caja::Ninguna;
}

} // namespace

Traza Traza::soloDe(Indice conexion, Indice bloque) const {
    Traza t = *this;
    t.conexion_ = conexion;
    t.bloque_ = bloque;
    return t;
}

bool Traza::tiene(const Suceso& s) const {
    if ((conexion_ != kNinguno && s.conexion != conexion_) ||
        (bloque_ != kNinguno && s.bloque != bloque_))
        return false;
    if (caja_ == Caja::txtTimerEscritura) return deOtra(s) != Caja::Ninguna;
    const SusCajas cajas = cajasDe(s);
    return (cajas.primera == caja_ || cajas.segunda == caja_) &&
           (indice_ < 0 || Redaccion::indiceEn(s, caja_) == indice_);
}

void Traza::agregar(const Suceso& s, std::string& texto) const {
    redaccion_->redactar(s, caja_ == Caja::txtTimerEscritura ? deOtra(s) : caja_, texto);
    // Many an order's message has no end of line, and the client's have none on their wire: the
    // next one begins a line all the same.
    const bool sueltas = caja_ == Caja::txtDemandaLecturaEscritura || caja_ == Caja::Text1;
    if (sueltas && !texto.ends_with('\n')) texto += "\r\n";
}

std::string Traza::texto() const {
    std::string texto;
    (void)desde(redaccion_->sucesos().primero(), texto);
    return texto;
}

bool Traza::seguir(std::uint64_t& visto, std::string& texto) const {
    const Sucesos& sucesos = redaccion_->sucesos();
    const std::uint64_t primero = std::max(visto, sucesos.primero());
    const bool todo = desde(primero, texto) && primero == visto;
    visto = sucesos.siguiente();
    return todo;
}

/// Begins with the latest: where there is much, most of it is never looked at.
bool Traza::desde(std::uint64_t primero, std::string& texto) const {
    const Sucesos& sucesos = redaccion_->sucesos();
    std::vector<std::string> partes;
    std::size_t bytes = 0;
    std::uint64_t n = sucesos.siguiente();
    for (; n > primero && bytes < kMaximo; --n) {
        if (!tiene(sucesos[n - 1])) continue;
        agregar(sucesos[n - 1], partes.emplace_back());
        bytes += partes.back().size();
    }
    texto.reserve(bytes);
    std::for_each(partes.rbegin(), partes.rend(), [&](const std::string& una) { texto += una; });
    return n == primero;
}

TrazaAlMomento::TrazaAlMomento(Sucesos& sucesos, const Tablas& tablas, LectorDeTrazas& destino)
    : sucesos_(sucesos), redaccion_(sucesos, tablas), destino_(destino) {
    sucesos_.avisarA(this);
}

TrazaAlMomento::~TrazaAlMomento() { sucesos_.dejarDeAvisarA(this); }

void TrazaAlMomento::alSuceder(const Suceso& suceso, std::string_view /*texto*/) {
    const SusCajas cajas = cajasDe(suceso);
    for (const Caja caja : {cajas.primera, cajas.segunda}) {
        if (caja == Caja::Ninguna) return;
        linea_.clear();
        redaccion_.redactar(suceso, caja, linea_);
        destino_.alAgregar(nombreDe(caja), Redaccion::indiceEn(suceso, caja), linea_);
    }
}

} // namespace kv
