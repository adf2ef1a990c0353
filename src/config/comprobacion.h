#pragma once

#include "config/proyecto.h"
#include "config/validacion.h"
#include "plant/direcciones.h"

#include <functional>
#include <optional>
#include <string>

namespace kv {

/// What a check prints, and how the program ends: 0 without problems, 1 with.
struct Comprobacion {
    std::string informe;
    int resultado = 0;
};

/// What else is to be looked at, by those who know more than a configuration's files: adds what it
/// finds wrong.
using OtraRevision = std::function<void(const ConfiguracionLeida&, const Validacion&, Problemas&)>;

/// Reads settings and configuration as a start would, without writing anything from now on.
[[nodiscard]] Comprobacion comprobar(Ajustes& ajustes, const OtraRevision& otra = {});

/// The stations and registers that a start would build; nothing where there is no configuration.
/// Writes nothing from now on.
[[nodiscard]] std::optional<DireccionesDePlanta> direccionesConfiguradas(Ajustes& ajustes);
[[nodiscard]] DireccionesDePlanta direccionesDe(const ListasDeConfiguracion& listas,
                                                const Validacion& validacion);

/// The report of what would be built and of every problem, each on a line of its own. Its length is
/// bounded however large the plant is.
[[nodiscard]] std::string informeDe(const ConfiguracionLeida& configuracion,
                                    const Validacion& validacion);

/// Tells every numeric setting that is no number or out of its range, each with file and line.
void revisarAjustes(Ajustes& ajustes, Problemas& problemas);

} // namespace kv
