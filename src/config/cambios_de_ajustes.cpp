// SPDX-License-Identifier: Apache-2.0
#include "config/cambios_de_ajustes.h"

#include "config/ini.h"
#include "config/problema.h"
#include "config/tabla_de_ajustes.h"
#include "text/numeros.h"

#include <string_view>

namespace kv {

std::vector<std::string> cambiosDeAjustes(const std::string& antes, const std::string& ahora) {
    const Ini viejo(antes);
    const Ini nuevo(ahora);
    std::vector<std::string> cambios;
    const auto comparar = [&](std::string_view seccion, std::string_view clave,
                              std::string_view porDefecto, const AjusteNumerico* numerico) {
        const auto valor = [&](const Ini& ini) {
            const auto hallado = ini.buscar(seccion, clave);
            return hallado && !hallado->valor.empty() ? hallado->valor : porDefecto;
        };
        const std::string_view era = valor(viejo);
        const std::string_view es = valor(nuevo);
        // What is no number of its range changes nothing but of the door, which closes for it.
        const auto vale = numeroDeTexto(es);
        const bool sirve = numerico == nullptr || clave.starts_with(kPrefijoDeEscucha) ||
                           (vale && *vale >= numerico->minimo && *vale <= numerico->maximo);
        if (era != es && sirve)
            cambios.push_back(std::string(clave) + ": " + citar(era) + " -> " + citar(es));
    };
    for (const AjusteNumerico& a : ajustesNumericos())
        comparar(kSeccionDeAjustes, a.clave, textoDeNumero(a.porDefecto), &a);
    for (const AjusteDeTexto& a : ajustesDeTexto()) {
        if (a.clave != kVer.clave) comparar(a.seccion, a.clave, a.porDefecto, nullptr);
    }
    return cambios;
}

} // namespace kv
