// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace kv {

/// The stations and registers of a plant by their addresses, and the names by which a script sees
/// them: what a script may name without running in the driver.
class DireccionesDePlanta {
  public:
    void agregarEstacion(double puerto, double plc);
    /// `registro` as configured.
    void agregarRegistro(double puerto, double plc, std::string_view registro);

    /// Whether a forced read of it asks a station, also where no block reads it yet.
    [[nodiscard]] bool sePuedePedir(double puerto, double plc, std::string_view registro) const;
    /// Registers are compared as hexadecimal numbers.
    [[nodiscard]] bool hayRegistro(double puerto, double plc, std::string_view registro) const;
    /// Exactly this block key, as port.PLC.register is configured.
    [[nodiscard]] bool hayClave(const std::string& clave) const { return claves_.contains(clave); }
    /// A name that a script can read: a register's, that of one of its bits, or a status of these.
    [[nodiscard]] bool publica(std::string_view nombre) const;
    /// Names of the registers and of their statuses, in the order in which they came.
    [[nodiscard]] const std::vector<std::string>& nombres() const { return nombres_; }

  private:
    std::unordered_set<std::string> claves_;
    std::unordered_set<std::string> estaciones_;
    std::unordered_set<std::string> registros_;  ///< port.PLC.number
    std::unordered_set<std::string> publicados_; ///< in lower case
    std::vector<std::string> nombres_;
};

/// What two stations must have in common to share a connection: the IP whatever its letter case,
/// and the TCP port as a number, so that "0502" is "502".
[[nodiscard]] std::string claveDeConexion(std::string_view ip, std::string_view puertoTCP);

class Tablas;
/// Those of a driver that runs: also those that were made because their register was asked for.
[[nodiscard]] DireccionesDePlanta direccionesDe(const Tablas& tablas);

/// An address port.PLC.register[.bit].
struct DireccionPartida {
    double puerto = 0;
    double plc = 0;
    std::string_view registro; ///< of the text that was taken apart, without blanks around it
    int bit = -1;              ///< 0 to 15; -1: the whole register; kNoEsBit: the text is not a bit
};
inline constexpr int kNoEsBit = -2;
/// The number of a bit, 0 to 15; kNoEsBit for any other text.
[[nodiscard]] int bitDeTexto(std::string_view texto);
/// The address has four parts: it is that of a bit.
[[nodiscard]] bool esDeBit(std::string_view direccion);
/// False: the text is no such address. The register may be any text.
[[nodiscard]] bool partirDireccion(std::string_view texto, DireccionPartida& partes);

} // namespace kv
