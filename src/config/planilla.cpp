// SPDX-License-Identifier: Apache-2.0
#include "config/planilla.h"

#include "config/claves.h"
#include "config/csv.h"
#include "config/desconocidas.h"
#include "config/descripciones.h"
#include "config/ini.h"
#include "plant/claves_de_bloque.h"
#include "plant/direcciones.h"
#include "plant/limites.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <unordered_set>
#include <vector>

namespace kv {
namespace {

enum class Columna : std::uint8_t {
    Tipo,
    Puerto,
    ScanPorDefecto,
    LeerDespues,
    Reintentos,
    TiempoFuera,
    TipoPlc,
    SegReconeccion,
    Plc,
    Ip,
    PuertoTcp,
    Indice,
    Digitos,
    Bloque,
    Direccion,
    Cantidad,
    Scan,
    Nivel,
    Numero,
    Activo,
    Descripcion,
    Unidad,
};
constexpr std::array<std::string_view, 22> kColumnas = {"tipo",
                                                        "puerto",
                                                        "DEFAULT_SCAN_TIME",
                                                        "READ_AFTER_WRITE",
                                                        "REINTENTOS_MAX",
                                                        "TIME_OUT",
                                                        "TIPO_PLC",
                                                        "SEG_RECONECCION",
                                                        "PLC",
                                                        "Ip",
                                                        "PuertoTCP",
                                                        "Indice",
                                                        "Digitos",
                                                        "Bloque",
                                                        "StarAdrees",
                                                        "Quantity",
                                                        "ScanTime",
                                                        "Nivel",
                                                        "Numero",
                                                        "ActiveDefault",
                                                        "descripcion",
                                                        "unidad"};
constexpr std::array<std::string_view, 4> kTipos = {"puerto", "estacion", "bloque", "variable"};

std::size_t lugarDe(Columna c) { return static_cast<std::size_t>(c); }

/// A row that is being written.
class Fila {
  public:
    Fila& texto(Columna c, std::string_view t) {
        celdas_[lugarDe(c)] = celdaCsv(t);
        return *this;
    }
    Fila& numero(Columna c, double n) {
        std::string& celda = celdas_[lugarDe(c)] = textoDeNumero(n);
        std::replace(celda.begin(), celda.end(), '.', ',');
        return *this;
    }
    Fila& descripcion(const Descripcion* d) {
        if (d == nullptr) return *this;
        return texto(Columna::Descripcion, d->texto).texto(Columna::Unidad, d->unidad);
    }
    void agregarA(std::string& planilla) const {
        for (std::size_t i = 0; i < celdas_.size(); ++i)
            planilla += (i > 0 ? ";" : "") + celdas_[i];
        planilla += "\r\n";
    }

  private:
    std::array<std::string, kColumnas.size()> celdas_;
};

class LectorDePlanilla {
  public:
    LectorDePlanilla(std::string_view contenido, ListasDeConfiguracion& listas,
                     Problemas& problemas)
        : listas_(listas),
          tabla_(contenido, listas.archivo, kColumnas, "no se importa nada", problemas) {}

    void leer() {
        if (!tabla_.cabecera({lugarDe(Columna::Tipo), lugarDe(Columna::Puerto)})) return;
        listas_.hayDescripciones = tabla_.tiene(lugarDe(Columna::Descripcion));
        while (tabla_.siguiente()) {
            if (tabla_.cortada())
                tabla_.mal("la última línea no termina y le faltan celdas: la tabla está cortada");
            else
                fila();
        }
    }

  private:
    void mal(Columna c, const std::string& que) { tabla_.mal(lugarDe(c), que); }

