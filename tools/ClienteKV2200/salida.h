// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ClienteKV2200/lector.h"

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace kv::cliente {

/// One variable as a line: "1.1.10 1234 OK", or as a JSON object.
[[nodiscard]] std::string lineaDe(const Variable& v, bool json, const std::string& hora = {});
/// "1234 OK"
[[nodiscard]] std::string valorYEstado(const Variable& v);
/// What went wrong, for standard error: "ClienteKV2200: 1.1.10: TEXT", or a JSON object that also
/// has what is known of the variable. `v`: the variable it is about; its value may be unknown,
/// empty.
[[nodiscard]] std::string lineaDeError(const std::string& texto, bool json, const Variable& v = {});

/// The variables that the driver sends, in the order in which it sent them first. Several variables
/// of a block share its address; they are told apart by their place in a synchronisation.
class Tabla {
  public:
    struct Fila {
        Variable variable;
        std::string hora;
        std::size_t lugar = 0; ///< among those of the same address
    };
    /// Enters one envelope; gives the numbers of the rows that changed.
    [[nodiscard]] std::vector<std::size_t> agregar(const std::vector<Variable>& variables,
                                                   const std::string& hora);
    [[nodiscard]] const std::vector<Fila>& filas() const { return filas_; }
    /// As much of the table as fits, drawn over what was there before, below `aviso` if there is
    /// one.
    void dibujar(std::ostream& salida, std::size_t lineas, const std::string& aviso) const;

  private:
    std::vector<Fila> filas_;
    std::map<std::pair<std::string, std::size_t>, std::size_t> numeros_;
    std::string ultima_; ///< address of the last envelope's last record, if that was full
    std::size_t siguiente_ = 0;
};

} // namespace kv::cliente
