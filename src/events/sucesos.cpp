// SPDX-License-Identifier: Apache-2.0
#include "events/sucesos.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::int64_t kVidaMs = 24 * 3'600'000LL;

std::uint64_t bitDe(Que que) { return std::uint64_t{1} << static_cast<unsigned>(que); }

} // namespace

Sucesos::Sucesos(const Reloj& reloj, std::size_t maximo)
    : reloj_(reloj), trozosMaximo_(std::max<std::size_t>(2, (maximo + kTrozo - 1) / kTrozo)) {}

void Sucesos::decir(Suceso suceso, std::string_view texto) {
    suceso.texto = textos_[static_cast<std::size_t>(almacenDe(suceso.que))].guardar(texto);
    guardar(suceso, texto);
}

void Sucesos::guardar(Suceso& suceso, std::string_view texto) {
    suceso.instante = reloj_.instante();
    const std::size_t lugar = siguiente_ % kTrozo;
    if (lugar == 0) hacerLugar();
    trozos_.back()->sucesos[lugar] = suceso;
    ++siguiente_;
    for (const Oyente& o : oyentes_) {
        if ((o.de & bitDe(suceso.que)) != 0) o.quien->alSuceder(suceso, texto);
    }
}

void Sucesos::avisarA(OyenteDeSucesos* oyente, std::initializer_list<Que> deEstos) {
    std::uint64_t de = deEstos.size() == 0 ? ~std::uint64_t{0} : 0;
    for (const Que que : deEstos)
        de |= bitDe(que);
    oyentes_.push_back({oyente, de});
}

/// A new piece for what follows, or the oldest one again: when there are as many as there may be,
/// or when it is too old to be looked at, so that a year takes no more room than a day.
void Sucesos::hacerLugar() {
    const std::int64_t ahora = reloj_.monotonicoMs();
    const bool vieja = trozos_.size() > 1 && ahora - trozos_[1]->desdeMs > kVidaMs;
    if (trozos_.size() < trozosMaximo_ && !vieja) {
        trozos_.push_back(std::make_unique<Trozo>());
    } else {
        trozos_.push_back(std::move(trozos_.front()));
        trozos_.pop_front();
        primero_ += kTrozo;
    }
    trozos_.back()->desdeMs = ahora;
}

std::string_view Sucesos::textoDe(const Suceso& suceso) const {
    return suceso.texto == 0
               ? std::string_view()
               : textos_[static_cast<std::size_t>(almacenDe(suceso.que))].ver(suceso.texto);
}

} // namespace kv