    /// What stands in the row's cell and is to be written into a file of Windows-1252.
    [[nodiscard]] std::string texto(Columna c) {
        std::string t = tabla_.texto(lugarDe(c));
        if (utf8DesdeWindows1252(windows1252DesdeUtf8(t)) != t)
            mal(c, citarUtf8(t) + " tiene letras que Windows-1252 no tiene");
        if (windows1252DesdeUtf8(t).size() > kMaximoDeValor)
            mal(c, "tiene más de " + std::to_string(kMaximoDeValor) + " caracteres");
        return t;
    }
    double numero(Columna c, std::optional<double> porDefecto = {}) {
        const std::string t = texto(c);
        if (t.empty() && porDefecto) return *porDefecto;
        const auto n = numeroConComa(t);
        if (!n) mal(c, t.empty() ? "falta" : citarUtf8(t) + " no es un número");
        return n.value_or(0);
    }
    std::int16_t corto(Columna c, std::optional<double> porDefecto = {}) {
        const double n = numero(c, porDefecto);
        const auto e = enteroCorto(n);
        if (!e || *e != n) mal(c, textoDeNumero(n) + " no es un entero de -32768 a 32767");
        return e.value_or(0);
    }
    bool bandera(Columna c) {
        const double n = numero(c, 1);
        if (n != 0 && n != 1) mal(c, textoDeNumero(n) + " no es 0 ni 1");
        return n == 1;
    }

    void fila() {
        const std::string tipo = minusculas(texto(Columna::Tipo));
        if (tipo == kTipos[0]) return puerto();
        if (tipo == kTipos[1] || tipo == "estación") return estacion();
        if (tipo == kTipos[2]) return bloque();
        if (tipo == kTipos[3]) return variable();
        mal(Columna::Tipo,
            citarUtf8(tipo) + " no es puerto, estacion, bloque ni variable" + talVez(tipo, kTipos));
    }
    void puerto() {
        Puerto p;
        p.numero = numero(Columna::Puerto);
        p.scanPorDefecto = numero(Columna::ScanPorDefecto, de_puerto::kScan);
        p.leerDespuesDeEscribir = bandera(Columna::LeerDespues);
        p.reintentosMax = numero(Columna::Reintentos, de_puerto::kReintentos);
        p.tiempoFuera = numero(Columna::TiempoFuera, de_puerto::kTiempoFuera);
        p.tipoPlcPorDefecto = numero(Columna::TipoPlc, de_puerto::kTipoPlc);
        p.segReconeccion = numero(Columna::SegReconeccion, de_puerto::kReconeccion);
        if (!puertos_.insert(p.numero).second)
            mal(Columna::Puerto, textoDeNumero(p.numero) + " está repetido");
        listas_.puertos.push_back(p);
        listas_.lineasDePuertos.push_back({tabla_.fila()});
    }
    /// The port that a station or block names; its row must stand before.
    std::int16_t puertoDeLaFila() {
        const double n = numero(Columna::Puerto);
        if (!puertos_.contains(n))
            mal(Columna::Puerto, "ninguna fila de antes es el puerto " + textoDeNumero(n));
        return puertoDeRegistros(n);
    }
    void estacion() {
        Estacion e;
        e.puerto = puertoDeLaFila();
        e.numero = corto(Columna::Plc);
        e.indice = corto(Columna::Indice);
        e.digitos = corto(Columna::Digitos, 0);
        e.ip = texto(Columna::Ip);
        e.puertoTCP = texto(Columna::PuertoTcp);
        if (e.ip.empty()) mal(Columna::Ip, "falta");
        if (e.puertoTCP.empty()) mal(Columna::PuertoTcp, "falta");
        listas_.estaciones.push_back(std::move(e));
        listas_.lineasDeEstaciones.push_back(tabla_.fila());
    }
    void bloque() {
        ConfiguracionDeBloque b;
        b.puerto = puertoDeLaFila();
        b.plc = numero(Columna::Plc);
        b.nombre = texto(Columna::Bloque);
        b.direccion = texto(Columna::Direccion);
        b.cantidad = numero(Columna::Cantidad, 1);
        b.scanSegundos = numero(Columna::Scan);
        b.nivel = numero(Columna::Nivel, 0);
        b.numeroConfigurado = numero(Columna::Numero, 0);
        b.activoPorDefecto = bandera(Columna::Activo);
        describir(claveDeBloque(b.puerto, b.plc, b.direccion));
        listas_.bloques.push_back(std::move(b));
        listas_.lineasDeBloques.push_back(tabla_.fila());
    }
    /// What has a description and no row of its own: further registers of a block, bits.
    void variable() {
        const double puerto = numero(Columna::Puerto);
        const double plc = numero(Columna::Plc);
        describir(claveDeBloque(puerto, plc, texto(Columna::Direccion)));
    }
    void describir(const std::string& direccion) {
        Descripcion d =
            leerDescripcion(tabla_, lugarDe(Columna::Descripcion), lugarDe(Columna::Unidad));
        if (d.vacia()) return;
        anotarDescripcion(listas_.descripciones, direccion, std::move(d), tabla_,
                          lugarDe(Columna::Direccion));
    }

