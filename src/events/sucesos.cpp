// SPDX-License-Identifier: Apache-2.0
#include "events/sucesos.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::int64_t kVidaMs = 24 * 3'600'000LL;

/// The kinds that are kept for longer than the ring does.
const std::uint64_t kQueSeApartan =
    quesCon([](Que que) { return apartadoDe(que) != Apartado::Ninguno; });

} // namespace

Sucesos::Sucesos(const Reloj& reloj, std::size_t maximo)
    : reloj_(reloj), trozosMaximo_(std::max<std::size_t>(2, (maximo + kTrozo - 1) / kTrozo)) {}

void Sucesos::decir(Suceso suceso, std::string_view texto) {
    // A silent one's is for those who hear of it now: no box will show it.
    if (!texto.empty() && !suceso.callado)
        suceso.texto = textos_[static_cast<std::size_t>(almacenDe(suceso.que))].guardar(texto);
    guardar(suceso, texto);
}

void Sucesos::guardar(Suceso& suceso, std::string_view texto) {
    suceso.instante = reloj_.instante();
    const std::size_t lugar = siguiente_ % kTrozo;
    if (lugar == 0) hacerLugar();
    Trozo& trozo = *trozos_.back();
    trozo.sucesos[lugar] = suceso;
    const std::uint64_t bit = bitDe(suceso.que);
    trozo.ques |= bit;
    ++siguiente_;
    for (const Oyente& o : oyentes_) {
        if ((o.de & bit) != 0) o.quien->alSuceder(suceso, texto);
    }
}

/// A new piece for what follows, or the oldest one again: when there are as many as there may be,
/// or when it is too old to be looked at, so that a year takes no more room than a day.
void Sucesos::hacerLugar() {
    const std::int64_t ahora = reloj_.monotonicoMs();
    const bool vieja = trozos_.size() > 1 && ahora - trozos_[1]->desdeMs > kVidaMs;
    if (trozos_.size() < trozosMaximo_ && !vieja) {
        trozos_.push_back(std::make_unique<Trozo>());
    } else {
        apartar(*trozos_.front());
        trozos_.push_back(std::move(trozos_.front()));
        trozos_.pop_front();
        primero_ += kTrozo;
    }
    trozos_.back()->desdeMs = ahora;
    trozos_.back()->ques = 0;
}

void Sucesos::apartar(const Trozo& elMasViejo) {
    if ((elMasViejo.ques & kQueSeApartan) == 0) return;
    for (std::size_t k = 0; k < kTrozo; ++k) {
        const Suceso& s = elMasViejo.sucesos[k];
        const Apartado donde = apartadoDe(s.que);
        if (donde != Apartado::Ninguno && !s.callado)
            apartados_[static_cast<std::size_t>(donde)].guardar(primero_ + k, s);
    }
}

std::string_view Sucesos::textoDe(const Suceso& suceso) const {
    return suceso.texto == 0
               ? std::string_view()
               : textos_[static_cast<std::size_t>(almacenDe(suceso.que))].ver(suceso.texto);
}

} // namespace kv
