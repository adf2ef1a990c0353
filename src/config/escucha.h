// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/tabla_de_ajustes.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kv {

/// A set of IPv4 addresses that share their first bits.
struct RedPermitida {
    std::uint32_t direccion = 0;
    std::uint32_t mascara = 0;
};

/// "10.0.0.9" or "10.0.0.0/24"; nothing for any other text.
[[nodiscard]] std::optional<RedPermitida> redDeTexto(std::string_view texto);
/// The address of a text that `esIPv4`.
[[nodiscard]] std::uint32_t numeroDeIp(std::string_view ip);

/// A setting of the door that makes no sense, where it stands and what comes of it.
struct QuejaDeEscucha {
    std::size_t linea = 0;
    std::string que;
    std::string consecuencia;
};

/// The keys of the door as they stand in a settings file.
struct ClavesDeEscucha {
    struct Clave {
        std::string nombre; ///< as it is written
        std::string valor;
        std::size_t linea = 0;
        /// Its line has an end; one without may go on.
        bool terminada = true;
    };
    std::map<std::string, Clave, std::less<>> claves; ///< by name in lower case
    /// Lines that look like keys of the door and are not; a bounded number of them is kept.
    std::vector<QuejaDeEscucha> quejas;
};
[[nodiscard]] ClavesDeEscucha clavesDeEscucha(std::string_view contenido);

/// What the keys of the door mean. Where one makes no sense the door is as closed as it can be.
struct Escucha {
    std::string direccion = "0.0.0.0"; ///< to listen on
    bool todos = true;                 ///< no list: everybody may come in
    std::vector<RedPermitida> redes;
    bool exigeLogin = false;
    bool soloLectura = false;
    double plazoDeLogin = kEscuchaPlazo.porDefecto;
    double clavesPorMinuto = kEscuchaErradas.porDefecto;
    double pausaPorClaves = kEscuchaPausa.porDefecto;
    double escriturasPorSegundo = kEscuchaEscrituras.porDefecto;
    /// Some key or value means nothing, so that it is not known what was to be forbidden.
    bool cerrada = false;
};
/// Appends what is wrong to `quejas`, beginning with that of `claves`.
[[nodiscard]] Escucha escuchaDe(const ClavesDeEscucha& claves, std::vector<QuejaDeEscucha>& quejas);

} // namespace kv
