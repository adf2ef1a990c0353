// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/rechazo.h"
#include "link/turno.h"
#include "plant/direcciones.h"
#include "write/ejecucion.h"

#include <string_view>

namespace kv {

/// Write requests: an address text and a value become a write block that is sent in its turn.
class SolicitudesDeEscritura {
  public:
    SolicitudesDeEscritura(Tablas& tablas, Turnos& turnos, EjecucionDeEscrituras& ejecucion,
                           Sucesos& sucesos);

    /// Writes `valor`, rounded to a whole number as the script language rounds, to
    /// port.PLC.register, or to one bit of it when a fourth part names one. Every source of writes
    /// ends here; `origen` says which. Gives the index of the write block, or -1 when the request
    /// was refused, which is an event.
    double escribirDireccion(std::string_view direccion, double valor,
                             std::string_view origen = {});
    double levantarBloque_De_Escritura(std::string_view direccion, double valor,
                                       std::string_view origen);

    /// Records a request that another part refuses; gives -1. Its address is cut.
    double rechazar(TextoDeRechazo texto, double valor,
                    ClaseDeRechazo clase = ClaseDeRechazo::DeUnaPuerta, Indice conexion = kNinguno);

    /// So many writes may wait at the same time; more are refused. The script's leave some places
    /// to people: a script can fill all there are in a moment.
    static constexpr std::size_t kEnEsperaMaximo = 100'000;
    static constexpr std::size_t kEnEsperaDelGuion = 90'000;

  private:
    void unir(const BloqueEscritura& e, std::string_view origen);
    /// False: it cannot be written as a frame.
    [[nodiscard]] bool armar(BloqueEscritura& e, const DireccionPartida& d,
                             const BloqueLectura& leido, double valor) const;
    [[nodiscard]] Indice igualSinEnviar(const BloqueLectura& leido, const DireccionPartida& d,
                                        double valor) const;

    Tablas& tablas_;
    Turnos& turnos_;
    EjecucionDeEscrituras& ejecucion_;
    Sucesos& sucesos_;
};

} // namespace kv
