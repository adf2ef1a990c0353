// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "log/archivo_log.h"
#include "log/cupo.h"

#include <cstdint>
#include <string_view>

namespace kv {

/// The log of what clients cause, in bounds: so many entries a minute, the others counted.
class LogAcotado {
  public:
    static constexpr int kPorMinuto = 20;

    LogAcotado(ArchivoLog& log, const Reloj& reloj) : log_(log), reloj_(reloj) {}
    void escribir(std::string_view procedimiento, std::string_view mensaje,
                  std::string_view descripcion = {}, Novedad novedad = Novedad::Ninguna);
    void escribir(std::string_view procedimiento, std::string_view mensaje, Novedad novedad) {
        escribir(procedimiento, mensaje, {}, novedad);
    }
    /// To be called now and then: says how many entries were passed over once their minute is over.
    void alPasarElTiempo();
    /// The program ends: says it now.
    void terminar() { contar(cupo_.negadosYa()); }

  private:
    void contar(std::uint64_t calladas);

    ArchivoLog& log_;
    const Reloj& reloj_;
    Cupo cupo_{kUnMinutoMs};
};

} // namespace kv
