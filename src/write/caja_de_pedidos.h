#pragma once

#include "platform/sello.h"
#include "view/vista.h"
#include "write/avisos.h"

namespace kv {

/// Says in the operator's box what became of the writes that a window or the client asked for, and
/// passes everything on to the records.
class CajaDePedidos final : public AvisoDeEscritura {
  public:
    CajaDePedidos(Vista& vista, Sello& sello, AvisoDeEscritura& registro)
        : vista_(vista), sello_(sello), registro_(&registro) {}
    /// Another record, which has to outlive this.
    void registrarEn(AvisoDeEscritura& registro) { registro_ = &registro; }

    void alRechazar(const Rechazo& rechazo) override;
    void alFundir(const BloqueEscritura& escritura, std::string_view origen) override;
    void alSalir(const BloqueEscritura& escritura) override { registro_->alSalir(escritura); }
    void alTerminar(const BloqueEscritura& escritura, FinDeEscritura fin) override;

  private:
    void decir(std::string_view texto);

    Vista& vista_;
    Sello& sello_;
    AvisoDeEscritura* registro_;
};

} // namespace kv
