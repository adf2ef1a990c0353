// SPDX-License-Identifier: Apache-2.0
#include "config/informe_json.h"

#include "text/json.h"

namespace kv {
namespace {

void puertosDe(const Revision& r, std::string& a) {
    ListaJson lista(a);
    for (std::size_t i = 0; i < r.validacion.puertos.size(); ++i) {
        if (r.validacion.puertos[i] == Suerte::NoConstruir) continue;
        const Puerto& p = r.configuracion.listas.puertos[i];
        ObjetoJson(lista.elemento())
            .numero("numero", p.numero)
            .numero("tiempoFuera", p.tiempoFuera)
            .numero("reintentos", p.reintentosMax)
            .numero("reconexion", p.segReconeccion)
            .fin();
    }
    lista.fin();
}

void estacionesDe(const Revision& r, std::size_t conexion, std::string& destino) {
    ListaJson lista(destino);
    const bool preguntadas = conexion < r.alcance.size();
    for (const std::size_t i : r.validacion.conexiones[conexion].estaciones) {
        const Estacion& e = r.configuracion.listas.estaciones[i];
        ObjetoJson una(lista.elemento());
        una.numero("plc", e.numero)
            .numero("indice", e.indice)
            .logico("sondea", r.validacion.estaciones[i] != Suerte::SinSondeo);
        if (preguntadas) {
            for (const AlcanceDeEstacion& a : r.alcance[conexion].estaciones) {
                if (a.estacion != i || a.registro.empty()) continue;
                una.logico("responde", a.responde);
                if (a.responde) una.numero("ms", static_cast<double>(a.ms));
            }
        }
        una.fin();
    }
    lista.fin();
}

void conexionesDe(const Revision& r, std::string& a) {
    ListaJson lista(a);
    for (std::size_t c = 0; c < r.validacion.conexiones.size(); ++c) {
        const ConexionPrevista& conexion = r.validacion.conexiones[c];
        ObjetoJson una(lista.elemento());
        una.texto("ip", conexion.ip)
            .texto("puertoTCP", conexion.puertoTCP)
            .numero("puerto", conexion.puerto)
            .numero("bloques", static_cast<double>(conexion.bloques))
            .numero("variables", conexion.variables)
            .numero("lecturasPedidas", r.presupuestos[c].pedidas)
            .numero("lecturasPermitidas", r.presupuestos[c].permite);
        if (c < r.alcance.size()) {
            una.logico("conecta", r.alcance[c].motivo.empty());
            if (!r.alcance[c].motivo.empty()) una.texto("motivo", r.alcance[c].motivo);
        }
        estacionesDe(r, c, una.valor("estaciones"));
        una.fin();
    }
    lista.fin();
}

void problemasDe(const Problemas& problemas, std::string& a) {
    ListaJson lista(a);
    for (const Problema& p : problemas.lista())
        ObjetoJson(lista.elemento())
            .texto("archivo", rutaLegible(p.archivo))
            .numero("linea", static_cast<double>(p.linea))
            .texto("que", p.que)
            .texto("consecuencia", p.consecuencia)
            .fin();
    lista.fin();
}

} // namespace

std::string informeJsonDe(const Revision& r) {
    const Problemas& problemas = r.configuracion.problemas;
    std::string json;
    ObjetoJson o(json);
    o.texto("configuracion", rutaLegible(r.configuracion.listas.archivo))
        .texto("proyecto", r.configuracion.ubicacion.nombreProyecto)
        .texto("guion", r.guion)
        .texto("escucha", r.escucha.cerrada ? "" : r.escucha.direccion)
        .numero("puertoEscucha", r.puertoEscucha)
        .numero("pausaMs", r.pausaMs)
        .numero("bloques", static_cast<double>(r.validacion.bloquesConstruidos))
        .numero("variables", r.validacion.variables);
    puertosDe(r, o.valor("puertos"));
    conexionesDe(r, o.valor("conexiones"));
    problemasDe(problemas, o.valor("problemas"));
    o.numero("problemasCallados", static_cast<double>(problemas.demas()));
    ListaJson impedimentos(o.valor("impedimentos"));
    for (const std::string& i : r.impedimentos)
        impedimentos.texto(i);
    impedimentos.fin();
    o.numero("resultado", r.resultado()).fin();
    return json + "\n";
}

} // namespace kv
