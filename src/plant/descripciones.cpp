// SPDX-License-Identifier: Apache-2.0
#include "plant/descripciones.h"

#include "plant/claves_de_bloque.h"
#include "plant/direcciones.h"
#include "text/numeros.h"

namespace kv {

std::optional<std::string> Descripciones::clave(std::string_view direccion) {
    DireccionPartida partes;
    if (!partirDireccion(direccion, partes) || partes.bit == kNoEsBit) return std::nullopt;
    const auto registro = hexadecimal(partes.registro);
    if (!registro) return std::nullopt;
    std::string clave = claveDeBloque(partes.puerto, partes.plc, std::to_string(*registro));
    return partes.bit < 0 ? clave : clave + "." + std::to_string(partes.bit);
}

Descripciones::Resultado Descripciones::poner(std::string_view direccion, Descripcion descripcion) {
    auto k = clave(direccion);
    if (!k) return Resultado::NoEsDireccion;
    if (filas_.size() == kMaximo) return Resultado::Demasiadas;
    if (!porClave_.emplace(std::move(*k), filas_.size()).second) return Resultado::Repetida;
    filas_.push_back({std::string(direccion), std::move(descripcion)});
    return Resultado::Puesta;
}

bool Descripciones::deshacer() {
    if (filas_.empty()) return false;
    filas_.pop_back();
    porClave_.erase(porClave_.begin());
    return true;
}

const Descripcion* Descripciones::de(std::string_view direccion) const {
    if (filas_.empty()) return nullptr;
    const auto k = clave(direccion);
    if (!k) return nullptr;
    const auto i = porClave_.find(*k);
    return i == porClave_.end() ? nullptr : &filas_[i->second].descripcion;
}

} // namespace kv
