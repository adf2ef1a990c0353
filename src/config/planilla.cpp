// SPDX-License-Identifier: Apache-2.0
#include "config/planilla.h"

#include "config/desconocidas.h"
#include "config/ini.h"
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

constexpr std::string_view kMarcaUtf8 = "\xEF\xBB\xBF";
constexpr std::string_view kSeparadores = ";,\t";

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
};
constexpr std::array<std::string_view, 20> kColumnas = {"tipo",
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
                                                        "ActiveDefault"};
constexpr std::array<std::string_view, 3> kTipos = {"puerto", "estacion", "bloque"};

std::string_view nombreDe(Columna c) { return kColumnas[static_cast<std::size_t>(c)]; }

/// A row that is being written.
class Fila {
  public:
    Fila& texto(Columna c, std::string_view t) {
        std::string& celda = celdas_[static_cast<std::size_t>(c)];
        celda = t;
        if (t.find_first_of("\";\r\n\t,") == std::string_view::npos && recortar(t) == t)
            return *this;
        celda = "\"";
        for (const char x : t)
            celda += x == '"' ? std::string("\"\"") : std::string(1, x);
        celda += '"';
        return *this;
    }
    Fila& numero(Columna c, double n) {
        std::string& celda = celdas_[static_cast<std::size_t>(c)] = textoDeNumero(n);
        std::replace(celda.begin(), celda.end(), '.', ',');
        return *this;
    }
    void agregarA(std::string& planilla) const {
        for (std::size_t i = 0; i < celdas_.size(); ++i)
            planilla += (i > 0 ? ";" : "") + celdas_[i];
        planilla += "\r\n";
    }

  private:
    std::array<std::string, kColumnas.size()> celdas_;
};

/// A cell that was read; quotes keep the blanks within them.
struct Celda {
    std::string texto;
    bool citada = false;
    [[nodiscard]] std::string_view dice() const {
        return citada ? std::string_view(texto) : recortar(texto);
    }
};

/// Takes the cells of the next row off the front of a table. A quoted cell may hold separators and
/// line ends.
std::vector<Celda> quitarFila(std::string_view& resto, char separador) {
    std::vector<Celda> celdas(1);
    bool entreComillas = false;
    std::size_t i = 0;
    for (; i < resto.size(); ++i) {
        const char c = resto[i];
        Celda& celda = celdas.back();
        if (entreComillas) {
            const bool doble = c == '"' && i + 1 < resto.size() && resto[i + 1] == '"';
            if (doble) ++i;
            if (c == '"' && !doble)
                entreComillas = false;
            else
                celda.texto += c;
        } else if (c == '"' && !celda.citada && recortar(celda.texto).empty()) {
            entreComillas = celda.citada = true;
            celda.texto.clear();
        } else if (c == separador) {
            celdas.emplace_back();
        } else if (c == '\n') {
            break;
        } else if (c != '\r' && !(celda.citada && c == ' ')) {
            celda.texto += c;
        }
    }
    resto.remove_prefix(std::min(i + 1, resto.size()));
    return celdas;
}

class LectorDePlanilla {
  public:
    LectorDePlanilla(ListasDeConfiguracion& listas, Problemas& problemas)
        : listas_(listas), problemas_(problemas) {}

    void leer(std::string_view contenido) {
        const std::string_view cabeza = contenido.substr(0, contenido.find('\n'));
        const auto cuantos = [cabeza](char s) {
            return std::count(cabeza.begin(), cabeza.end(), s);
        };
        const char separador =
            *std::max_element(kSeparadores.begin(), kSeparadores.end(),
                              [&](char a, char b) { return cuantos(a) < cuantos(b); });
        if (!cabecera(quitarFila(contenido, separador))) return;
        while (!contenido.empty()) {
            ++fila_;
            celdas_ = quitarFila(contenido, separador);
            const bool vacia = std::all_of(celdas_.begin(), celdas_.end(),
                                           [](const Celda& c) { return c.dice().empty(); });
            if (!vacia) fila();
        }
    }

  private:
    void mal(const std::string& que) {
        problemas_.agregar(listas_.archivo, fila_, que, "no se importa nada");
    }
    void mal(Columna c, const std::string& que) {
        mal("columna " + std::string(nombreDe(c)) + ": " + que);
    }
    bool cabecera(const std::vector<Celda>& nombres) {
        donde_.fill(nombres.size());
        for (std::size_t i = 0; i < nombres.size(); ++i) {
            const std::string_view nombre = nombres[i].dice();
            const auto c = std::find_if(kColumnas.begin(), kColumnas.end(),
                                        [&](auto n) { return igualSinCaja(n, nombre); });
            if (c != kColumnas.end())
                donde_[static_cast<std::size_t>(c - kColumnas.begin())] = i;
            else if (!nombre.empty())
                mal(cita(nombre) + " no es una columna conocida" + talVez(nombre, kColumnas));
        }
        for (const Columna c : {Columna::Tipo, Columna::Puerto}) {
            if (donde_[static_cast<std::size_t>(c)] < nombres.size()) continue;
            mal("falta la columna " + std::string(nombreDe(c)));
            return false;
        }
        return true;
    }
    static std::string cita(std::string_view utf8) { return citar(windows1252DesdeUtf8(utf8)); }

