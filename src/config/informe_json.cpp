// SPDX-License-Identifier: Apache-2.0
#include "config/informe_json.h"

#include "text/json.h"
#include "text/numeros.h"

#include <cmath>

namespace kv {
namespace {

/// An object or a list that is being written: its members with commas between them.
class Grupo {
  public:
    explicit Grupo(char abre) : texto_(1, abre), cierra_(abre == '{' ? '}' : ']') {}
    Grupo& miembro(std::string_view nombre, const std::string& json) {
        return elemento(enJson(nombre) + ":" + json);
    }
    Grupo& miembro(std::string_view nombre, double numero) {
        return miembro(nombre, std::isfinite(numero) ? textoDeNumero(numero) : "null");
    }
    Grupo& elemento(const std::string& json) {
        if (texto_.size() > 1) texto_ += ',';
        texto_ += json;
        return *this;
    }
    [[nodiscard]] std::string fin() const { return texto_ + cierra_; }

  private:
    std::string texto_;
    char cierra_;
};

std::string bandera(bool si) { return si ? "true" : "false"; }

std::string puertosDe(const Revision& r) {
    Grupo lista('[');
    for (std::size_t i = 0; i < r.validacion.puertos.size(); ++i) {
        if (r.validacion.puertos[i] == Suerte::NoConstruir) continue;
        const Puerto& p = r.configuracion.listas.puertos[i];
        lista.elemento(Grupo('{')
                           .miembro("numero", p.numero)
                           .miembro("tiempoFuera", p.tiempoFuera)
                           .miembro("reintentos", p.reintentosMax)
                           .miembro("reconexion", p.segReconeccion)
                           .fin());
    }
    return lista.fin();
}

std::string estacionesDe(const Revision& r, std::size_t conexion) {
    Grupo lista('[');
    const bool preguntadas = conexion < r.alcance.size();
    for (const std::size_t i : r.validacion.conexiones[conexion].estaciones) {
        const Estacion& e = r.configuracion.listas.estaciones[i];
        Grupo una('{');
        una.miembro("plc", e.numero)
            .miembro("indice", e.indice)
            .miembro("sondea", bandera(r.validacion.estaciones[i] != Suerte::SinSondeo));
        if (preguntadas) {
            for (const AlcanceDeEstacion& a : r.alcance[conexion].estaciones) {
                if (a.estacion != i || a.registro.empty()) continue;
                una.miembro("responde", bandera(a.responde));
                if (a.responde) una.miembro("ms", static_cast<double>(a.ms));
            }
        }
        lista.elemento(una.fin());
    }
    return lista.fin();
}

std::string conexionesDe(const Revision& r) {
    Grupo lista('[');
    for (std::size_t c = 0; c < r.validacion.conexiones.size(); ++c) {
        const ConexionPrevista& conexion = r.validacion.conexiones[c];
        Grupo una('{');
        una.miembro("ip", enJson(conexion.ip))
            .miembro("puertoTCP", enJson(conexion.puertoTCP))
            .miembro("puerto", conexion.puerto)
            .miembro("bloques", static_cast<double>(conexion.bloques))
            .miembro("variables", conexion.variables)
            .miembro("lecturasPedidas", r.presupuestos[c].pedidas)
            .miembro("lecturasPermitidas", r.presupuestos[c].permite);
        if (c < r.alcance.size()) {
            una.miembro("conecta", bandera(r.alcance[c].motivo.empty()));
            if (!r.alcance[c].motivo.empty()) una.miembro("motivo", enJson(r.alcance[c].motivo));
        }
        lista.elemento(una.miembro("estaciones", estacionesDe(r, c)).fin());
    }
    return lista.fin();
}

std::string problemasDe(const Problemas& problemas) {
    Grupo lista('[');
    for (const Problema& p : problemas.lista())
        lista.elemento(Grupo('{')
                           .miembro("archivo", enJson(rutaLegible(p.archivo)))
                           .miembro("linea", static_cast<double>(p.linea))
                           .miembro("que", enJson(p.que))
                           .miembro("consecuencia", enJson(p.consecuencia))
                           .fin());
    return lista.fin();
}

} // namespace

std::string informeJsonDe(const Revision& r) {
    const Problemas& problemas = r.configuracion.problemas;
    Grupo impedimentos('[');
    for (const std::string& i : r.impedimentos)
        impedimentos.elemento(enJson(i));
    return Grupo('{')
               .miembro("configuracion", enJson(rutaLegible(r.configuracion.listas.archivo)))
               .miembro("proyecto", enJson(r.configuracion.ubicacion.nombreProyecto))
               .miembro("escucha", enJson(r.escucha.cerrada ? "" : r.escucha.direccion))
               .miembro("puertoEscucha", r.puertoEscucha)
               .miembro("pausaMs", r.pausaMs)
               .miembro("bloques", static_cast<double>(r.validacion.bloquesConstruidos))
               .miembro("variables", r.validacion.variables)
               .miembro("puertos", puertosDe(r))
               .miembro("conexiones", conexionesDe(r))
               .miembro("problemas", problemasDe(problemas))
               .miembro("problemasCallados", static_cast<double>(problemas.demas()))
               .miembro("impedimentos", impedimentos.fin())
               .miembro("resultado", r.resultado())
               .fin() +
           "\n";
}

} // namespace kv
