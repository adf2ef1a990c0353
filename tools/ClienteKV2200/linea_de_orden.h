// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ClienteKV2200/enlace.h"
#include "server/mensajes.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace kv::cliente {

/// From `Estado` on only the local door knows them.
enum class Accion : std::uint8_t {
    Leer,
    Escribir,
    Forzar,
    Sincronizar,
    Vigilar,
    Estado,
    PorQue,
    Sucesos,
    Bloques,
    Conexiones,
    Contadores
};

inline constexpr int kHecho = 0;
inline constexpr int kNoHecho = 1;

/// What the command line asks for. Texts are UTF-8.
struct Orden {
    Accion accion = Accion::Sincronizar;
    Servidor servidor;
    std::string local; ///< a driver's folder: by its local door; empty: as a supervisory client
    bool json = false;
    double esperaSegundos = 5;
    std::vector<std::string> direcciones;
    std::string valor; ///< with a decimal point, however it was typed
    std::string nivel;
    std::string veces;
    double duranteSegundos = 0; ///< 0: until it is stopped
    std::string desde;          ///< of the events: a time or a number
    bool seguir = false;        ///< those to come
    Separadores separadores;    ///< of the driver's messages, on the wire's bytes
};

/// Reads the command line. When there is nothing to do, because help was asked for (0) or the line
/// is bad (2), gives that exit code; the text goes to `salida` or `errores`.
[[nodiscard]] std::optional<int> leerOrden(int argc, const char* const* argv, Orden& orden,
                                           std::ostream& salida, std::ostream& errores);

} // namespace kv::cliente
