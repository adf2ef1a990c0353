#pragma once

#include "platform/archivos.h"
#include "platform/reloj.h"
#include "write/ejecucion.h"

#include <string>
#include <string_view>

namespace kv {

/// The daily record of writes, beside the logs: who wanted what written where, what was there
/// before, and what came of it; refused requests too. One line each:
///
///     dd/mm/yyyy hh:mm:ss;source;address;old value;new value;outcome
///
/// Lines are gathered and appended once per turn of the loop. What comes from outside is cut and
/// its control characters and separators are escaped, so a line is always one line of six fields. A
/// line that only repeats the one before is counted instead. What cannot be written is lost.
class Auditoria final : public AlTerminarEscritura {
  public:
    Auditoria(Archivos& archivos, const Reloj& reloj, const std::string& carpetaDelPrograma,
              std::string programa);

    void alTerminar(const BloqueEscritura& escritura, FinDeEscritura fin) override;
    void alRechazar(std::string_view direccion, double valor, std::string_view origen,
                    std::string_view motivo) override;
    /// Appends what was gathered. Called at the end of every turn.
    void volcar();

    /// Bytes that one turn may add; what goes beyond is counted.
    static constexpr std::size_t kMaximoPorVuelta = 1U << 20;

  private:
    void anotar(const std::string& cuerpo);
    void cerrarRepetidas();

    Archivos& archivos_;
    const Reloj& reloj_;
    std::string carpeta_;
    std::string programa_;
    std::string pendiente_;
    std::string ultimo_; ///< the last line without its time
    std::size_t repetidas_ = 0;
    std::size_t perdidas_ = 0;
};

} // namespace kv
