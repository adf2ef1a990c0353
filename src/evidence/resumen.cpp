// SPDX-License-Identifier: Apache-2.0
#include "evidence/resumen.h"

#include "cli/version.h"
#include "evidence/hora.h"
#include "text/nombre_del_programa.h"
#include "text/texto.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::size_t kAncho = 200;

class Renglones {
  public:
    void uno(const std::string& que, const std::string& valor) {
        std::string r = enUnaLinea(que + ": " + (valor.empty() ? "no se sabe" : valor));
        renglones_.emplace_back(comienzo(r, kAncho));
    }
    /// At most `maximo` lines, the last of which says how many more there are.
    void varios(const std::string& que, const std::vector<std::string>& cuales, std::size_t cuantos,
                std::size_t maximo) {
        const std::size_t hay = std::min(cuales.size(), maximo);
        for (std::size_t i = 0; i < hay; ++i) {
            const bool ultimo = i + 1 == hay && cuantos > hay;
            const std::string mas =
                ultimo ? " (y " + std::to_string(cuantos - hay) + " más)" : std::string();
            uno(que, std::string(comienzo(cuales[i], kAncho - que.size() - mas.size() - 2)) + mas);
        }
    }
    [[nodiscard]] std::string texto() const {
        std::string t;
        for (std::size_t i = 0; i < std::min(renglones_.size(), kRenglonesDelResumen); ++i)
            t += renglones_[i] + "\n";
        return t;
    }

  private:
    std::vector<std::string> renglones_;
};

void decirLoVivo(Renglones& r, const Vivo& v) {
    const auto e = [&v](std::string_view que) { return campo(v.estado, que); };
    if (v.estado.clase() != Json::Clase::Objeto) return r.uno("Driver", v.falla);
    r.uno("Driver", "corre desde " + e("desde") + (v.falla.empty() ? "" : "; " + v.falla));
    r.uno("Variables", "OK " + e("ok") + ", BAD " + e("bad") + ", viejas " + e("viejas") +
                           ", apagadas " + e("apagadas"));
    r.uno("Conexiones", e("conectadas") + " arriba de " + e("conexiones") +
                            "; estaciones que no contestan: " + e("estacionesCalladas"));
    r.varios("Caída", v.caidas, v.caidas.size(), 2);
    r.varios("No contesta", v.calladas, v.cuantasCalladas, 3);
    r.uno("Cliente", e("cliente") + "; escrituras en espera: " + e("escriturasEnEspera"));
    const Captura& c = v.captura;
    r.uno("Captura", c.tramas() == 0 ? "ninguna trama"
                                     : std::to_string(c.tramas()) + " tramas, de " + c.primera() +
                                           " a " + c.ultima());
}

} // namespace

std::string resumenDe(const DatosDelResumen& d, const Vivo& v) {
    Renglones r;
    r.uno("Evidencia", conVersion(kNombreDelPrograma) + ", " + formatoGeneral(d.hecha) + ", zona " +
                           zonaDe(d.hecha));
    r.uno("Planta", d.carpeta + (campo(v.estado, "proyecto").empty()
                                     ? std::string()
                                     : ", proyecto " + campo(v.estado, "proyecto")));
    r.uno("Configuración", d.configuracion);
    decirLoVivo(r, v);
    const std::string corrida = campo(v.estado, "guion");
    r.uno("Guion", d.guion.empty() ? "no hay" : (corrida.empty() ? "" : corrida + ", ") + d.guion);
    if (!d.grabaciones.empty()) r.varios("Grabación", d.grabaciones, d.grabaciones.size(), 1);
    r.uno("Último arranque", d.arranque);
    r.varios("Falta", d.faltan, d.faltan.size(), 1);
    r.varios("Error o aviso", d.avisos, d.avisos.size(), 3);
    return r.texto();
}

} // namespace kv
