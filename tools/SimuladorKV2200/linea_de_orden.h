// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "SimuladorKV2200/planta.h"

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

namespace kv::simulador {

/// An address to serve.
struct Escuchada {
    std::string ip;
    std::uint16_t puerto = 0; ///< 0: any free one
    std::set<std::uint8_t> estaciones;
};

/// What the command line asks for.
struct Orden {
    std::string config; ///< a driver configuration whose stations are served
    std::vector<Escuchada> escuchar;
    std::vector<DefinicionDeRegistro> registros;
    Fallas fallas;
    std::vector<DefinicionDeFallas> porLugar;
    std::uint64_t semilla = 1;
    bool traza = false;
};

/// Reads the command line. When there is nothing to serve, because help was asked for (0) or the
/// line is bad (2), gives that exit code; the text goes to `salida` or `errores`.
[[nodiscard]] std::optional<int> leerOrden(int argc, const char* const* argv, Orden& orden,
                                           std::ostream& salida, std::ostream& errores);

/// "IP:PORT"; a port of 0 is allowed.
[[nodiscard]] std::optional<Escuchada> escuchadaDeTexto(std::string_view texto);
/// "[IP:PORT/]STATION.REG=VALUE|rampa|seno|azar"; "*" stands for every station or register. Sets
/// `error` when the text is not of that form.
[[nodiscard]] DefinicionDeRegistro registroDeTexto(std::string_view texto, std::string& error);
/// "IP:PORT[/STATION],option=value,..." or "STATION,option=value,...".
[[nodiscard]] DefinicionDeFallas fallasDeTexto(std::string_view texto, std::string& error);

/// The stations of a driver configuration by address. Tells what cannot be served to `errores`.
[[nodiscard]] std::vector<Escuchada> escuchadasDeConfig(const std::string& ruta,
                                                        std::ostream& errores);

} // namespace kv::simulador
