// SPDX-License-Identifier: Apache-2.0
#include "config/validacion.h"

#include "plant/claves_de_bloque.h"
#include "plant/direcciones.h"
#include "plant/limites.h"
#include "platform/maquina.h"
#include "text/direccion_de_red.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <algorithm>
#include <charconv>
#include <memory_resource>
#include <unordered_map>
#include <unordered_set>

namespace kv {
namespace {

constexpr std::size_t kMaximoDeNombre = 255 - kSufijoDeEstado.size();

/// As the table's column is called, whose names are those of the file's keys.
namespace campo {
constexpr std::string_view kPuerto = "puerto";
constexpr std::string_view kTiempoFuera = "TIME_OUT";
constexpr std::string_view kReintentos = "REINTENTOS_MAX";
constexpr std::string_view kReconeccion = "SEG_RECONECCION";
constexpr std::string_view kScanPorDefecto = "DEFAULT_SCAN_TIME";
constexpr std::string_view kPlc = "PLC";
constexpr std::string_view kIp = "Ip";
constexpr std::string_view kPuertoTcp = "PuertoTCP";
constexpr std::string_view kIndice = "Indice";
constexpr std::string_view kDireccion = "StarAdrees";
constexpr std::string_view kCantidad = "Quantity";
constexpr std::string_view kScan = "ScanTime";
constexpr std::string_view kNivel = "Nivel";
} // namespace campo

bool entero(double n) { return n == std::floor(n); }

/// A station as blocks look for it: the first in the order of connections, then of stations.
struct Destino {
    std::size_t conexion;
    std::size_t estacion; ///< index into the lists
};

class Validador {
  public:
    Validador(ListasDeConfiguracion& listas, Problemas& problemas, Validacion& validacion,
              Porciones& porciones)
        : listas_(listas), problemas_(problemas), v_(validacion), porciones_(porciones) {}
    Trabajo validar() {
        puertos();
        co_await porciones_.gastar(5 * static_cast<std::int64_t>(listas_.puertos.size()));
        co_await estaciones();
        co_await bloques();
    }

  private:
    void problema(std::size_t linea, std::string que, std::string consecuencia,
                  std::string_view cual = {}) {
        problemas_.agregar(listas_.archivo, linea, std::move(que), std::move(consecuencia), cual);
    }
    void puertos();
    Suerte puerto(const Puerto& p, std::size_t linea);
    void corregirTiempos(Puerto& p, const LineasDePuerto& lineas);
    Trabajo estaciones();
    Suerte estacion(std::size_t i);
    std::size_t conexionDe(const Estacion& e);
    bool alcanzable(const Estacion& e, std::size_t linea);
    Trabajo bloques();
    /// Sets `registros_`.
    Suerte bloque(std::size_t i);
    void repeticiones(const ConfiguracionDeBloque& b, std::size_t estacion, std::size_t linea);
    std::uint32_t lineaDeQuienYa(const ConfiguracionDeBloque& b, std::size_t estacion,
                                 const std::string& registro, std::size_t linea);
    const Destino* destinoDe(const ConfiguracionDeBloque& b, std::size_t linea);
    bool cantidades(const ConfiguracionDeBloque& b, std::size_t linea);
    bool sondeable(const ConfiguracionDeBloque& b, const Destino& d, std::size_t linea);

    static std::uint64_t llave(std::int16_t puerto, std::int16_t numero) {
        return std::uint64_t{static_cast<std::uint16_t>(puerto)} << 16 |
               static_cast<std::uint16_t>(numero);
    }

