// SPDX-License-Identifier: Apache-2.0
#include "operator/revision_de_guion.h"

#include "operator/editor_de_guion.h"
#include "script/avisos.h"
#include "script/errores.h"
#include "text/windows1252.h"

namespace kv {

std::string queGuionHay(Archivos& archivos, const std::string& ruta) {
    if (ruta.empty()) return "no hay";
    const std::string cual = rutaLegible(archivos.comoEsta(ruta));
    return archivos.existe(ruta) ? cual : "no hay (se busca " + cual + ")";
}

void revisarGuion(Archivos& archivos, Revision& r) {
    const std::string ruta = rutaDelGuion(r.configuracion.ubicacion.rutaConfiguracion);
    Problemas& problemas = r.configuracion.problemas;
    r.guion = queGuionHay(archivos, ruta);
    if (ruta.empty() || !archivos.existe(ruta)) return;
    const auto agregar = [&](int linea, int columna, const std::string& que,
                             const char* consecuencia) {
        problemas.agregar(ruta, static_cast<std::size_t>(linea),
                          "columna " + std::to_string(columna) + ": " + que, consecuencia);
    };
    const auto bytes = archivos.leer(ruta, kMaximoDelGuion);
    if (!bytes)
        return problemas.agregar(ruta, 0,
                                 archivos.huella(ruta).largo > kMaximoDelGuion
                                     ? std::string(kGuionDemasiadoLargo.castellano)
                                     : "el guion no se puede leer",
                                 "no corre");
    if (const auto utf8 = avisoDeUtf8(*bytes))
        agregar(utf8->linea, utf8->columna, utf8->texto, "sus letras con acento se leen cambiadas");
    const std::string texto = utf8DesdeWindows1252(*bytes);
    if (const auto falla = EditorDeGuion::comprobar(texto))
        return agregar(falla->linea, falla->columna, falla->descripcion, "el guion no corre");
    const DireccionesDePlanta planta = direccionesDe(r.configuracion.listas, r.validacion);
    for (const AvisoDeGuion& a : avisosDeGuion(texto, {&planta}))
        agregar(a.linea, a.columna, a.texto, "es un aviso: el guion se corre igual");
}

} // namespace kv
