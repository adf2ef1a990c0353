// SPDX-License-Identifier: Apache-2.0
#include "events/apartados.h"

namespace kv {

Apartado apartadoDe(Que que) {
    if (que == Que::Descarte || que == Que::Sobrante) return Apartado::Descartes;
    if (que == Que::AlCliente) return Apartado::AlCliente;
    if (que == Que::DelCliente || que == Que::RepetidasDelCliente) return Apartado::DelCliente;
    if (que >= Que::EscrituraLee && que <= Que::EscrituraAbandonada)
        return Apartado::PasosDeEscritura;
    return que >= Que::EscrituraUnida && que <= Que::NivelSinBloques ? Apartado::Ordenes
                                                                     : Apartado::Ninguno;
}

void Apartados::guardar(std::uint64_t numero, const Suceso& suceso) {
    if (todos_.size() == kMaximo) {
        completosDesde_ = todos_.front().numero + 1;
        todos_.pop_front();
    }
    todos_.push_back({numero, suceso});
}

} // namespace kv
