// SPDX-License-Identifier: Apache-2.0
#include "plant/claves_de_bloque.h"

#include "text/numeros.h"
#include "text/texto.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <algorithm>
#include <cstdint>

namespace kv {

std::string claveDeBloque(double puerto, double plc, std::string_view direccion) {
    std::string clave;
    agregarNumero(clave, puerto);
    clave += '.';
    agregarNumero(clave, plc);
    clave += '.';
    clave += direccion;
    return clave;
}

std::string nombreDeScript(std::string_view clave) {
    std::string nombre(kPrefijoDeNombre);
    for (const char c : clave)
        nombre += c == '.' ? '_' : c;
    return nombre;
}

bool pareceNombreDeScript(std::string_view nombre) {
    return igualSinCaja(nombre.substr(0, kPrefijoDeNombre.size()), kPrefijoDeNombre);
}

std::string_view sinEstado(std::string_view nombre) {
    const std::size_t corte = nombre.size() - std::min(nombre.size(), kSufijoDeEstado.size());
    return igualSinCaja(nombre.substr(corte), kSufijoDeEstado) ? nombre.substr(0, corte) : nombre;
}

std::vector<std::string> registrosDeBloque(std::string_view direccion, double cantidad) {
    std::vector<std::string> registros{std::string(direccion)};
    const auto primero = byteDeRegistro(direccion);
    if (!primero) return registros;
    const bool enMinusculas = std::any_of(direccion.begin(), direccion.end(),
                                          [](char c) { return c >= 'a' && c <= 'f'; });
    for (std::uint32_t n = 1; n < cantidad && *primero + n <= kUltimoRegistro; ++n) {
        std::string registro;
        agregarHexadecimal(registro, static_cast<std::uint8_t>(*primero + n));
        if (registro.size() < direccion.size())
            registro.insert(0, direccion.size() - registro.size(), '0');
        registros.push_back(enMinusculas ? minusculas(registro) : std::move(registro));
    }
    return registros;
}

} // namespace kv
