#pragma once

#include "write/avisos.h"

namespace kv {

/// Says what became of the writes that a window or the client asked for, and passes everything on
/// to the records.
class CajaDePedidos final : public AvisoDeEscritura {
  public:
    CajaDePedidos(Sucesos& sucesos, AvisoDeEscritura& registro)
        : sucesos_(sucesos), registro_(&registro) {}
    /// Another record, which has to outlive this.
    void registrarEn(AvisoDeEscritura& registro) { registro_ = &registro; }

    void alRechazar(const Rechazo& rechazo) override;
    void alFundir(const BloqueEscritura& escritura, std::string_view origen) override;
    void alSalir(const BloqueEscritura& escritura) override { registro_->alSalir(escritura); }
    void alTerminar(const BloqueEscritura& escritura, FinDeEscritura fin) override;

  private:
    void decir(Que que, const BloqueEscritura& e, int detalle);

    Sucesos& sucesos_;
    AvisoDeEscritura* registro_;
};

} // namespace kv
