// SPDX-License-Identifier: Apache-2.0
#include "config/presupuesto.h"

#include "plant/claves_de_bloque.h"
#include "text/numeros.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kv {
namespace {

constexpr std::size_t kScansNombrados = 3;

std::string bloques(double cuantos) {
    return textoDeNumero(cuantos) + (cuantos == 1 ? " bloque" : " bloques");
}

} // namespace

std::vector<Presupuesto> presupuestos(const ListasDeConfiguracion& listas, const Validacion& v,
                                      double pausaMs) {
    std::vector<std::size_t> conexionDe(listas.estaciones.size());
    for (std::size_t c = 0; c < v.conexiones.size(); ++c) {
        for (const std::size_t e : v.conexiones[c].estaciones)
            conexionDe[e] = c;
    }
    std::vector<Presupuesto> todos(v.conexiones.size());
    for (Presupuesto& p : todos)
        p.permite = pausaMs > 0 ? 1000 / pausaMs : std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < v.bloques.size(); ++i) {
        const ConfiguracionDeBloque& b = listas.bloques[i];
        if (v.bloques[i] != Suerte::Construir || !b.activoPorDefecto || b.scanSegundos == 0)
            continue;
        if (v.estaciones[v.estacionDeBloque[i]] != Suerte::Construir) continue;
        Presupuesto& p = todos[conexionDe[v.estacionDeBloque[i]]];
        const auto n = static_cast<double>(registrosDeBloque(b.direccion, b.cantidad).size());
        p.lecturas[b.scanSegundos] += n;
        p.registros += n;
        p.pedidas += n / b.scanSegundos;
    }
    return todos;
}

std::string porSegundo(double lecturas) {
    if (std::isinf(lecturas)) return "cualquier cantidad";
    if (lecturas >= 10) return conComa(std::floor(lecturas));
    if (lecturas >= 0.1 || lecturas == 0) return conComa(std::floor(lecturas * 10 + 1e-9) / 10);
    return "menos de 0,1";
}

std::string textoDePresupuesto(const Presupuesto& p, double pausaMs) {
    std::string quien;
    if (p.lecturas.size() > kScansNombrados) {
        quien = bloques(p.registros);
    } else {
        for (const auto& [scan, n] : p.lecturas)
            quien += (quien.empty() ? "" : " y ") + bloques(n) + " a " + conComa(scan) + " s";
    }
    const bool uno = p.registros == 1;
    return quien + (uno ? " pide " : " piden ") + porSegundo(p.pedidas) +
           " lecturas/s; la pausa de " + conComa(pausaMs) + " ms permite " + porSegundo(p.permite);
}

void revisarPresupuestos(const ListasDeConfiguracion& listas, const Validacion& v,
                         const std::vector<Presupuesto>& todos, double pausaMs,
                         Problemas& problemas) {
    for (std::size_t c = 0; c < todos.size(); ++c) {
        const Presupuesto& p = todos[c];
        if (p.alcanza()) continue;
        const ConexionPrevista& conexion = v.conexiones[c];
        const std::string donde = citarUtf8(conexion.ip + ":" + conexion.puertoTCP);
        const double vuelta = std::round(p.registros * pausaMs / 100) / 10;
        problemas.agregar(listas.archivo, listas.lineasDeEstaciones[conexion.estaciones.front()],
                          "en " + donde + " " + textoDePresupuesto(p, pausaMs),
                          "una vuelta completa tarda al menos " + conComa(vuelta) + " s");
    }
}

} // namespace kv
