// SPDX-License-Identifier: Apache-2.0
#include "evidence/vivo.h"

#include "config/tabla_de_ajustes.h"
#include "platform/epoll/cable_local.h"
#include "text/json.h"
#include "text/numeros.h"

#include <algorithm>
#include <functional>

namespace kv {
namespace {

constexpr double kEsperaSegundos = 20;
constexpr double kSucesos = 200'000;
constexpr std::size_t kPorQues = 3;

using AlRenglon = std::function<void(const Json&)>;

/// One request and its lines, of which `cada` hears. True for what has only one line.
std::string pedir(CableLocal& cable, const std::string& pedido, bool unSolo,
                  const AlRenglon& cada) {
    cable.enviar("{\"pedido\":" + pedido + "}");
    std::string todo;
    std::string renglon;
    for (;;) {
        if (!cable.renglon(renglon, kEsperaSegundos)) throw FallaDeCable{"el driver no contesta"};
        std::string mala;
        const auto j = leerJson(renglon, mala);
        if (!j) throw FallaDeCable{"el driver dice algo que no es JSON: " + mala};
        if (const std::string error = campo(*j, "error"); !error.empty()) throw FallaDeCable{error};
        if (j->miembro("fin") != nullptr) return todo;
        todo += renglon + "\n";
        if (cada) cada(*j);
        if (unSolo) return todo;
    }
}

/// The names of the silent stations, "port.PLC", each as a variable of its own says it.
std::vector<std::string> quienesCallan(const std::vector<Json>& conexiones,
                                       const std::vector<std::string>& variables) {
    std::vector<std::string> nombres;
    for (const Json& c : conexiones) {
        const Json* estaciones = c.miembro("estaciones");
        for (const Json& e :
             estaciones != nullptr ? estaciones->elementos() : std::vector<Json>()) {
            const Json* callada = e.miembro("callada");
            if (callada == nullptr || !callada->logico().value_or(false)) continue;
            const std::string fin = "." + campo(e, "plc") + "@" + campo(c, "direccion");
            const auto suya = std::find_if(variables.begin(), variables.end(),
                                           [&](const auto& v) { return v.ends_with(fin); });
            if (suya != variables.end()) nombres.push_back(suya->substr(0, suya->find('@')));
        }
    }
    return nombres;
}

void preguntarTodo(CableLocal& cable, Vivo& v) {
    std::vector<Json> conexiones;
    std::vector<std::string> estaciones; // "port.PLC@connection"
    v.renglones["estado"] =
        pedir(cable, "\"estado\"", false, [&v](const Json& j) { v.estado = j; });
    v.renglones["conexiones"] = pedir(cable, "\"conexiones\"", false, [&](const Json& j) {
        conexiones.push_back(j);
        const Json* arriba = j.miembro("conectada");
        if (arriba != nullptr && !arriba->logico().value_or(true))
            v.caidas.push_back(campo(j, "porque"));
    });
    v.renglones["bloques"] = pedir(cable, "\"bloques\"", false, [&](const Json& j) {
        const std::string direccion = campo(j, "direccion");
        std::string estacion =
            direccion.substr(0, direccion.rfind('.')) + "@" + campo(j, "conexion");
        if (estaciones.empty() || estaciones.back() != estacion)
            estaciones.push_back(std::move(estacion));
    });
    const auto callan = quienesCallan(conexiones, estaciones);
    v.cuantasCalladas = callan.size();
    for (std::size_t i = 0; i < std::min(kPorQues, callan.size()); ++i)
        pedir(cable, "\"porque\",\"direccion\":" + enJson(callan[i]), true,
              [&](const Json& j) { v.calladas.push_back(callan[i] + ": " + campo(j, "porque")); });
    for (const std::string que : {"contadores", "variables"})
        v.renglones[que] = pedir(cable, "\"" + que + "\"", false, {});
    const double proximo = numeroDeTexto(campo(v.estado, "proximoSuceso")).value_or(0);
    const std::string desde = textoDeNumero(std::max(0.0, proximo - kSucesos));
    v.renglones["sucesos"] = pedir(cable, "\"sucesos\",\"desde\":" + desde, false,
                                   [&v](const Json& j) { v.captura.agregar(j); });
}

} // namespace

std::string campo(const Json& j, std::string_view nombre) {
    const Json* m = j.miembro(nombre);
    if (m == nullptr || m->clase() == Json::Clase::Nulo) return {};
    return m->texto() != nullptr ? *m->texto() : m->comoJson();
}

void preguntar(const std::string& carpeta, Vivo& vivo) {
    try {
        CableLocal cable(carpeta + "/" + std::string(kArchivoDePuertaLocal));
        preguntarTodo(cable, vivo);
    } catch (const FallaDeCable& f) {
        vivo.falla = f.que;
    }
}

} // namespace kv
