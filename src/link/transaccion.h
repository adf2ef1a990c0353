// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "plant/bloque.h"
#include "wire/Modulo_Tramas_KV2200.h"

namespace kv {

/// Who asked for what is outstanding on a connection, and what each way in which that may end means
/// to them. Reads are one, writes with their first reads and read-backs another.
class Transaccion {
  public:
    virtual ~Transaccion() = default;
    /// The answer came; it is for what was asked.
    virtual void contestada(Indice conexion, const Respuesta& respuesta) = 0;
    /// A valid answer came that may as well be the late answer to another request: the try has
    /// failed.
    virtual void dudosa(Indice conexion) = 0;
    /// Its time-out ticked.
    virtual void vencida(Indice conexion) = 0;
    /// The link is gone, and its answer with it.
    virtual void perdida(Indice conexion) = 0;
    /// The block that is being read, for those who explain what a connection does; kNinguno where
    /// it is a write that is being carried out.
    [[nodiscard]] virtual Indice bloqueQueLee(Indice conexion) const = 0;
};

} // namespace kv
