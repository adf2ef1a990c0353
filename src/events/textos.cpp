// SPDX-License-Identifier: Apache-2.0
#include "events/textos.h"

namespace kv {

namespace {

std::size_t loQueOcupa(const std::string& texto) { return sizeof(std::string) + texto.size(); }

} // namespace

std::uint32_t TextosDeSucesos::guardar(std::string_view texto) {
    guardados_.emplace_back(texto.substr(0, kMaximo - sizeof(std::string)));
    bytes_ += loQueOcupa(guardados_.back());
    while (bytes_ > kMaximo) {
        bytes_ -= loQueOcupa(guardados_.front());
        guardados_.pop_front();
    }
    if (++ultimo_ == 0) ultimo_ = 1;
    return ultimo_;
}

std::string_view TextosDeSucesos::ver(std::uint32_t numero) const {
    // Numbers begin anew at 1.
    const std::uint32_t desdeElFinal = ultimo_ - numero - (numero > ultimo_ ? 1 : 0);
    if (numero == 0 || desdeElFinal >= guardados_.size()) return {};
    return guardados_[guardados_.size() - 1 - desdeElFinal];
}

Almacen almacenDe(Que que) {
    switch (asuntoDe(que)) {
    case Asunto::Conexion:
    case Asunto::Estacion:
        return Almacen::Estaciones;
    case Asunto::Guion:
        return Almacen::Guion;
    case Asunto::DelCliente:
        return Almacen::DelCliente;
    case Asunto::AlCliente:
        return Almacen::AlCliente;
    default:
        return Almacen::Pedidos;
    }
}

} // namespace kv
