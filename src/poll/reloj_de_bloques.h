// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/sucesos.h"
#include "platform/bucle.h"
#include "platform/sello.h"
#include "script/publicacion.h"
#include "view/vista.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <string_view>

namespace kv {

/// The clock of every block: starts, stops, rests, forces and ticks it, counts its tries, and shows
/// in the block's row what it is at. Nobody else touches a block's timer or counters.
///
/// A block is due, or its clock runs towards the moment when it will be, or it rests because its
/// register gave no answer, or it is off. One that is due does not tick.
class RelojDeBloques {
  public:
    /// `alTocarle` is called with a block that has become due by its clock.
    RelojDeBloques(Bucle& bucle, Tablas& tablas, Publicacion& publicacion, Sucesos& sucesos,
                   Vista& vista, Sello& sello, std::function<void(Indice)> alTocarle);
    /// The clock of one block more, stopped; the blocks in their order.
    void agregar(Indice bloque, double scanSegundos);
    /// The block is no longer configured: off, and at rest for ever.
    void retirar(Indice bloque);

    /// A new link: nothing rests, and what is on is due.
    void empezar(Indice bloque);
    /// The link was lost, or the block was found to be off.
    void parar(Indice bloque);
    /// It is due now; one that rests, when its rest is over.
    void pedir(Indice bloque);
    /// Its request leaves.
    void salir(Indice bloque);
    /// Its request was answered: the scan begins anew.
    void contestar(Indice bloque);
    /// A try failed, and how.
    void fallar(Indice bloque, FinDeIntento como);
    /// An answer came, if only to a write: what failed before is over, for its station as well.
    void olvidarFallidos(Indice bloque);
    /// A try whose answer was doubtful; true for the second in a row and on, which counts as
    /// failed.
    [[nodiscard]] bool dudar(Indice bloque);
    /// One more try, if there is one left.
    [[nodiscard]] bool reintentar(Indice bloque);
    /// Its tries are used up: it rests for so long, ms above 0.
    void descansar(Indice bloque, std::int64_t ms);
    /// Another one asks for its station.
    void callar(Indice bloque);
    /// It asks for its station, in so many ms.
    void sondear(Indice bloque, std::int64_t ms);
    /// Ends its rest; false when it did not rest.
    bool volver(Indice bloque);

    /// `veces` reads that leave from now on, above 0, and then as it was before; `nota` is shown
    /// meanwhile.
    void forzar(Indice bloque, double veces, std::string_view nota);
    /// Switches it on or off, which ends a force. `ordenante`: see Tablas.
    void encender(Indice bloque, bool activo, std::uint8_t ordenante);
    /// Seconds, from a scan that a block can have.
    void cambiarScan(Indice bloque, double segundos);

    /// Milliseconds until its timer ticks; -1: it will not.
    [[nodiscard]] std::int64_t faltanMs(Indice bloque) const;
    /// Its timer runs.
    [[nodiscard]] bool enMarcha(Indice bloque) const {
        return Timer1_Bloques_[bloque].habilitado();
    }

  private:
    void tic(Indice bloque);
    void habilitar(BloqueLectura& b);
    void avanzarForzado(BloqueLectura& b);
    void mostrarHabilitado(const BloqueLectura& b);
    void mostrar(const BloqueLectura& b, std::size_t columna, std::string_view texto);

    Tablas& tablas_;
    Publicacion& publicacion_;
    Sucesos& sucesos_;
    Vista& vista_;
    Sello& sello_;
    ColaDeTemporizadores& cola_;
    std::deque<Temporizador> Timer1_Bloques_; // timers do not move
    std::function<void(Indice)> alTocarle_;
};

} // namespace kv
