// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/local.h"

#include "ClienteKV2200/salida.h"
#include "config/tabla_de_ajustes.h"
#include "platform/epoll/cable_local.h"
#include "text/json.h"
#include "text/json_leido.h"
#include "text/numeros.h"

#include <algorithm>
#include <chrono>
#include <ostream>

namespace kv::cliente {
namespace {

std::string campo(const Json& j, std::string_view nombre) {
    const Json* m = j.miembro(nombre);
    if (m == nullptr || m->clase() == Json::Clase::Nulo) return {};
    if (m->logico()) return *m->logico() ? "si" : "no";
    std::string texto = m->texto() != nullptr ? *m->texto() : m->comoJson();
    // For a terminal: nothing that steers it.
    std::replace_if(
        texto.begin(), texto.end(),
        [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, '?');
    return texto;
}

std::string conBlanco(const std::string& t) { return t.empty() ? t : " " + t; }

/// Lists in one another are printed line by line, each behind the name of its place.
void todosLosCampos(const Json& j, const std::string& margen, std::string& texto) {
    for (std::size_t i = 0; i < j.nombres().size(); ++i) {
        const Json& v = j.elementos()[i];
        texto += margen + j.nombres()[i] + ": " + campo(j, j.nombres()[i]) + "\n";
        if (v.clase() == Json::Clase::Objeto) todosLosCampos(v, margen + "  ", texto);
        for (const Json& e : v.elementos()) {
            if (v.clase() == Json::Clase::Lista) todosLosCampos(e, margen + "  ", texto);
        }
    }
}

std::string variableEnTexto(const Json& j) {
    return campo(j, "direccion") + " " + campo(j, "valor") + " " + campo(j, "estado") +
           (campo(j, "vieja") == "si" ? " vieja" : "");
}

std::string sucesoEnTexto(const Json& j) {
    if (const auto perdidos = campo(j, "perdidos"); !perdidos.empty())
        return "(" + perdidos + " sucesos anteriores ya no están)";
    return campo(j, "numero") + " " + campo(j, "hora") + " " + campo(j, "suceso") +
           conBlanco(campo(j, "conexion")) + conBlanco(campo(j, "bloque")) +
           conBlanco(campo(j, "texto"));
}

std::string enTexto(const Orden& orden, const Json& j) {
    switch (orden.accion) {
    case Accion::Leer:
    case Accion::Sincronizar:
        return variableEnTexto(j);
    case Accion::Vigilar:
        if (const auto saltados = campo(j, "saltados"); !saltados.empty())
            return "(" + saltados + " cambios intermedios no se mostraron)";
        return variableEnTexto(j);
    case Accion::Sucesos:
        return sucesoEnTexto(j);
    case Accion::PorQue:
    case Accion::Conexiones:
        return campo(j, "porque");
    case Accion::Escribir:
        return campo(j, "resultado");
    default: {
        std::string texto;
        todosLosCampos(j, "", texto);
        return texto.substr(0, texto.empty() ? 0 : texto.size() - 1);
    }
    }
}

std::string pedidoDe(const Orden& o) {
    std::string pedido;
    ObjetoJson j(pedido);
    const auto que = [&j](std::string_view cual) { j.texto("pedido", cual); };
    const auto numero = [](const std::string& t) { return numeroDeTexto(t).value_or(0); };
    switch (o.accion) {
    case Accion::Leer: {
        que("variables");
        ListaJson lista(j.valor("direcciones"));
        for (const std::string& d : o.direcciones)
            lista.texto(d);
        lista.fin();
        break;
    }
    case Accion::Sincronizar:
        que("variables");
        break;
    case Accion::Escribir:
        que("escribir");
        j.texto("direccion", o.direcciones.front()).numero("valor", numero(o.valor));
        break;
    case Accion::Forzar:
        que("forzar");
        j.numero("nivel", numero(o.nivel)).numero("veces", numero(o.veces));
        break;
    case Accion::Vigilar:
        que("vigilar");
        j.logico("valores", true);
        break;
    case Accion::Estado:
        que("estado");
        break;
    case Accion::PorQue:
        que("porque");
        j.texto("direccion", o.direcciones.front());
        break;
    case Accion::Sucesos:
        que(o.seguir ? "vigilar" : "sucesos");
        if (o.seguir) j.logico("sucesos", true);
        if (o.seguir || o.desde.empty()) break;
        esNumerico(o.desde) ? j.numero("desde", numero(o.desde)) : j.texto("desde", o.desde);
        break;
    case Accion::Bloques:
        que("bloques");
        break;
    case Accion::Conexiones:
        que("conexiones");
        break;
    case Accion::Contadores:
        que("contadores");
        break;
    }
    j.fin();
    return pedido;
}

/// Whether a line is the last of an answer: of some there is only one.
bool esLaUltima(const Orden& o, const Json& j) {
    return campo(j, "fin") == "si" || o.accion == Accion::PorQue || o.accion == Accion::Forzar;
}

bool sigueSinFin(const Orden& o) { return o.accion == Accion::Vigilar || o.seguir; }

int conversar(const Orden& o, std::ostream& salida) {
    using Reloj = std::chrono::steady_clock;
    CableLocal cable(o.local + "/" + std::string(kArchivoDePuertaLocal));
    cable.enviar(pedidoDe(o));
    const auto fin = Reloj::now() + std::chrono::duration<double>(o.duranteSegundos);
    std::string renglon;
    for (bool primero = true;; primero = false) {
        const bool sinFin = sigueSinFin(o);
        const double quedan =
            o.duranteSegundos > 0
                ? std::max(0.0, std::chrono::duration<double>(fin - Reloj::now()).count())
                : -1;
        if (!cable.renglon(renglon, sinFin ? quedan : o.esperaSegundos)) {
            if (sinFin) return kHecho;
            throw FallaDeCable{primero ? "el driver no contesta"
                                       : "la respuesta no termina de llegar"};
        }
        std::string mala;
        const auto j = leerJson(renglon, mala);
        if (!j) throw FallaDeCable{"el driver dice algo que no es JSON: " + mala};
        if (const auto error = campo(*j, "error"); !error.empty()) throw FallaDeCable{error};
        const bool ultima = esLaUltima(o, *j);
        const bool acuse = j->miembro("aceptada") != nullptr || (sinFin && primero) ||
                           j->miembro("cuantos") != nullptr;
        if (!acuse) salida << (o.json ? renglon : enTexto(o, *j)) << '\n';
        salida.flush();
        if (!ultima || sinFin) continue;
        return o.accion == Accion::Escribir && campo(*j, "confirmada") != "si" ? kNoHecho : kHecho;
    }
}

} // namespace

int hacerLocal(const Orden& orden, std::ostream& salida, std::ostream& errores) {
    try {
        return conversar(orden, salida);
    } catch (const FallaDeCable& f) {
        errores << lineaDeError(f.que, orden.json) << '\n';
        return kNoHecho;
    }
}

} // namespace kv::cliente