    ListasDeConfiguracion& listas_;
    Problemas& problemas_;
    Validacion& v_;
    Porciones& porciones_;
    std::size_t puertosConstruidos_ = 0;
    std::unordered_set<double> numerosDePuerto_;
    std::unordered_map<std::string, std::size_t> conexiones_;
    std::unordered_set<std::uint64_t> indices_; ///< connection and indice
    std::unordered_map<std::uint64_t, Destino> destinos_;
    std::vector<std::string> registros_; ///< of the present block
    /// Goes as a whole: giving back hundreds of thousands of pieces takes longer than a portion.
    std::pmr::monotonic_buffer_resource memoria_;
    /// The lines of those that have been built, by station and register, and by name where the
    /// address is no register.
    std::pmr::unordered_map<std::uint64_t, std::uint32_t> lineasDeRegistros_{&memoria_};
    std::pmr::unordered_map<std::string, std::uint32_t> lineasDeNombres_{&memoria_};
};

void Validador::puertos() {
    for (std::size_t i = 0; i < listas_.puertos.size(); ++i) {
        const LineasDePuerto& lineas = listas_.lineasDePuertos[i];
        const Suerte suerte = puerto(listas_.puertos[i], lineas.numero);
        v_.puertos.push_back(suerte);
        if (suerte == Suerte::NoConstruir) continue;
        corregirTiempos(listas_.puertos[i], lineas);
        ++puertosConstruidos_;
    }
}

Suerte Validador::puerto(const Puerto& p, std::size_t linea) {
    const std::string nombre = "el puerto " + conComa(p.numero);
    if (puertoDeRegistros(p.numero) == 0) {
        problema(linea, nombre + " no tiene un número entero de 1 a 32767",
                 "no se construyen el puerto ni sus estaciones y bloques", campo::kPuerto);
        return Suerte::NoConstruir;
    }
    const auto lugar = static_cast<double>(puertosConstruidos_ + 1);
    if (!numerosDePuerto_.insert(p.numero).second)
        problema(linea, nombre + " está repetido",
                 "sus bloques usan los tiempos del puerto que está en el lugar " +
                     conComa(p.numero),
                 campo::kPuerto);
    else if (p.numero != lugar)
        problema(linea,
                 nombre + " está en el lugar " + conComa(lugar) +
                     " y debe estar en el lugar de su número",
                 "sus bloques usan los tiempos del puerto que está en ese lugar, y sin ninguno "
                 "no se crean",
                 campo::kPuerto);
    return Suerte::Construir;
}

void Validador::corregirTiempos(Puerto& p, const LineasDePuerto& lineas) {
    const auto corregir = [&](double& valor, bool sirve, std::size_t linea, std::string_view cual,
                              double porDefecto, std::string_view que = {}) {
        if (sirve) return;
        problema(linea,
                 "el puerto " + conComa(p.numero) + " tiene " +
                     std::string(que.empty() ? cual : que) + " " + conComa(valor),
                 "se usa " + conComa(porDefecto), cual);
        valor = porDefecto;
    };
    corregir(p.tiempoFuera, esTiempo(p.tiempoFuera, limite::kTiempoFuera), lineas.tiempoFuera,
             campo::kTiempoFuera, de_puerto::kTiempoFuera);
    corregir(p.reintentosMax,
             p.reintentosMax >= 0 && p.reintentosMax <= limite::kReintentos &&
                 entero(p.reintentosMax),
             lineas.reintentosMax, campo::kReintentos, de_puerto::kReintentos);
    corregir(p.segReconeccion, esTiempo(p.segReconeccion), lineas.segReconeccion,
             campo::kReconeccion, de_puerto::kReconeccion, "segundos de reconexión");
    corregir(p.scanPorDefecto, esScan(p.scanPorDefecto), lineas.scanPorDefecto,
             campo::kScanPorDefecto, de_puerto::kScan);
}

Trabajo Validador::estaciones() {
    constexpr std::int64_t kPorEstacion = 10;
    for (std::size_t i = 0; i < listas_.estaciones.size(); ++i) {
        co_await porciones_.gastar(kPorEstacion);
        v_.estaciones.push_back(estacion(i));
    }
}

Suerte Validador::estacion(std::size_t i) {
    const Estacion& e = listas_.estaciones[i];
    const std::size_t linea = listas_.lineasDeEstaciones[i];
    const std::string nombre = "la estación PLC " + std::to_string(e.numero);
    if (e.puerto <= 0) return Suerte::NoConstruir; // reported with its port
    if (!numerosDePuerto_.contains(e.puerto))
        problema(linea,
                 nombre + " nombra el puerto " + std::to_string(e.puerto) + ", que no existe",
                 "se construye, pero ninguno de sus bloques", campo::kPuerto);
    const std::size_t c = conexionDe(e);
    ConexionPrevista& conexion = v_.conexiones[c];
    if (!indices_.insert(std::uint64_t{c} << 16 | static_cast<std::uint16_t>(e.indice)).second) {
        problema(linea,
                 nombre + " repite el Indice " + std::to_string(e.indice) + " en " +
                     citarUtf8(e.ip + ":" + e.puertoTCP),
                 "se ignora la estación", campo::kIndice);
        return Suerte::NoConstruir;
    }
    if (conexion.puerto != e.puerto)
        problema(linea,
                 nombre + " es del puerto " + std::to_string(e.puerto) +
                     " y su dirección ya pertenece al puerto " + std::to_string(conexion.puerto),
                 "los bloques del puerto " + std::to_string(e.puerto) + " no la encuentran",
                 campo::kPuerto);
    conexion.estaciones.push_back(i);
    const auto [lugar, nuevo] =
        destinos_.try_emplace(llave(conexion.puerto, e.numero), Destino{c, i});
    if (!nuevo) {
        problema(linea, nombre + " repite un número del puerto " + std::to_string(conexion.puerto),
                 "los bloques van a la estación de la primera conexión", campo::kPlc);
        if (c < lugar->second.conexion) lugar->second = {c, i};
    }
    const bool cabe = byteDeEstacion(e.indice).has_value();
    if (!cabe)
        problema(linea,
                 nombre + " tiene Indice " + std::to_string(e.indice) + ", fuera de 0 a " +
                     std::to_string(kUltimoIndice),
                 "se construye y nunca se sondea: sus bloques quedan BAD", campo::kIndice);
    return alcanzable(e, linea) && cabe ? Suerte::Construir : Suerte::SinSondeo;
}

std::size_t Validador::conexionDe(const Estacion& e) {
    const auto [lugar, nueva] = conexiones_.try_emplace(
        claveDeConexion(recortar(e.ip), recortar(e.puertoTCP)), v_.conexiones.size());
    if (nueva) v_.conexiones.push_back({e.ip, e.puertoTCP, e.puerto, {}, 0, 0});
    return lugar->second;
}

/// Whether an IPv4 address can be a station's: not this network, not many machines, not reserved.
bool esDeUnaMaquina(std::string_view ipv4) {
    constexpr int kDeMuchas = 224;
    int primero = 0;
    std::from_chars(ipv4.data(), ipv4.data() + ipv4.size(), primero);
    return primero > 0 && primero < kDeMuchas;
}

bool Validador::alcanzable(const Estacion& e, std::size_t linea) {
    const std::string nombre = "la estación PLC " + std::to_string(e.numero);
    const std::string consecuencia = "su conexión nunca se establece: sus bloques quedan BAD";
    const ClaseDeMaquina clase = claseDeMaquina(recortar(e.ip));
    const bool ip = clase != ClaseDeMaquina::Ninguna;
    if (!ip)
        problema(linea,
                 nombre + " tiene la Ip " + citarUtf8(e.ip) +
                     ", que no es IPv4, ni IPv6, ni el nombre de una máquina",
                 consecuencia, campo::kIp);
    if (clase == ClaseDeMaquina::IPv4 && !esDeUnaMaquina(recortar(e.ip)))
        problema(linea,
                 nombre + " tiene la Ip " + citarUtf8(e.ip) +
                     ", que no es la de ninguna máquina en particular",
                 "se intenta igual", campo::kIp);
    if (puertoTcpDeTexto(recortar(e.puertoTCP))) return ip;
    problema(linea,
             nombre + " tiene el puerto TCP " + citarUtf8(e.puertoTCP) +
                 ", que no es un entero de 1 a 65535",
             consecuencia, campo::kPuertoTcp);
    return false;
}

Trabajo Validador::bloques() {
    constexpr std::int64_t kPorBloque = 5;
    constexpr std::int64_t kPorRegistro = 2;
    v_.bloques.reserve(listas_.bloques.size());
    v_.estacionDeBloque.resize(listas_.bloques.size());
    lineasDeRegistros_.reserve(listas_.bloques.size());
    for (std::size_t i = 0; i < listas_.bloques.size(); ++i) {
        const Suerte suerte = bloque(i);
        co_await porciones_.gastar(kPorBloque +
                                   kPorRegistro * static_cast<std::int64_t>(registros_.size()));
        const double total = v_.variables + static_cast<double>(registros_.size());
        if (suerte != Suerte::NoConstruir && total > kMaximoDeVariables) {
            problema(listas_.lineasDeBloques[i],
                     "con este bloque la planta pasa de " + conComa(kMaximoDeVariables) +
                         " variables",
                     "no se construyen este bloque ni los " +
                         std::to_string(listas_.bloques.size() - i - 1) + " siguientes");
            v_.bloques.resize(listas_.bloques.size(), Suerte::NoConstruir);
            co_return;
        }
        v_.bloques.push_back(suerte);
        if (suerte == Suerte::NoConstruir) continue;
        const ConfiguracionDeBloque& b = listas_.bloques[i];
        const auto numero = static_cast<std::int16_t>(b.plc);
        const Destino& d = destinos_.at(llave(b.puerto, numero));
        ConexionPrevista& c = v_.conexiones[d.conexion];
        v_.estacionDeBloque[i] = d.estacion;
        ++c.bloques;
        c.variables += static_cast<double>(registros_.size());
        ++v_.bloquesConstruidos;
        v_.variables = total;
    }
}

bool Validador::cantidades(const ConfiguracionDeBloque& b, std::size_t linea) {
    const auto rechazar = [&](const char* que, double valor, const std::string& pide,
                              std::string_view cual) {
        problema(linea, std::string("el bloque tiene ") + que + " " + conComa(valor) + pide,
                 "no se crea el bloque", cual);
        return false;
    };
    if (!(b.cantidad >= 1 && b.cantidad <= limite::kCantidad) || !entero(b.cantidad))
        return rechazar("cantidad", b.cantidad,
                        " y debe ser un entero de 1 a " + conComa(limite::kCantidad),
                        campo::kCantidad);
    if (!(b.nivel >= 0 && b.nivel <= limite::kNivel) || !entero(b.nivel))
        return rechazar("nivel", b.nivel, " y debe ser un entero de 0 a " + conComa(limite::kNivel),
                        campo::kNivel);
    if (!esScan(b.scanSegundos))
        return rechazar("ScanTime", b.scanSegundos,
                        " y debe ser 0, o de " + conComa(limite::kTiempoMinimo) + " a " +
                            conComa(limite::kTiempo) + " s",
                        campo::kScan);
    return true;
}

const Destino* Validador::destinoDe(const ConfiguracionDeBloque& b, std::size_t linea) {
    const std::string consecuencia = "no se crea el bloque";
    if (!numerosDePuerto_.contains(b.puerto)) {
        problema(linea, "el puerto " + std::to_string(b.puerto) + " del bloque no existe",
                 consecuencia, campo::kPuerto);
        return nullptr;
    }
    const bool posible = b.plc >= -32768 && b.plc <= 32767 && entero(b.plc);
    const auto d = posible ? destinos_.find(llave(b.puerto, static_cast<std::int16_t>(b.plc)))
                           : destinos_.end();
    if (d == destinos_.end()) {
        problema(linea,
                 "ninguna conexión del puerto " + std::to_string(b.puerto) + " tiene el PLC " +
                     conComa(b.plc) + " del bloque",
                 consecuencia, campo::kPlc);
        return nullptr;
    }
    if (static_cast<std::size_t>(b.puerto) > puertosConstruidos_) {
        problema(linea,
                 "no hay ningún puerto en el lugar " + std::to_string(b.puerto) +
                     ", del que el bloque toma sus tiempos",
                 consecuencia, campo::kPuerto);
        return nullptr;
    }
    return &d->second;
}

Suerte Validador::bloque(std::size_t i) {
    const ConfiguracionDeBloque& b = listas_.bloques[i];
    const std::size_t linea = listas_.lineasDeBloques[i];
    registros_.clear();
    if (b.puerto <= 0) return Suerte::NoConstruir; // reported with its port
    const Destino* d = destinoDe(b, linea);
    if (d == nullptr || !cantidades(b, linea)) return Suerte::NoConstruir;
    registros_ = registrosDeBloque(b.direccion, b.cantidad);
    const std::string clave = claveDeBloque(b.puerto, b.plc, b.direccion);
    if (!nombrePublicable(nombreDeScript(clave)))
        problema(linea,
                 "el nombre " + citarUtf8(nombreDeScript(clave)) +
                     " no sirve de variable del guión",
                 "se construye y no se publica");
    repeticiones(b, d->estacion, linea);
    return sondeable(b, *d, linea) ? Suerte::Construir : Suerte::SinSondeo;
}

/// Names are told apart by scripts whatever their letter case, registers by their number: "1F" is
/// "1f", and "10" asks for the same as "010".
void Validador::repeticiones(const ConfiguracionDeBloque& b, std::size_t estacion,
                             std::size_t linea) {
    std::size_t cuantas = 0;
    std::string primera;
    std::uint32_t deQuien = 0;
    for (const std::string& registro : registros_) {
        const std::uint32_t ya = lineaDeQuienYa(b, estacion, registro, linea);
        if (ya == 0 || ++cuantas > 1) continue;
        primera = claveDeBloque(b.puerto, b.plc, registro);
        deQuien = ya;
    }
    if (cuantas == 0) return;
    std::string que = "el registro " + citarUtf8(primera);
    if (cuantas > 1) que += " y " + std::to_string(cuantas - 1) + " más del bloque";
    que += cuantas > 1 ? " están repetidos" : " está repetido";
    problema(linea, que + ": ya lo pide la línea " + std::to_string(deQuien),
             "se construyen los dos, con el mismo nombre si sólo cambian las mayúsculas",
             campo::kDireccion);
}

std::uint32_t Validador::lineaDeQuienYa(const ConfiguracionDeBloque& b, std::size_t estacion,
                                        const std::string& registro, std::size_t linea) {
    const auto esta = static_cast<std::uint32_t>(linea);
    if (const auto numero = byteDeRegistro(registro)) {
        const auto [r, nuevo] =
            lineasDeRegistros_.try_emplace(std::uint64_t{estacion} << 8 | *numero, esta);
        return nuevo ? 0 : r->second;
    }
    const auto [n, nuevo] = lineasDeNombres_.try_emplace(
        minusculas(nombreDeScript(claveDeBloque(b.puerto, b.plc, registro))), esta);
    return nuevo ? 0 : n->second;
}

bool Validador::sondeable(const ConfiguracionDeBloque& b, const Destino& d, std::size_t linea) {
    if (!byteDeRegistro(b.direccion)) {
        problema(linea, "la dirección " + citarUtf8(b.direccion) + " no es hexadecimal de 0 a FF",
                 "se construye y nunca se sondea: queda BAD", campo::kDireccion);
        return false;
    }
    const auto caben = static_cast<double>(registros_.size());
    if (caben < b.cantidad)
        problema(linea,
                 "el bloque " + citarUtf8(claveDeBloque(b.puerto, b.plc, b.direccion)) + " de " +
                     conComa(b.cantidad) + " registros pasa de FF",
                 "se construyen los " + conComa(caben) + " que caben, y no los otros " +
                     conComa(b.cantidad - caben),
                 campo::kCantidad);
    return v_.estaciones[d.estacion] == Suerte::Construir;
}

} // namespace

Validacion validar(ListasDeConfiguracion& listas, Problemas& problemas) {
    Validacion v;
    Porciones una;
    Trabajo todo = validar(listas, problemas, v, una);
    una.hacer(todo);
    return v;
}

Trabajo validar(ListasDeConfiguracion& listas, Problemas& problemas, Validacion& validacion,
                Porciones& porciones) {
    Validador validador(listas, problemas, validacion, porciones);
    co_await validador.validar();
}

bool nombrePublicable(std::string_view nombre) {
    const auto letra = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); };
    const auto sirve = [&letra](char c) { return letra(c) || (c >= '0' && c <= '9') || c == '_'; };
    return !nombre.empty() && nombre.size() <= kMaximoDeNombre && letra(nombre.front()) &&
           std::all_of(nombre.begin(), nombre.end(), sirve);
}

} // namespace kv
