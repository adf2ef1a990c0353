#pragma once

#include "events/redaccion.h"
#include "plant/bloque.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// "1.1.10", or "1.1.10.3" for a bit.
[[nodiscard]] std::string direccionDe(const BloqueEscritura& escritura);

/// A request that became no write.
struct Rechazo {
    std::string_view direccion; ///< as it was given
    double valor = 0;
    std::string_view origen;
    std::string_view motivo;
    Suceso suceso = {};          ///< what the operator's box says it with, if not as any refusal
    std::string_view dicho = {}; ///< the text of that
};

/// Writes of the script are told to the records only: it makes them by the thousand.
inline constexpr std::string_view kOrigenGuion = "guion";

/// Hears of every request for a write, for records that outlive the write table.
class AvisoDeEscritura {
  public:
    virtual ~AvisoDeEscritura() = default;
    /// A request that became no write at all.
    virtual void alRechazar(const Rechazo& rechazo) = 0;
    /// A request for what another one that still waits will do.
    virtual void alFundir(const BloqueEscritura& escritura, std::string_view origen) = 0;
    /// The frame leaves, for the first time.
    virtual void alSalir(const BloqueEscritura& escritura) = 0;
    virtual void alTerminar(const BloqueEscritura& escritura, FinDeEscritura fin) = 0;
};

} // namespace kv
