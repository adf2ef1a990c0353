// SPDX-License-Identifier: Apache-2.0
#include "config/driver.h"

#include "config/claves.h"
#include "config/ini.h"
#include "plant/limites.h"
#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>
#include <optional>

namespace kv {
namespace {

constexpr double kMaximoDeEntradas = 4294967295.0; // entry numbers are 32 bits wide

template <std::size_t N>
using Campos = std::array<DatoIni, N>;

// What it takes to read an entry.
constexpr std::int64_t kPorEntrada = 6;

/// Reads the dispatched keys into records.
class LectorDeDriver {
  public:
    LectorDeDriver(std::string_view contenido, ListasDeConfiguracion& listas, Problemas& problemas,
                   Porciones& porciones)
        : contenido_(contenido), listas_(listas), problemas_(problemas), porciones_(porciones) {}

    Trabajo leer(const ClavesDeDriver& claves);

  private:
    [[nodiscard]] std::string_view bytes(const DatoIni& d) const {
        return contenido_.substr(d.inicio, d.largo);
    }
    [[nodiscard]] std::string_view bytes(const DatoIni& d, std::string_view porDefecto) const {
        return d.linea == 0 ? porDefecto : bytes(d);
    }
    void problema(std::size_t linea, std::string que, std::string consecuencia) {
        problemas_.agregar(listas_.archivo, linea, std::move(que), std::move(consecuencia));
    }
    [[nodiscard]] std::string texto(const DatoIni& d, std::string_view porDefecto);
    [[nodiscard]] double cantidad(const DatoIni& d, std::string_view nombre);

    void repetida(const std::string& que, std::uint32_t linea, std::uint32_t vale);
    void repetidasDe(const std::string& seccion, const SeccionDePuerto& s);
    Trabajo seccion(std::uint32_t ordinal, const SeccionDePuerto& s);
    void ultimaLinea();
    void seccionesQueFaltan(std::uint32_t desde, std::uint32_t hasta, std::size_t linea);
    [[nodiscard]] Puerto puerto(std::uint32_t ordinal, const SeccionDePuerto& s);
    template <std::size_t N, class Leer>
    Trabajo entradas(const SeccionDePuerto& s, CampoDePuerto cuenta,
                     const std::vector<DatoIni>& datos,
                     const std::array<std::string_view, N>& nombres, std::string_view prefijo,
                     double& leidas, Leer leerEntrada);
    void esclavo(std::uint32_t numero, std::uint32_t linea,
                 const Campos<kCamposDeEsclavo.size()>& c);
    void bloque(std::uint32_t numero, std::uint32_t linea, const Campos<kCamposDeBloque.size()>& c);

