#pragma once

#include "link/turno.h"
#include "log/archivo_log.h"
#include "platform/arreglo_de_temporizadores.h"
#include "ui/view/vista.h"
#include "write/ejecucion.h"

#include <string>
#include <string_view>

namespace kv {

/// Write requests: an address text and a value become a write block that is sent in its turn.
class SolicitudesDeEscritura {
  public:
    SolicitudesDeEscritura(Tablas& tablas, Turnos& turnos, EjecucionDeEscrituras& ejecucion,
                           Vista& vista, Sello& sello, ArchivoLog& log);

    /// Writes `valor` to port.PLC.register, or to one bit of it when a fourth part names one. Every
    /// source of writes ends here; `origen` says which. Gives the index of the write block, or -1
    /// when the request was refused, which is always said in the operator's box or in the log.
    double escribirDireccion(std::string_view direccion, double valor,
                             std::string_view origen = {});
    double levantarBloque_De_Escritura(std::string_view direccion, double valor,
                                       double scanSegundos, std::string_view origen);

    /// So many writes may wait at the same time; more are refused.
    static constexpr std::size_t kEnEsperaMaximo = 100'000;

  private:
    struct Direccion {
        double puerto = 0;
        double plc = 0;
        std::string registro;
        int bit = -1;
    };
    [[nodiscard]] static Direccion partirDireccion(std::string_view texto);
    void armar(BloqueEscritura& e, const Direccion& d, const BloqueLectura& leido, double valor,
               double scanSegundos) const;
    [[nodiscard]] Indice igualSinEnviar(const BloqueLectura& leido, const Direccion& d,
                                        double valor) const;
    double rechazar(std::string_view direccion, double valor, std::string_view origen,
                    std::string_view motivo);
    void decir(const std::string& texto);

    Tablas& tablas_;
    Turnos& turnos_;
    EjecucionDeEscrituras& ejecucion_;
    Vista& vista_;
    Sello& sello_;
    ArchivoLog& log_;
};

} // namespace kv