    ListasDeConfiguracion& listas_;
    TablaCsv tabla_;
    std::unordered_set<double> puertos_; ///< by number
};

/// A value as the file needs it to be read back with its blanks and quotes.
std::string valor(std::string_view utf8) {
    const std::string v = windows1252DesdeUtf8(utf8);
    const bool cuida = !v.empty() && (recortar(v) != v || v.front() == '"' || v.back() == '"');
    return cuida ? "\"" + v + "\"" : v;
}

/// Keys of a section that is being written.
class Claves {
  public:
    explicit Claves(std::string& texto, std::string prefijo = {})
        : texto_(texto), prefijo_(std::move(prefijo)) {}
    template <class Campo>
    Claves& poner(Campo c, double n) {
        return poner(c, textoDeNumero(n));
    }
    template <class Campo>
    Claves& poner(Campo c, const std::string& v) {
        texto_.append(prefijo_).append(nombreDe(c)).append("=").append(v).append("\r\n");
        return *this;
    }

  private:
    std::string& texto_;
    std::string prefijo_;
};

std::string entrada(std::string_view que, std::size_t numero) {
    return std::string(que).append(std::to_string(numero)).append("_");
}

} // namespace

std::string planillaDe(const ListasDeConfiguracion& listas) {
    std::string planilla(kMarcaUtf8);
    for (std::size_t i = 0; i < kColumnas.size(); ++i)
        planilla.append(i > 0 ? ";" : "").append(kColumnas[i]);
    planilla += "\r\n";
    for (const Puerto& p : listas.puertos)
        Fila()
            .texto(Columna::Tipo, kTipos[0])
            .numero(Columna::Puerto, p.numero)
            .numero(Columna::ScanPorDefecto, p.scanPorDefecto)
            .numero(Columna::LeerDespues, p.leerDespuesDeEscribir ? 1 : 0)
            .numero(Columna::Reintentos, p.reintentosMax)
            .numero(Columna::TiempoFuera, p.tiempoFuera)
            .numero(Columna::TipoPlc, p.tipoPlcPorDefecto)
            .numero(Columna::SegReconeccion, p.segReconeccion)
            .agregarA(planilla);
    for (const Estacion& e : listas.estaciones)
        Fila()
            .texto(Columna::Tipo, kTipos[1])
            .numero(Columna::Puerto, e.puerto)
            .numero(Columna::Plc, e.numero)
            .texto(Columna::Ip, e.ip)
            .texto(Columna::PuertoTcp, e.puertoTCP)
            .numero(Columna::Indice, e.indice)
            .numero(Columna::Digitos, e.digitos)
            .agregarA(planilla);
    std::unordered_set<const Descripcion*> puestas;
    for (const ConfiguracionDeBloque& b : listas.bloques) {
        const Descripcion* d = listas.descripciones.de(claveDeBloque(b.puerto, b.plc, b.direccion));
        if (!puestas.insert(d).second) d = nullptr; // a register that two blocks read
        Fila()
            .texto(Columna::Tipo, kTipos[2])
            .numero(Columna::Puerto, b.puerto)
            .numero(Columna::Plc, b.plc)
            .texto(Columna::Bloque, b.nombre)
            .texto(Columna::Direccion, b.direccion)
            .numero(Columna::Cantidad, b.cantidad)
            .numero(Columna::Scan, b.scanSegundos)
            .numero(Columna::Nivel, b.nivel)
            .numero(Columna::Numero, b.numeroConfigurado)
            .numero(Columna::Activo, b.activoPorDefecto ? 1 : 0)
            .descripcion(d)
            .agregarA(planilla);
    }
    listas.descripciones.recorrer([&](const std::string& direccion, const Descripcion& d) {
        DireccionPartida partes;
        if (puestas.contains(&d) || !partirDireccion(direccion, partes)) return;
        Fila()
            .texto(Columna::Tipo, kTipos[3])
            .numero(Columna::Puerto, partes.puerto)
            .numero(Columna::Plc, partes.plc)
            .texto(Columna::Direccion,
                   direccion.substr(direccion.find('.', direccion.find('.') + 1) + 1))
            .descripcion(&d)
            .agregarA(planilla);
    });
    return planilla;
}

void leerPlanilla(std::string_view contenido, const std::string& ruta,
                  ListasDeConfiguracion& listas, Problemas& problemas) {
    listas = {};
    listas.archivo = ruta;
    LectorDePlanilla(contenido, listas, problemas).leer();
}

std::string iniDe(const ListasDeConfiguracion& listas) {
    std::string ini;
    ini.append("[").append(kSeccionDeConfig).append("]\r\n").append(kCantPuertos);
    ini.append("=").append(std::to_string(listas.puertos.size())).append("\r\n");
    std::map<std::int16_t, std::vector<const Estacion*>> estaciones;
    std::map<std::int16_t, std::vector<const ConfiguracionDeBloque*>> bloques;
    for (const Estacion& e : listas.estaciones)
        estaciones[e.puerto].push_back(&e);
    for (const ConfiguracionDeBloque& b : listas.bloques)
        bloques[b.puerto].push_back(&b);
    std::size_t esclavo = 0;
    std::size_t bloque = 0;
    for (std::size_t i = 0; i < listas.puertos.size(); ++i) {
        const Puerto& p = listas.puertos[i];
        const auto& suyas = estaciones[puertoDeRegistros(p.numero)];
        const auto& suyos = bloques[puertoDeRegistros(p.numero)];
        ini.append("[").append(kPrefijoDePuerto).append(std::to_string(i + 1)).append("]\r\n");
        Claves(ini)
            .poner(CampoDePuerto::Numero, p.numero)
            .poner(CampoDePuerto::Scan, p.scanPorDefecto)
            .poner(CampoDePuerto::LeerDespues, p.leerDespuesDeEscribir ? 1 : 0)
            .poner(CampoDePuerto::Reintentos, p.reintentosMax)
            .poner(CampoDePuerto::TiempoFuera, p.tiempoFuera)
            .poner(CampoDePuerto::Tipo, p.tipoPlcPorDefecto)
            .poner(CampoDePuerto::SegReconeccion, p.segReconeccion)
            .poner(CampoDePuerto::CantEsclavos, static_cast<double>(suyas.size()))
            .poner(CampoDePuerto::CantBloques, static_cast<double>(suyos.size()));
        for (const Estacion* e : suyas)
            Claves(ini, entrada(kPrefijoDeEsclavo, esclavo++))
                .poner(CampoDeEsclavo::Numero, e->numero)
                .poner(CampoDeEsclavo::Ip, valor(e->ip))
                .poner(CampoDeEsclavo::Puerto, valor(e->puertoTCP))
                .poner(CampoDeEsclavo::Indice, e->indice)
                .poner(CampoDeEsclavo::Digitos, e->digitos);
        for (const ConfiguracionDeBloque* b : suyos)
            Claves(ini, entrada(kPrefijoDeBloque, bloque++))
                .poner(CampoDeBloque::Bloque, valor(b->nombre))
                .poner(CampoDeBloque::Plc, b->plc)
                .poner(CampoDeBloque::Quantity, b->cantidad)
                .poner(CampoDeBloque::StarAdrees, valor(b->direccion))
                .poner(CampoDeBloque::ScanTime, b->scanSegundos)
                .poner(CampoDeBloque::Nivel, b->nivel)
                .poner(CampoDeBloque::Numero, b->numeroConfigurado)
                .poner(CampoDeBloque::ActiveDefault, b->activoPorDefecto ? 1 : 0);
    }
    return ini;
}

} // namespace kv
