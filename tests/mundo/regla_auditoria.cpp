// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_auditoria.h"

#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv::mundo {
namespace {

constexpr std::size_t kMaximoDeCampo = 200;
constexpr std::string_view kRepetida = "la anterior ";
constexpr std::string_view kSinAnotar = " lineas mas sin anotar";
constexpr std::string_view kDisco = "el disco no las tomo";

std::string campo(std::string_view texto) {
    constexpr std::string_view kDigitos = "0123456789ABCDEF";
    std::string salida;
    for (const char c : texto.substr(0, kMaximoDeCampo)) {
        const auto b = static_cast<std::uint8_t>(c);
        if (b >= 32 && b != 127 && c != ';' && c != '\\')
            salida += c;
        else
            salida += {'\\', kDigitos[b / 16], kDigitos[b % 16]};
    }
    return texto.size() > kMaximoDeCampo ? salida + "..." : salida;
}

/// "yymmdd", as files are called, of "dd/mm/yyyy ...".
std::string diaDe(std::string_view linea) {
    if (linea.size() < 10) return {};
    return std::string(linea.substr(8, 2)) + std::string(linea.substr(3, 2)) +
           std::string(linea.substr(0, 2));
}

} // namespace

void ReglaDeAuditoria::esperar(std::string_view origen, std::string_view direccion,
                               std::string_view anterior, double valor, std::string_view fin) {
    esperadas_.push_back(windows1252DesdeUtf8(campo(origen) + ";" + campo(direccion) + ";" +
                                              std::string(anterior) + ";" + textoDeNumero(valor) +
                                              ";" + campo(fin)));
}

void ReglaDeAuditoria::leer() {
    // The day that is now is written last, also when the clock went back to it.
    const std::string hoy = formatoDeDia(c_.bucle.reloj().ahora());
    auto rutas = archivos_.en("/kv/logs_driver/");
    std::stable_partition(rutas.begin(), rutas.end(), [&hoy](const std::string& ruta) {
        return ruta.substr(ruta.rfind('/') + 1, 6) != hoy;
    });
    for (const std::string& ruta : rutas) {
        if (ruta.find("escrituras.txt") == std::string::npos) continue;
        const std::string texto = archivos_.contenido(ruta);
        const std::string_view todo = texto;
        const std::string dia = ruta.substr(ruta.rfind('/') + 1, 6);
        c_.exigir(todo.ends_with("\r\n"), "the record of writes holds whole lines", 0);
        for (std::size_t i = 0; i < todo.size();) {
            const std::size_t fin = std::min(todo.find("\r\n", i), todo.size());
            linea(todo.substr(i, fin - i), dia);
            i = fin + 2;
        }
        archivos_.borrar(ruta);
    }
}

void ReglaDeAuditoria::linea(std::string_view l, std::string_view dia) {
    c_.exigir(std::count(l.begin(), l.end(), ';') == 5, "a line of the record has six fields", 0);
    const std::string_view cuerpo = l.substr(std::min(l.find(';'), l.size() - 1) + 1);
    if (!cuerpo.starts_with(";;;;")) {
        // A count lies with what it counts, even when it is written later.
        c_.exigir(diaDe(l) == dia, "a line lies in the file of its day", 0);
        c_.exigir(consumir(cuerpo), "the record holds what happened, in its order", 0);
        return;
    }
    const std::string_view dicho = cuerpo.substr(4);
    const bool repetida = dicho.starts_with(kRepetida);
    const std::string_view desdeNumero = dicho.substr(repetida ? kRepetida.size() : 0);
    const auto n = numeroDeTexto(desdeNumero.substr(0, desdeNumero.find(' '))).value_or(0);
    c_.exigir(n >= 1, "a count of the record is one", 0);
    if (dicho.ends_with(kDisco) || dicho.ends_with(kSinAnotar)) {
        avisadas_ += static_cast<std::uint64_t>(n);
        return;
    }
    for (double k = 0; k < n; ++k)
        c_.exigir(repetida && consumir(std::string(ultima_)), "what is counted happened", 0);
}

/// The next line that is like this one; those before it are missing.
bool ReglaDeAuditoria::consumir(std::string_view cuerpo) {
    const auto esta = std::find(esperadas_.begin(), esperadas_.end(), cuerpo);
    if (esta == esperadas_.end()) return false;
    faltan_ += static_cast<std::uint64_t>(esta - esperadas_.begin());
    ultima_ = cuerpo;
    esperadas_.erase(esperadas_.begin(), esta + 1);
    return true;
}

void ReglaDeAuditoria::alFinal() {
    leer();
    faltan_ += esperadas_.size();
    c_.exigir(faltan_ == avisadas_, "what the record lacks it counts",
              static_cast<std::size_t>(faltan_));
}

} // namespace kv::mundo
