// SPDX-License-Identifier: Apache-2.0
#include "plant/descripciones.h"

#include "plant/bases.h"
#include "plant/direcciones.h"
#include "text/numeros.h"
#include "text/texto.h"

namespace kv {

std::optional<std::string> Descripciones::clave(std::string_view direccion) {
    constexpr double kBits = 16;
    DireccionPartida partes;
    if (!partirDireccion(direccion, partes)) return std::nullopt;
    std::string clave = claveDeBloque(partes.puerto, partes.plc,
                                      std::to_string(*hexadecimal(recortar(partes.registro))));
    const auto trozos = partir(direccion, '.');
    if (trozos.size() < 4) return clave;
    const auto bit = numeroDeTexto(trozos[3]);
    if (!bit || !(*bit >= 0 && *bit < kBits) || *bit != static_cast<int>(*bit)) return std::nullopt;
    return clave + "." + textoDeNumero(*bit);
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
