// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_limites.h"

#include <algorithm>

namespace kv::mundo {
namespace {

constexpr std::size_t kCadaTantasBarridas = 30;
constexpr std::size_t kColaDelCliente = 4U << 20;
constexpr const char* kAjustes = "/kv/sis_config.ini";

} // namespace

void ReglaDeLimites::barrer() {
    const Sucesos& sucesos = c_.motor.sucesos;
    c_.exigir(sucesos.siguiente() - sucesos.primero() <= Sucesos::kMaximo, "events are bounded", 0);
    c_.exigir(c_.motor.servidor.zocalo().enCola() <= kColaDelCliente,
              "what waits for the client is bounded", 0);
    const std::string ajustes = archivos_.contenido(kAjustes);
    c_.exigir(c_.ajustesPerdidos ||
                  ajustes.find("Ajena=" + std::to_string(c_.plan.semilla)) != std::string::npos,
              "settings of others stay", 0);
    if (++vez_ % kCadaTantasBarridas == 0) registros();
}

/// The day's files hold whole lines only, and are taken away before they fill the memory.
void ReglaDeLimites::registros() {
    for (const std::string& ruta : archivos_.en("/kv/logs_driver/")) {
        const std::string texto = archivos_.contenido(ruta);
        c_.exigir(texto.ends_with("\r\n"), "a log holds whole lines", 0);
        if (ruta.find("escrituras.txt") != std::string::npos) continue;
        const std::string dia = ruta.substr(ruta.rfind('/') + 1, 6);
        for (std::size_t i = 0; i < texto.size();) {
            const std::size_t fin = std::min(texto.find("\r\n", i), texto.size());
            const std::string_view linea = std::string_view(texto).substr(i, fin - i);
            c_.exigir(linea.starts_with("Log: ") && linea.size() > 15, "a line of a log is whole",
                      0);
            c_.exigir(linea.substr(13, 2) == dia.substr(0, 2) &&
                          linea.substr(8, 2) == dia.substr(2, 2) &&
                          linea.substr(5, 2) == dia.substr(4, 2),
                      "an entry lies in the log of its day", 0);
            i = fin + 2;
        }
        archivos_.borrar(ruta);
    }
}

void ReglaDeLimites::alFinal() { registros(); }

} // namespace kv::mundo
