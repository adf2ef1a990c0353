// SPDX-License-Identifier: Apache-2.0
#include "script/miembros.h"

#include "text/texto.h"

#include <algorithm>
#include <iterator>

namespace kv {
namespace {

using enum OperacionDeMw;

constexpr MiembroDeMw kMiembros[] = {
    {"writeMW", writeMW, "tn", Nombra::Registro},
    {"READBLOQ", READBLOQ, "t", Nombra::Estacion},
    {"escribirDireccion", escribirDireccion, "tn", Nombra::Registro},
    {"forzarPoleo", forzarPoleo, "t", Nombra::Estacion},
    {"forzarBloque_porID", forzarBloque_porID, "n", Nombra::Nada},
    {"forzarBloque_porNivel", forzarBloque_porNivel, "n", Nombra::Nada},
    {"forzarBloque_porNivel_NVeces", forzarBloque_porNivel_NVeces, "nn", Nombra::Nada},
    {"Activar_Desactivar_Bloque_Por_Solicitud", Activar_Desactivar_Bloque_Por_Solicitud, "ns",
     Nombra::Nada},
    {"Activar_Dir", Activar_Dir, "ts", Nombra::Clave},
    {"ModificarScanDeBloque", ModificarScanDeBloque, "nn", Nombra::Nada},
    {"Log", Log, "t", Nombra::Nada},
};

} // namespace

std::span<const MiembroDeMw> miembrosDeMw() { return kMiembros; }

const MiembroDeMw* miembroDeMw(std::string_view nombre) {
    const auto* m =
        std::find_if(std::begin(kMiembros), std::end(kMiembros),
                     [&](const MiembroDeMw& x) { return igualSinCaja(x.nombre, nombre); });
    return m == std::end(kMiembros) ? nullptr : m;
}

} // namespace kv
