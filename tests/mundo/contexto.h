// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "engine/motor.h"
#include "mundo/espia.h"
#include "mundo/linea.h"
#include "mundo/plan.h"

#include <string>
#include <vector>

namespace kv::mundo {

/// What the rules see of a world, and where the first one that is broken says so.
struct Contexto {
    BucleEspia& bucle;
    Motor& motor;
    const Plan& plan;
    std::vector<Linea*> lineas; ///< by connection of the driver

    std::string fallo;             ///< what broke first; empty: nothing
    std::uint64_t comprobadas = 0; ///< rules checked so far
    bool ajustesPerdidos = false;  ///< the settings file was taken away

    [[nodiscard]] std::int64_t ahoraUs() const { return bucle.reloj().monotonicoUs(); }
    [[nodiscard]] std::size_t conexiones() const {
        return motor.tablas.conexiones.limiteSuperior();
    }
    [[nodiscard]] ConexionIP& conexion(std::size_t n) const { return motor.tablas.conexiones[n]; }
    [[nodiscard]] Zocalo& zocalo(std::size_t n) const {
        return motor.conexiones.wsSocket(static_cast<Indice>(n));
    }
    [[nodiscard]] bool conectada(std::size_t n) const {
        return zocalo(n).estado() == EstadoZocalo::Conectado;
    }
    /// Connected, and the supervision knows of this very link.
    [[nodiscard]] bool supervisada(std::size_t n) const {
        return conectada(n) && conexion(n).estadoSupervision == 1 &&
               conexion(n).enlaceSupervisado == zocalo(n).conexiones();
    }
    /// What is out on the connection is a write's.
    [[nodiscard]] bool escribe(std::size_t n) const {
        return motor.turnos.enCurso(static_cast<Indice>(n)) == &motor.ejecucion;
    }
    /// True: the rule holds.
    bool exigir(bool cierto, const char* regla, std::size_t cual) {
        ++comprobadas;
        if (!cierto && fallo.empty()) romper(regla, cual);
        return cierto;
    }

  private:
    void romper(const char* regla, std::size_t cual) {
        fallo = std::string(regla) + " (" + std::to_string(cual) + ") at " +
                std::to_string(ahoraUs() / 1000) + " ms";
        bucle.detener();
    }
};

} // namespace kv::mundo
