// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/listas.h"
#include "config/validacion.h"
#include "plant/tablas.h"
#include "platform/trabajo.h"

#include <cstddef>
#include <string>
#include <vector>

namespace kv {

/// What a configuration asks for otherwise than a running plant has it. `configurado` and
/// `estacionesNuevas` are places in the lists.
struct Diferencia {
    struct Nuevo {
        std::size_t configurado;
        std::string registro; ///< the first of `cantidad`, one behind the other
        double cantidad;
    };
    struct Cambio {
        Indice bloque;
        std::size_t configurado; ///< level, scan or activity are another
    };
    /// Connection by connection, those of stations that go among them.
    std::vector<Indice> bloquesQueSobran;
    std::vector<Tablas::LugarDeEstacion> estacionesQueSobran;
    std::vector<std::size_t> estacionesNuevas;
    std::vector<Nuevo> nuevos;
    std::vector<Cambio> cambios;
    std::size_t iguales = 0; ///< variables
    Indice hasta = 0;        ///< blocks from here on were made after the comparison began
};

/// A station is the same when its address, its port's number, its own number and its index on the
/// wire are; a block when its station and its key are. What was made because its register was asked
/// for stays as long as its station does, and may be made meanwhile. Linear in the size of both.
/// All of them must outlive the work; `diferencia` is empty.
Trabajo comparar(const Tablas& tablas, const ListasDeConfiguracion& listas,
                 const Validacion& validacion, Diferencia& diferencia, Porciones& porciones);

} // namespace kv