    /// What stands in the row's cell; empty where the table has no such column.
    [[nodiscard]] std::string texto(Columna c) {
        const std::size_t i = donde_[static_cast<std::size_t>(c)];
        if (i >= celdas_.size()) return {};
        const std::string t(celdas_[i].dice());
        if (t.find_first_of("\r\n") != std::string::npos) mal(c, "tiene más de un renglón");
        if (utf8DesdeWindows1252(windows1252DesdeUtf8(t)) != t)
            mal(c, cita(t) + " tiene letras que Windows-1252 no tiene");
        if (windows1252DesdeUtf8(t).size() > kMaximoDeValor)
            mal(c, "tiene más de " + std::to_string(kMaximoDeValor) + " caracteres");
        return t;
    }
    double numero(Columna c, std::optional<double> porDefecto = {}) {
        const std::string t = texto(c);
        if (t.empty() && porDefecto) return *porDefecto;
        const auto n = numeroConComa(t);
        if (!n) mal(c, t.empty() ? "falta" : cita(t) + " no es un número");
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
        mal(Columna::Tipo, cita(tipo) + " no es puerto, estacion ni bloque" + talVez(tipo, kTipos));
    }
    void puerto() {
        Puerto p;
        p.numero = numero(Columna::Puerto);
        p.scanPorDefecto = numero(Columna::ScanPorDefecto, 5);
        p.leerDespuesDeEscribir = bandera(Columna::LeerDespues);
        p.reintentosMax = numero(Columna::Reintentos, 3);
        p.tiempoFuera = numero(Columna::TiempoFuera, 5);
        p.tipoPlcPorDefecto = numero(Columna::TipoPlc, 5);
        p.segReconeccion = numero(Columna::SegReconeccion, 30);
        if (!puertos_.insert(p.numero).second)
            mal(Columna::Puerto, textoDeNumero(p.numero) + " está repetido");
        listas_.puertos.push_back(p);
        listas_.lineasDePuertos.push_back({fila_});
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
        listas_.lineasDeEstaciones.push_back(fila_);
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
        listas_.bloques.push_back(std::move(b));
        listas_.lineasDeBloques.push_back(fila_);
    }

    ListasDeConfiguracion& listas_;
    Problemas& problemas_;
    std::array<std::size_t, kColumnas.size()> donde_{};
    std::vector<Celda> celdas_;
    std::unordered_set<double> puertos_; ///< by number
    std::uint32_t fila_ = 1;
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
    explicit Claves(std::string& texto) : texto_(texto) {}
    Claves& poner(const std::string& clave, double n) { return poner(clave, textoDeNumero(n)); }
    Claves& poner(const std::string& clave, const std::string& v) {
        texto_.append(clave).append("=").append(v).append("\r\n");
        return *this;
    }

  private:
    std::string& texto_;
};

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
    for (const ConfiguracionDeBloque& b : listas.bloques)
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
            .agregarA(planilla);
    return planilla;
}

void leerPlanilla(std::string_view contenido, const std::string& ruta,
                  ListasDeConfiguracion& listas, Problemas& problemas) {
    listas = {};
    listas.archivo = ruta;
    if (contenido.starts_with("\xFF\xFE") || contenido.starts_with("\xFE\xFF"))
        return problemas.agregar(ruta, 1, "el archivo está guardado como UTF-16",
                                 "no se importa nada: debe ser UTF-8 o Windows-1252");
    std::string enUtf8;
    if (contenido.starts_with(kMarcaUtf8))
        contenido.remove_prefix(kMarcaUtf8.size());
    else if (!pareceUtf8(contenido))
        contenido = enUtf8 = utf8DesdeWindows1252(contenido);
    LectorDePlanilla(listas, problemas).leer(contenido);
}

std::string iniDe(const ListasDeConfiguracion& listas) {
    std::string ini = "[CONFIG]\r\nCANT_PUERTOS=" + std::to_string(listas.puertos.size()) + "\r\n";
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
        ini += "[PUERTO" + std::to_string(i + 1) + "]\r\n";
        Claves claves(ini);
        claves.poner("NUMERO", p.numero)
            .poner("DEFAULT_SCAN_TIME", p.scanPorDefecto)
            .poner("READ_AFTER_WRITE", p.leerDespuesDeEscribir ? 1 : 0)
            .poner("REINTENTOS_MAX", p.reintentosMax)
            .poner("TIME_OUT", p.tiempoFuera)
            .poner("TIPO_PLC_DEFAULT", p.tipoPlcPorDefecto)
            .poner("SEG_RECONECCION", p.segReconeccion)
            .poner("CantEsclavos", static_cast<double>(suyas.size()))
            .poner("CantBloques", static_cast<double>(suyos.size()));
        for (const Estacion* e : suyas) {
            const std::string prefijo = "Esclavo" + std::to_string(esclavo++) + "_";
            claves.poner(prefijo + "Numero", e->numero)
                .poner(prefijo + "Ip", valor(e->ip))
                .poner(prefijo + "Puerto", valor(e->puertoTCP))
                .poner(prefijo + "Indice", e->indice)
                .poner(prefijo + "Digitos", e->digitos);
        }
        for (const ConfiguracionDeBloque* b : suyos) {
            const std::string prefijo = "Bloque" + std::to_string(bloque++) + "_";
            claves.poner(prefijo + "Bloque", valor(b->nombre))
                .poner(prefijo + "PLC", b->plc)
                .poner(prefijo + "Quantity", b->cantidad)
                .poner(prefijo + "StarAdrees", valor(b->direccion))
                .poner(prefijo + "ScanTime", b->scanSegundos)
                .poner(prefijo + "Nivel", b->nivel)
                .poner(prefijo + "Numero", b->numeroConfigurado)
                .poner(prefijo + "ActiveDefault", b->activoPorDefecto ? 1 : 0);
        }
    }
    return ini;
}

} // namespace kv
