// SPDX-License-Identifier: Apache-2.0
#include "events/nombres.h"

#include <algorithm>
#include <array>

namespace kv {
namespace {

struct Nombrado {
    Que que;
    std::string_view nombre;
};
constexpr std::array kNombres = {Nombrado{Que::EnlaceArriba, "EnlaceArriba"},
                                 Nombrado{Que::EnlaceAbajo, "EnlaceAbajo"},
                                 Nombrado{Que::PausaEmpieza, "PausaEmpieza"},
                                 Nombrado{Que::PausaTermina, "PausaTermina"},
                                 Nombrado{Que::LineaRetenida, "LineaRetenida"},
                                 Nombrado{Que::LineaNoCalla, "LineaNoCalla"},
                                 Nombrado{Que::EnlaceCortado, "EnlaceCortado"},
                                 Nombrado{Que::LlegaronBytes, "LlegaronBytes"},
                                 Nombrado{Que::Descarte, "Descarte"},
                                 Nombrado{Que::Sobrante, "Sobrante"},
                                 Nombrado{Que::Recepcion, "Recepcion"},
                                 Nombrado{Que::Envio, "Envio"},
                                 Nombrado{Que::Reintento, "Reintento"},
                                 Nombrado{Que::TicDeBloque, "TicDeBloque"},
                                 Nombrado{Que::FinDelDescanso, "FinDelDescanso"},
                                 Nombrado{Que::BloqueHabilitado, "BloqueHabilitado"},
                                 Nombrado{Que::BloqueDeshabilitado, "BloqueDeshabilitado"},
                                 Nombrado{Que::TiempoFuera, "TiempoFuera"},
                                 Nombrado{Que::EstacionMuda, "EstacionMuda"},
                                 Nombrado{Que::EstacionContesta, "EstacionContesta"},
                                 Nombrado{Que::EscrituraLee, "EscrituraLee"},
                                 Nombrado{Que::EscrituraSale, "EscrituraSale"},
                                 Nombrado{Que::EscrituraLeeOtraVez, "EscrituraLeeOtraVez"},
                                 Nombrado{Que::EscrituraRelee, "EscrituraRelee"},
                                 Nombrado{Que::EscrituraRepite, "EscrituraRepite"},
                                 Nombrado{Que::TiempoFueraDeEscritura, "TiempoFueraDeEscritura"},
                                 Nombrado{Que::EscrituraAbandonada, "EscrituraAbandonada"},
                                 Nombrado{Que::EscrituraUnida, "EscrituraUnida"},
                                 Nombrado{Que::EscrituraTerminada, "EscrituraTerminada"},
                                 Nombrado{Que::EscrituraRechazada, "EscrituraRechazada"},
                                 Nombrado{Que::SinPuertoNiPlc, "SinPuertoNiPlc"},
                                 Nombrado{Que::ForzarSinTrama, "ForzarSinTrama"},
                                 Nombrado{Que::ForzarSinConexion, "ForzarSinConexion"},
                                 Nombrado{Que::ForzarEnDescanso, "ForzarEnDescanso"},
                                 Nombrado{Que::Forzado, "Forzado"},
                                 Nombrado{Que::AltaFueraDeTrama, "AltaFueraDeTrama"},
                                 Nombrado{Que::AltaSinLugar, "AltaSinLugar"},
                                 Nombrado{Que::AltaSinPuerto, "AltaSinPuerto"},
                                 Nombrado{Que::BloqueDadoDeAlta, "BloqueDadoDeAlta"},
                                 Nombrado{Que::NivelSinBloques, "NivelSinBloques"},
                                 Nombrado{Que::FallaDelGuion, "FallaDelGuion"},
                                 Nombrado{Que::DelCliente, "DelCliente"},
                                 Nombrado{Que::RepetidasDelCliente, "RepetidasDelCliente"},
                                 Nombrado{Que::AlCliente, "AlCliente"},
                                 Nombrado{Que::EnlaceNoLevanta, "EnlaceNoLevanta"},
                                 Nombrado{Que::BloqueConmutado, "BloqueConmutado"},
                                 Nombrado{Que::GuionDetenido, "GuionDetenido"},
                                 Nombrado{Que::GuionSigue, "GuionSigue"},
                                 Nombrado{Que::ClienteEntra, "ClienteEntra"},
                                 Nombrado{Que::ClienteSale, "ClienteSale"}};

constexpr bool enOrden() {
    for (std::size_t i = 0; i < kNombres.size(); ++i) {
        if (static_cast<std::size_t>(kNombres[i].que) != i) return false;
    }
    return true;
}
static_assert(kNombres.size() == static_cast<std::size_t>(Que::Ultimo) && enOrden(),
              "each kind has its name, in its place");

} // namespace

std::string_view nombreDe(Que que) { return kNombres[static_cast<std::size_t>(que)].nombre; }

std::optional<Que> queDeNombre(std::string_view nombre) {
    const auto* const n = std::find_if(kNombres.begin(), kNombres.end(),
                                       [&](const Nombrado& x) { return x.nombre == nombre; });
    return n == kNombres.end() ? std::nullopt : std::optional(n->que);
}

} // namespace kv
