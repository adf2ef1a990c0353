// SPDX-License-Identifier: Apache-2.0
#include "events/apartados.h"

namespace kv {

Apartado apartadoDe(Que que) {
    if (que == Que::Descarte || que == Que::Sobrante) return Apartado::Descartes;
    switch (asuntoDe(que)) {
    case Asunto::PasoDeEscritura:
        return Apartado::PasosDeEscritura;
    case Asunto::Pedido:
        return Apartado::Ordenes;
    case Asunto::DelCliente:
        return Apartado::DelCliente;
    case Asunto::AlCliente:
        return Apartado::AlCliente;
    default:
        return Apartado::Ninguno;
    }
}

void Apartados::guardar(std::uint64_t numero, const Suceso& suceso) {
    if (todos_.size() == kMaximo) {
        completosDesde_ = todos_.front().numero + 1;
        todos_.pop_front();
    }
    todos_.push_back({numero, suceso});
}

} // namespace kv