    std::string_view contenido_;
    ListasDeConfiguracion& listas_;
    Problemas& problemas_;
    Porciones& porciones_;
    std::int16_t puertoActual_ = 0;
    double esclavosLeidos_ = 0; ///< entries of the sections before this one
    double bloquesLeidos_ = 0;
    bool avisoDeUtf8_ = false;
};

std::string LectorDeDriver::texto(const DatoIni& d, std::string_view porDefecto) {
    const std::string_view b = bytes(d, porDefecto);
    const bool ascii = std::all_of(b.begin(), b.end(), [](char c) { return (c & 0x80) == 0; });
    if (ascii) return std::string(b);
    if (!avisoDeUtf8_ && pareceUtf8(b)) {
        avisoDeUtf8_ = true;
        problema(d.linea, "el archivo parece guardado como UTF-8 y debe ser Windows-1252",
                 "las letras con acento se leen cambiadas");
    }
    return utf8DesdeWindows1252(b);
}

double LectorDeDriver::cantidad(const DatoIni& d, std::string_view nombre) {
    const auto numero = numeroDeTexto(bytes(d, "0"));
    if (numero) return std::floor(std::clamp(*numero, 0.0, kMaximoDeEntradas));
    problema(d.linea, std::string(nombre) + "=" + citar(bytes(d)) + " no es un número",
             "se toma 0");
    return 0;
}

/// `linea` is 0 when it is not.
void LectorDeDriver::repetida(const std::string& que, std::uint32_t linea, std::uint32_t vale) {
    if (linea != 0)
        problema(linea, que + " está repetida: vale la de la línea " + std::to_string(vale),
                 "esta no cuenta");
}

void LectorDeDriver::repetidasDe(const std::string& seccion, const SeccionDePuerto& s) {
    repetida("la sección [" + seccion + "]", s.repetida, s.linea);
    for (std::size_t i = 0; i < s.repetidos.size(); ++i)
        repetida(std::string(kCamposDePuerto[i]), s.repetidos[i], s.propios[i].linea);
}

/// A file that is still being written ends anywhere, in a number, too.
void LectorDeDriver::ultimaLinea() {
    if (contenido_.empty() || contenido_.back() == '\n' || contenido_.back() == '\r') return;
    const auto saltos = std::count(contenido_.begin(), contenido_.end(), '\n');
    problema(static_cast<std::size_t>(saltos) + 1,
             "la última línea no termina: el archivo puede estar a medio escribir",
             "se toma como está");
}

Trabajo LectorDeDriver::leer(const ClavesDeDriver& claves) {
    ultimaLinea();
    repetida("la sección [CONFIG]", claves.configRepetida, claves.lineaDeConfig);
    if (claves.cantPuertos.linea == 0) {
        problema(0, "falta CANT_PUERTOS en la sección [CONFIG]", "no se construye nada");
        co_return;
    }
    repetida("CANT_PUERTOS", claves.cantPuertosRepetida, claves.cantPuertos.linea);
    const double cuenta = cantidad(claves.cantPuertos, "CANT_PUERTOS");
    const auto hasta = static_cast<std::uint32_t>(std::min<double>(cuenta, kMaximoDePuertos));
    const std::size_t linea = claves.cantPuertos.linea;
    std::uint32_t siguiente = 1;
    for (const auto& [ordinal, s] : claves.puertos) {
        if (ordinal > hasta) {
            problema(s.linea,
                     "CANT_PUERTOS es " + textoDeNumero(cuenta) + " y la sección [PUERTO" +
                         std::to_string(ordinal) + "] queda fuera de la cuenta",
                     "se ignora la sección con sus estaciones y bloques");
            continue;
        }
        if (siguiente < ordinal) seccionesQueFaltan(siguiente, ordinal - 1, linea);
        co_await seccion(ordinal, s);
        siguiente = ordinal + 1;
    }
    if (siguiente <= cuenta)
        problema(linea,
                 "CANT_PUERTOS es " + textoDeNumero(cuenta) + " y no hay secciones desde [PUERTO" +
                     std::to_string(siguiente) + "] en adelante",
                 "se leen sólo los puertos que el archivo tiene");
}

void LectorDeDriver::seccionesQueFaltan(std::uint32_t desde, std::uint32_t hasta,
                                        std::size_t linea) {
    // They count as sections without keys, so that the ports after them keep their places.
    const SeccionDePuerto vacia;
    for (std::uint32_t n = desde; n <= hasta; ++n) {
        listas_.puertos.push_back(puerto(n, vacia));
        listas_.lineasDePuertos.push_back({static_cast<std::uint32_t>(linea)});
    }
    std::string cuales = "[PUERTO" + std::to_string(desde) + "]";
    if (hasta != desde) cuales += " a [PUERTO" + std::to_string(hasta) + "]";
    problema(linea, "falta " + cuales,
             "cada puerto que falta se crea sin estaciones, con los valores por defecto y el "
             "número anterior a su orden");
}

Puerto LectorDeDriver::puerto(std::uint32_t ordinal, const SeccionDePuerto& s) {
    const auto dato = [&s](CampoDePuerto c) { return s.propios[static_cast<std::size_t>(c)]; };
    const auto numero = [&](CampoDePuerto c, double porDefecto, bool usarPorDefecto = true) {
        const DatoIni d = dato(c);
        if (d.linea == 0) return porDefecto;
        const auto n = numeroConComa(bytes(d));
        if (n) return *n;
        const double usado = usarPorDefecto ? porDefecto : 0;
        problema(d.linea, std::string(nombreDe(c)) + "=" + citar(bytes(d)) + " no es un número",
                 "se toma " + textoDeNumero(usado));
        return usado;
    };
    Puerto p;
    // A number that cannot be read is no port: the default could be the number of another one.
    p.numero = numero(CampoDePuerto::Numero, ordinal - 1, false);
    p.scanPorDefecto = numero(CampoDePuerto::Scan, de_puerto::kScan);
    p.leerDespuesDeEscribir = bytes(dato(CampoDePuerto::LeerDespues), "1") == "1";
    p.reintentosMax = numero(CampoDePuerto::Reintentos, de_puerto::kReintentos);
    p.tiempoFuera = numero(CampoDePuerto::TiempoFuera, de_puerto::kTiempoFuera);
    p.tipoPlcPorDefecto = numero(CampoDePuerto::Tipo, de_puerto::kTipoPlc);
    p.segReconeccion = numero(CampoDePuerto::SegReconeccion, de_puerto::kReconeccion);
    return p;
}

Trabajo LectorDeDriver::seccion(std::uint32_t ordinal, const SeccionDePuerto& s) {
    const Puerto p = puerto(ordinal, s);
    const std::string nombre = std::string(kPrefijoDePuerto) + std::to_string(ordinal);
    const auto falta = [&s](CampoDePuerto c) {
        return s.propios[static_cast<std::size_t>(c)].linea == 0;
    };
    if (falta(CampoDePuerto::Numero))
        problema(s.linea, "falta NUMERO en [" + nombre + "]",
                 "se toma " + textoDeNumero(p.numero) + ", el anterior a su orden");
    repetidasDe(nombre, s);
    // A file that was cut off may end where nothing else tells.
    const bool sinBloques = s.bloques.empty() && falta(CampoDePuerto::CantBloques);
    if (sinBloques && s.esclavos.empty() && falta(CampoDePuerto::CantEsclavos))
        problema(s.linea, "faltan CantEsclavos y CantBloques en la sección",
                 "el puerto queda sin estaciones ni bloques");
    else if (sinBloques)
        problema(s.linea, "falta CantBloques en la sección", "el puerto queda sin bloques");
    const auto lineaDe = [&s](CampoDePuerto c) {
        const DatoIni& d = s.propios[static_cast<std::size_t>(c)];
        return d.linea != 0 ? d.linea : s.linea;
    };
    listas_.puertos.push_back(p);
    listas_.lineasDePuertos.push_back(
        {lineaDe(CampoDePuerto::Numero), lineaDe(CampoDePuerto::TiempoFuera),
         lineaDe(CampoDePuerto::Reintentos), lineaDe(CampoDePuerto::SegReconeccion),
         lineaDe(CampoDePuerto::Scan)});
    puertoActual_ = puertoDeRegistros(p.numero);
    co_await entradas(s, CampoDePuerto::CantEsclavos, s.esclavos, kCamposDeEsclavo,
                      kPrefijoDeEsclavo, esclavosLeidos_,
                      [this](auto n, auto linea, const auto& c) { esclavo(n, linea, c); });
    listas_.bloques.reserve(listas_.bloques.size() + s.bloques.size() / kCamposDeBloque.size());
    co_await entradas(s, CampoDePuerto::CantBloques, s.bloques, kCamposDeBloque, kPrefijoDeBloque,
                      bloquesLeidos_,
                      [this](auto n, auto linea, const auto& c) { bloque(n, linea, c); });
}

/// Goes through the entries that the file has, by number; those inside the section's range are
/// read. The first that is missing, and the first outside the range, are reported for all of them.
template <std::size_t N, class Leer>
Trabajo LectorDeDriver::entradas(const SeccionDePuerto& s, CampoDePuerto cuenta,
                                 const std::vector<DatoIni>& datos,
                                 const std::array<std::string_view, N>& nombres,
                                 std::string_view prefijo, double& leidas, Leer leerEntrada) {
    const DatoIni& dato = s.propios[static_cast<std::size_t>(cuenta)];
    const std::string_view nombre = nombreDe(cuenta);
    const double desde = leidas;
    const double hasta = desde + cantidad(dato, nombre);
    double encontradas = 0;
    double primeraAusente = desde;
    std::uint32_t lineaDeSobra = 0;
    for (std::size_t i = 0; i < datos.size();) {
        co_await porciones_.gastar(kPorEntrada);
        const std::uint32_t n = datos[i].numero;
        const std::uint32_t linea = datos[i].linea;
        Campos<N> campos{};
        const DatoIni* otra = nullptr; // the first that is there already
        for (; i < datos.size() && datos[i].numero == n; ++i) {
            DatoIni& campo = campos[datos[i].campo];
            if (campo.linea == 0)
                campo = datos[i];
            else if (otra == nullptr)
                otra = &datos[i];
        }
        if (n < desde || n >= hasta) {
            if (lineaDeSobra == 0) lineaDeSobra = linea;
            continue;
        }
        if (otra != nullptr)
            repetida(std::string(prefijo) + std::to_string(n) + "_" +
                         std::string(nombres[otra->campo]),
                     otra->linea, campos[otra->campo].linea);
        ++encontradas;
        if (n == primeraAusente) ++primeraAusente;
        leerEntrada(n, linea, campos);
    }
    leidas = hasta;
    const std::string rango = std::string(nombre) + " es " + textoDeNumero(hasta - desde);
    if (encontradas < hasta - desde)
        problema(dato.linea,
                 rango + " y el archivo tiene sólo " + textoDeNumero(encontradas) +
                     "; la primera que falta es " + std::string(prefijo) +
                     textoDeNumero(primeraAusente),
                 "lo que falta no se crea");
    if (lineaDeSobra != 0)
        problema(lineaDeSobra,
                 rango + ", desde " + std::string(prefijo) + textoDeNumero(desde) +
                     ", y hay entradas con otros números",
                 "se ignoran");
}

void LectorDeDriver::esclavo(std::uint32_t numero, std::uint32_t linea,
                             const Campos<kCamposDeEsclavo.size()>& c) {
    const auto dato = [&c](CampoDeEsclavo k) { return c[static_cast<std::size_t>(k)]; };
    bool sirve = true;
    const auto corto = [&](CampoDeEsclavo k) {
        const DatoIni d = dato(k);
        const std::string_view b = bytes(d, "0");
        const auto n = numeroConComa(b);
        const auto e = n ? enteroCorto(*n) : std::nullopt;
        if (!e && sirve) {
            sirve = false;
            problema(d.linea,
                     std::string(kPrefijoDeEsclavo) + std::to_string(numero) + "_" +
                         std::string(nombreDe(k)) + "=" + citar(b) +
                         (n ? " no cabe en un entero de 16 bits" : " no es un número"),
                     "no se crea la estación");
        }
        return e.value_or(0);
    };
    Estacion e;
    e.numero = corto(CampoDeEsclavo::Numero);
    e.indice = corto(CampoDeEsclavo::Indice);
    e.digitos = corto(CampoDeEsclavo::Digitos);
    if (!sirve) return;
    e.ip = texto(dato(CampoDeEsclavo::Ip), de_estacion::kIp);
    e.puertoTCP = texto(dato(CampoDeEsclavo::Puerto), de_estacion::kPuertoTcp);
    e.puerto = puertoActual_;
    listas_.estaciones.push_back(std::move(e));
    listas_.lineasDeEstaciones.push_back(linea);
}

void LectorDeDriver::bloque(std::uint32_t numero, std::uint32_t linea,
                            const Campos<kCamposDeBloque.size()>& c) {
    const auto dato = [&c](CampoDeBloque k) { return c[static_cast<std::size_t>(k)]; };
    bool sirve = true;
    const auto real = [&](CampoDeBloque k, std::string_view porDefecto) {
        const DatoIni d = dato(k);
        const std::string_view b = bytes(d, porDefecto);
        const auto n = numeroConComa(b);
        if (!n && sirve) {
            sirve = false;
            const std::string clave = std::string(kPrefijoDeBloque) + std::to_string(numero) + "_" +
                                      std::string(nombreDe(k));
            problema(d.linea != 0 ? d.linea : linea,
                     d.linea != 0 ? clave + "=" + citar(b) + " no es un número" : "falta " + clave,
                     "no se crea el bloque");
        }
        return n.value_or(0);
    };
    ConfiguracionDeBloque b;
    b.plc = real(CampoDeBloque::Plc, "");
    b.cantidad = real(CampoDeBloque::Quantity, "");
    b.scanSegundos = real(CampoDeBloque::ScanTime, "");
    b.nivel = real(CampoDeBloque::Nivel, "0");
    b.numeroConfigurado = real(CampoDeBloque::Numero, "0");
    if (!sirve) return;
    b.nombre = texto(dato(CampoDeBloque::Bloque), "");
    b.direccion = texto(dato(CampoDeBloque::StarAdrees), "");
    b.activoPorDefecto = bytes(dato(CampoDeBloque::ActiveDefault), "1") == "1";
    b.puerto = puertoActual_;
    listas_.bloques.push_back(std::move(b));
    listas_.lineasDeBloques.push_back(linea);
}

Trabajo leerTexto(std::string_view contenido, ListasDeConfiguracion& listas, Problemas& problemas,
                  Porciones& porciones) {
    if (empiezaComoUtf16(contenido)) {
        problemas.agregar(listas.archivo, 1, "el archivo está guardado como UTF-16",
                          "no se construye nada: debe ser Windows-1252");
        co_return;
    }
    ClavesDeDriver claves;
    {
        Desconocidas desconocidas(listas.archivo, listas.ignoradas);
        co_await claves.leer(contenido, desconocidas, porciones);
    }
    LectorDeDriver lector(contenido, listas, problemas, porciones);
    co_await lector.leer(claves);
}

} // namespace

void leerDriverDeTexto(std::string_view contenido, const std::string& ruta,
                       ListasDeConfiguracion& listas, Problemas& problemas) {
    listas = {};
    listas.archivo = ruta;
    Porciones una;
    Trabajo todo = leerTexto(contenido, listas, problemas, una);
    una.hacer(todo);
}

void leerConfiguracionDeDriver(Archivos& archivos, const std::string& ruta,
                               ListasDeConfiguracion& listas, Problemas& problemas) {
    Porciones una;
    Trabajo todo = leerConfiguracionDeDriver(archivos, ruta, listas, problemas, una);
    una.hacer(todo);
}

Trabajo leerConfiguracionDeDriver(Archivos& archivos, std::string ruta,
                                  ListasDeConfiguracion& listas, Problemas& problemas,
                                  Porciones& porciones) {
    listas = {};
    listas.archivo = archivos.comoEsta(ruta);
    const HuellaDeArchivo huella = archivos.huella(ruta);
    if (!huella.existe) {
        problemas.agregar(listas.archivo, 0, "no existe el archivo de configuración",
                          "no se construye nada");
        co_return;
    }
    const auto contenido = archivos.leer(ruta, kMaximoDeArchivo);
    if (!contenido) {
        problemas.agregar(listas.archivo, 0,
                          huella.largo > kMaximoDeArchivo ? "el archivo tiene más de 256 MiB"
                                                          : "el archivo no se puede leer",
                          "no se construye nada");
        co_return;
    }
    co_await porciones.gastar(costoDeLeer(*contenido));
    co_await leerTexto(*contenido, listas, problemas, porciones);
}

} // namespace kv
