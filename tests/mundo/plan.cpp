// SPDX-License-Identifier: Apache-2.0
#include "mundo/plan.h"

#include "apoyo/configuracion.h"
#include "mundo/azar.h"

#include <algorithm>
#include <map>

namespace kv::mundo {
namespace {

constexpr std::int64_t kHoraMs = 3'600'000;

struct Extension {
    std::int64_t conexiones, bloques, duracionMs;
};

Extension extension(Azar& azar) {
    const std::int64_t suerte = azar.entre(1, 100);
    const std::int64_t larga = azar.entre(8, 10) * kHoraMs / 2;
    if (suerte <= 12) return {1, azar.entre(1, 16), larga};
    if (suerte <= 25) return {azar.entre(2, 3), azar.entre(1, 12), larga};
    if (suerte <= 90) return {azar.entre(6, 10), azar.entre(8, 12), larga};
    if (suerte <= 97) return {azar.entre(20, 60), azar.entre(2, 6), kHoraMs};
    return {azar.entre(100, 200), azar.entre(1, 5), kHoraMs / 3};
}

std::string segundos(std::int64_t ms) {
    std::string s = std::to_string(ms / 1000);
    if (ms % 1000 != 0) s += "." + std::to_string(1000 + ms % 1000).substr(1);
    return s;
}

std::string hexadecimalDe(int n) {
    constexpr std::string_view kDigitos = "0123456789ABCDEF";
    return {kDigitos[static_cast<std::size_t>(n / 16)], kDigitos[static_cast<std::size_t>(n % 16)]};
}

PlanDePuerto puerto(Azar& azar) {
    PlanDePuerto p;
    p.tiempoFueraMs = azar.uno(8) ? azar.enEscala(10'000, 200'000) : azar.enEscala(500, 8000);
    if (azar.uno(12)) p.tiempoFueraMs = azar.entre(1, 3) * 60'000;
    p.reintentos = static_cast<int>(azar.entre(0, 4));
    p.reconexionMs = azar.enEscala(1000, 200'000);
    return p;
}

std::int64_t scan(Azar& azar, bool saturada) {
    if (saturada) return azar.enEscala(200, 4000);
    if (azar.uno(40)) return 0; // once, when the connection comes up
    if (azar.uno(20)) return azar.enEscala(60'001, 3'600'000);
    return azar.enEscala(4000, 120'000);
}

/// What its stations always do.
void habituar(PlanDeConexion& c, Azar& azar) {
    const std::int64_t cuantos = azar.uno(2) ? 1 : 4;
    c.habitos.clear();
    for (std::int64_t k = 0; k < cuantos; ++k)
        c.habitos.push_back(
            static_cast<Habito>(azar.entre(0, static_cast<std::int64_t>(Habito::Cuantos) - 1)));
    if (c.clase != Clase::Caprichosa && azar.uno(4))
        c.tardanza = static_cast<int>(azar.entre(1100, 2800));
    if (c.clase != Clase::ConBasura) return;
    c.eco = azar.uno(4);
    c.danaTercera = azar.uno(4);
    c.repite = azar.uno(4);
}

/// Nothing is wrong with it but that one of its stations is dead, or all is said twice.
void apartar(PlanDeConexion& c, Azar& azar) {
    c.clase = Clase::Caprichosa;
    c.aparte = true;
    c.muertos = azar.uno(5) ? 0 : static_cast<int>(azar.entre(1, 6));
    c.repite = c.muertos == 0;
    c.tardanza = 0;
    c.eco = c.danaTercera = false;
    const std::int64_t callan = c.repite ? 4 : azar.entre(4, 6); // constant, or random, or counters
    c.habitos = {azar.uno(2) ? Habito::RepiteSinOrden : static_cast<Habito>(callan)};
}

/// Stations and blocks of one connection.
class Levantador {
  public:
    Levantador(Plan& plan, Azar& azar) : plan_(plan), azar_(azar) {}

    void conexion(std::size_t c, std::size_t puerto, std::int64_t cuantosBloques) {
        const std::int64_t estaciones = azar_.entre(1, 4);
        const bool saturada = azar_.uno(6);
        std::vector<std::pair<int, int>> hechas; // number and index
        for (std::int64_t e = 0; e < estaciones; ++e) {
            const int plc = ++plcs_[puerto];
            const int indice = static_cast<int>(azar_.entre(0, 24) * 4 + e);
            hechas.emplace_back(plc, indice);
        }
        estaciones_[c] = hechas;
        for (std::int64_t b = 0; b < cuantosBloques; ++b) {
            const auto [plc, indice] =
                hechas[static_cast<std::size_t>(azar_.entre(0, estaciones - 1))];
            bloque(c, puerto, plc, indice, saturada);
        }
    }
    /// A living station, always asked, and a dead one.
    void conMuertos(std::size_t c, std::size_t puerto, int muertos) {
        const int viva = ++plcs_[puerto], muerta = ++plcs_[puerto];
        estaciones_[c] = {{viva, 1}, {muerta, 2}};
        const std::int64_t vivos = azar_.entre(2, 6);
        for (std::int64_t b = 0; b < vivos + muertos; ++b) {
            const bool vivo = b < vivos;
            PlanDeBloque bloque{.puerto = puerto,
                                .conexion = c,
                                .plc = vivo ? viva : muerta,
                                .indice = vivo ? 1 : 2,
                                .registro = static_cast<int>(16 + b),
                                .scanMs = azar_.enEscala(vivo ? 100 : 1000, vivo ? 800 : 8000),
                                .nivel = 5};
            bloque.aparte = true;
            plan_.bloques.push_back(bloque);
        }
    }
    [[nodiscard]] std::vector<std::pair<int, int>>& estaciones(std::size_t c) {
        return estaciones_[c];
    }

  private:
    void bloque(std::size_t c, std::size_t puerto, int plc, int indice, bool saturada) {
        PlanDeBloque b;
        b.puerto = puerto;
        b.conexion = c;
        b.plc = plc;
        b.indice = indice;
        b.registro = static_cast<int>(azar_.entre(0, 255));
        b.scanMs = scan(azar_, saturada);
        if (azar_.uno(10)) b.cantidad = static_cast<int>(azar_.entre(2, 23));
        b.nivel = static_cast<int>(azar_.entre(1, 4));
        b.activo = !azar_.uno(15);
        if (azar_.uno(3)) b.fuente = static_cast<Fuente>(azar_.entre(1, 4));
        const auto igual = [&b](const PlanDeBloque& o) {
            return o.conexion == b.conexion && o.indice == b.indice && o.registro == b.registro;
        };
        // Two blocks of one register are drawn now and then; who writes it must stay one.
        const auto otro = std::find_if(plan_.bloques.begin(), plan_.bloques.end(), igual);
        if (otro != plan_.bloques.end()) b.fuente = Fuente::Nadie;
        plan_.bloques.push_back(b);
    }

    Plan& plan_;
    Azar& azar_;
    std::map<std::size_t, int> plcs_; ///< station numbers given out, by port
    std::map<std::size_t, std::vector<std::pair<int, int>>> estaciones_;
};

constexpr std::size_t kDeNadie = static_cast<std::size_t>(-1);

std::string texto(const Plan& plan, Levantador& levantador,
                  const std::vector<std::size_t>& puertoDe, Azar& azar,
                  std::vector<std::size_t>& bloques) {
    Configuracion c;
    for (std::size_t p = 0; p < plan.puertos.size(); ++p) {
        const PlanDePuerto& puerto = plan.puertos[p];
        c.puerto({segundos(puerto.tiempoFueraMs), std::to_string(puerto.reintentos),
                  segundos(puerto.reconexionMs)});
        for (std::size_t k = 0; k < plan.conexiones.size(); ++k) {
            if (puertoDe[k] != p) continue;
            const PlanDeConexion& con = plan.conexiones[k];
            for (const auto& [plc, indice] : levantador.estaciones(k)) {
                // A port is a number, however it is written.
                c.estacion(plc, con.ip, indice,
                           (azar.uno(4) ? "0" : "") + std::to_string(con.puertoTCP));
                // The same station a second time, under its own or another number.
                if (azar.uno(12))
                    c.estacion(azar.uno(2) ? plc : plc + 1000, con.ip, indice,
                               std::to_string(con.puertoTCP));
            }
        }
        for (std::size_t k = 0; k < plan.bloques.size(); ++k) {
            const PlanDeBloque& b = plan.bloques[k];
            if (b.puerto != p) continue;
            c.bloque(b.plc, hexadecimalDe(b.registro), segundos(b.scanMs), b.activo, b.cantidad,
                     b.nivel);
            bloques.push_back(k);
        }
        if (azar.uno(4)) { // fits no frame: listed and never polled
            c.bloque(1, "1F0", "5");
            bloques.push_back(kDeNadie);
        }
    }
    return c.texto();
}

} // namespace

std::string PlanDeBloque::direccion() const {
    return std::to_string(puerto + 1) + "." + std::to_string(plc) + "." + hexadecimalDe(registro);
}

Plan::Plan(std::uint64_t s, Tamano querido) : semilla(s) {
    Azar azar(s);
    Extension t = extension(azar);
    if (querido.conexiones > 0)
        t = {querido.conexiones, querido.bloques, azar.entre(8, 10) * kHoraMs / 2};
    duracionMs = t.duracionMs;
    faltasPorHora = static_cast<int>(azar.entre(130, 220));
    pausaMs = azar.uno(6) ? azar.entre(0, 60) : azar.uno(2) ? 800 : azar.enEscala(50, 2000);
    baseDeSolicitudesMs = azar.enEscala(500, 8000);
    exigeLogin = azar.uno(5);
    if (azar.uno(3)) vigenciaSegundos = static_cast<double>(azar.entre(15, 90));
    const auto cuantosPuertos = static_cast<std::size_t>(azar.entre(1, 3));
    for (std::size_t p = 0; p < cuantosPuertos; ++p)
        puertos.push_back(puerto(azar));
    Levantador levantador(*this, azar);
    std::vector<std::size_t> puertoDe;
    for (std::size_t k = 0; k < static_cast<std::size_t>(t.conexiones); ++k) {
        const auto p = static_cast<std::size_t>(
            azar.entre(0, azar.uno(3) ? static_cast<std::int64_t>(cuantosPuertos) - 1 : 0));
        PlanDeConexion c;
        c.ip = "10." + std::to_string(k / 250) + ".0." + std::to_string(k % 250 + 1);
        c.puertoTCP = azar.uno(3) ? 503 : 502;
        c.clase = static_cast<Clase>(azar.entre(0, 2));
        c.tiempoFueraMs = puertos[p].tiempoFueraMs;
        c.reintentos = puertos[p].reintentos;
        habituar(c, azar);
        c.reconexionMs = puertos[p].reconexionMs;
        if (azar.uno(7) && c.tiempoFueraMs <= 8000) apartar(c, azar);
        c.demoraUs = azar.enEscala(100, std::min<std::int64_t>(400'000, c.tiempoFueraMs * 100));
        conexiones.push_back(c);
        puertoDe.push_back(p);
        if (c.aparte)
            levantador.conMuertos(k, p, c.muertos);
        else
            levantador.conexion(k, p, c.tardanza > 0 ? azar.entre(1, 6) : t.bloques);
    }
    archivo_ = texto(*this, levantador, puertoDe, azar, enArchivo_);
}

std::string Plan::configuracion(std::uint32_t version) const {
    if (version == 0) return archivo_;
    std::string nuevo;
    for (std::size_t i = 0, k = kDeNadie; i < archivo_.size();) {
        const std::size_t fin = archivo_.find('\n', i) + 1;
        std::string linea = archivo_.substr(i, fin - i);
        i = fin;
        if (linea.starts_with("Bloque")) k = enArchivo_[std::stoul(linea.substr(6))];
        const std::size_t igual = linea.find('=');
        if (k != kDeNadie && linea.starts_with("Bloque") && bloques[k].fuente == Fuente::Nadie &&
            !bloques[k].aparte)
            linea.replace(igual + 1, linea.size() - igual - 2,
                          otroDato(bloques[k], linea.substr(0, igual), version + 7 * k,
                                   linea.substr(igual + 1, linea.size() - igual - 2)));
        nuevo += linea;
    }
    return nuevo;
}

/// What a version says of a block where the plan says `dato`.
std::string Plan::otroDato(const PlanDeBloque& b, std::string_view clave, std::size_t suerte,
                           const std::string& dato) const {
    const auto usado = [&](int registro) {
        return std::any_of(bloques.begin(), bloques.end(), [&](const PlanDeBloque& o) {
            return o.conexion == b.conexion && o.indice == b.indice && registro >= o.registro &&
                   registro < o.registro + o.cantidad;
        });
    };
    const auto cambio = static_cast<int>(suerte / 8 % 200);
    if (suerte % 8 == 0 && clave.ends_with("_StarAdrees") && b.cantidad == 1) {
        const int otro = (b.registro + 1 + cambio) % 256;
        return usado(otro) ? dato : hexadecimalDe(otro);
    }
    if (suerte % 8 == 1 && clave.ends_with("_ScanTime") && b.scanMs > 0)
        return segundos(b.scanMs * (1 + cambio % 4));
    // Levels 1 and 2 are the operators', 3 and 4 the client's.
    if (suerte % 8 == 2 && clave.ends_with("_Nivel"))
        return std::to_string((b.nivel <= 2 ? 3 : 7) - b.nivel);
    return dato;
}

std::string Plan::resumen() const {
    return std::to_string(conexiones.size()) + " connections, " + std::to_string(bloques.size()) +
           " blocks, pause " + std::to_string(pausaMs) + " ms, " +
           std::to_string(duracionMs / 60'000) + " min";
}

} // namespace kv::mundo
