// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "link/transaccion.h"
#include "link/turno.h"
#include "poll/estaciones_mudas.h"
#include "poll/reloj_de_bloques.h"
#include "script/publicacion.h"

namespace kv {

/// A read that is out, and how it ends: its answer becomes the value of the polled register;
/// silence leads through retries to BAD and a rest.
class Lectura final : public Transaccion {
  public:
    Lectura(Bucle& bucle, Tablas& tablas, Turnos& turnos, Publicacion& publicacion,
            EstacionesMudas& mudas, RelojDeBloques& reloj, Sucesos& sucesos);
    void contestada(Indice conexion, const Respuesta& respuesta) override;
    /// The block has the next turn whose answer counts. Being asked on trial hurts no healthy
    /// block, so one such try in a row is not counted.
    void dudosa(Indice conexion) override;
    void vencida(Indice conexion) override;
    void perdida(Indice conexion) override;
    [[nodiscard]] Indice bloqueQueLee(Indice conexion) const override {
        return tablas_.conexiones[conexion].bloqueEnCurso;
    }

  private:
    void reintentarBloque(Indice bloque);
    void deshabilitar(Indice conexion, Indice bloque);

    Bucle& bucle_;
    Tablas& tablas_;
    Turnos& turnos_;
    Publicacion& publicacion_;
    EstacionesMudas& mudas_;
    RelojDeBloques& reloj_;
    Sucesos& sucesos_;
};

} // namespace kv
