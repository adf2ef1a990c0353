// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "config/alcance.h"
#include "config/escucha.h"
#include "config/presupuesto.h"
#include "config/proyecto.h"
#include "config/validacion.h"
#include "plant/direcciones.h"

#include <optional>
#include <string>
#include <vector>

namespace kv {

/// Settings and configuration as a start would read them, and all that is wrong with them. Who has
/// more to say about a plant adds it to `configuracion.problemas`.
struct Revision {
    ConfiguracionLeida configuracion;
    Validacion validacion;
    double pausaMs = 0;
    std::vector<Presupuesto> presupuestos; ///< by connection
    Escucha escucha;
    double puertoEscucha = 0;
    std::string guion; ///< which script there is, as people read it; empty unless looked for
    std::vector<AlcanceDeConexion> alcance; ///< by connection; empty unless asked for
    /// Why a driver that starts would not serve this plant; empty if it would.
    std::vector<std::string> impedimentos;

    /// How the program ends: 0 without problems, 1 with, 2 when the plant would not be served.
    [[nodiscard]] int resultado() const;
};

/// What the lists that were read come to, with a pause in milliseconds between requests.
[[nodiscard]] Revision revisarListas(ConfiguracionLeida configuracion, double pausaMs);
/// Reads without writing anything from now on.
[[nodiscard]] Revision revisar(Ajustes& ajustes);
/// Tries the address to listen on. A port that is taken is no problem: the plant's driver may run.
void revisarEscucha(Bucle& bucle, Ajustes& ajustes, Revision& r);
/// The stations and registers that a start would build; nothing where there is no configuration.
/// Writes nothing from now on.
[[nodiscard]] std::optional<DireccionesDePlanta> direccionesConfiguradas(Ajustes& ajustes);
[[nodiscard]] DireccionesDePlanta direccionesDe(const ListasDeConfiguracion& listas,
                                                const Validacion& validacion);

/// The report of what would be built and of every problem, each on a line of its own. Its length is
/// bounded however large the plant is.
[[nodiscard]] std::string informeDe(const Revision& r);

/// Tells what is wrong with each setting, with file and line.
void revisarAjustes(Ajustes& ajustes, Problemas& problemas);

} // namespace kv
