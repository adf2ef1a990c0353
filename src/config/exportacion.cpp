// SPDX-License-Identifier: Apache-2.0
#include "config/exportacion.h"

#include "config/desconocidas.h"

#include "config/ini.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <array>
#include <cstring>

namespace kv {
namespace {

constexpr std::size_t kNada = std::string_view::npos;

enum class CampoDePuerto : std::uint8_t {
    Numero,
    Scan,
    Reconeccion,
    LeerDespues,
    Reintentos,
    TiempoFuera,
    Tipo,
};
enum class CampoDeEsclavo : std::uint8_t { Numero, Digitos, Indice, Ip, Puerto };
enum class CampoDeBloque : std::uint8_t {
    Bloque,
    Plc,
    Quantity,
    ScanTime,
    StarAdrees,
    Nivel,
    Activo,
};

/// The delimiter's letters have capitals and small ones in Windows-1252, and either kind counts.
std::size_t buscarDelimitador(std::string_view t, std::size_t desde) {
    const auto es = [&t](std::size_t i, char a, char b) { return t[i] == a || t[i] == b; };
    while (desde + kDelimitador.size() <= t.size()) {
        const void* p = std::memchr(t.data() + desde + 1, '\xA7', t.size() - desde - 1);
        if (p == nullptr) return kNada;
        const auto i = static_cast<std::size_t>(static_cast<const char*>(p) - t.data()) - 1;
        if (i + kDelimitador.size() > t.size()) return kNada;
        if (es(i, '\xC4', '\xE4') && es(i + 2, '\xE6', '\xC6') && es(i + 3, '\xE3', '\xC3'))
            return i;
        desde = i + 1;
    }
    return kNada;
}

bool empiezaCon(std::string_view texto, std::string_view clave) {
    return texto.size() > clave.size() && texto[clave.size()] == ':' &&
           igualSinCaja(texto.substr(0, clave.size()), clave);
}

bool esMarca(std::string_view linea, std::string_view palabra) {
    return linea.size() == palabra.size() + 2 * kDelimitador.size() &&
           linea.starts_with(kDelimitador) && linea.ends_with(kDelimitador) &&
           linea.substr(kDelimitador.size(), palabra.size()) == palabra;
}

/// Why the reading of an export ends before its end.
struct Falla {
    std::string que;
};

/// Calls `tarea` with what stands behind each delimiter of a line, and whether another closes it.
template <class Tarea>
void recorrerCampos(std::string_view linea, Tarea tarea) {
    for (std::size_t d = buscarDelimitador(linea, 0); d != kNada;) {
        const std::size_t inicio = d + kDelimitador.size();
        d = buscarDelimitador(linea, inicio);
        tarea(linea.substr(inicio, d == kNada ? kNada : d - inicio), d != kNada);
    }
}

/// The fields of one record line under the keys of its kind, told apart in one pass.
template <std::size_t N>
class Registro {
  public:
    Registro(std::string_view linea, const std::array<std::string_view, N>& claves)
        : claves_(claves) {
        recorrerCampos(linea,
                       [this](std::string_view campo, bool cerrado) { anotar(campo, cerrado); });
    }

    template <class Campo>
    [[nodiscard]] std::string_view bytes(Campo c) const {
        const auto i = static_cast<std::size_t>(c);
        if (presente_[i] && !cerrado_[i])
            throw Falla{"al campo " + std::string(claves_[i]) + " le falta el delimitador final"};
        return valores_[i];
    }
    template <class Campo>
    [[nodiscard]] double numero(Campo c) const {
        const auto n = numeroConComa(bytes(c));
        if (!n) throw Falla{cita(c) + " no es un número"};
        return *n;
    }
    template <class Campo>
    [[nodiscard]] std::int16_t corto(Campo c) const {
        const auto e = enteroCorto(numero(c));
        if (!e) throw Falla{cita(c) + " no cabe en un entero de 16 bits"};
        return *e;
    }
    /// True exactly for "1"; what is neither a number nor true or false is an error.
    template <class Campo>
    [[nodiscard]] bool activo(Campo c) const {
        const std::string_view b = bytes(c);
        if (!esNumerico(b) && !igualSinCaja(b, "true") && !igualSinCaja(b, "false"))
            throw Falla{cita(c) + " no es un valor lógico"};
        return b == "1";
    }

  private:
    void anotar(std::string_view campo, bool cerrado) {
        for (std::size_t i = 0; i < N; ++i) {
            if (presente_[i] || !empiezaCon(campo, claves_[i])) continue;
            presente_[i] = true;
            cerrado_[i] = cerrado;
            valores_[i] = campo.substr(claves_[i].size() + 1);
        }
    }
    template <class Campo>
    [[nodiscard]] std::string cita(Campo c) const {
        const auto i = static_cast<std::size_t>(c);
        return presente_[i] ? std::string(claves_[i]) + ":" + citar(valores_[i])
                            : "falta el campo " + std::string(claves_[i]) + ", que";
    }

    const std::array<std::string_view, N>& claves_;
    std::array<std::string_view, N> valores_;
    std::array<bool, N> presente_{};
    std::array<bool, N> cerrado_{};
};

// What it takes to read a record.
constexpr std::int64_t kPorRegistro = 15;

class LectorDeExportacion {
  public:
    LectorDeExportacion(std::string_view contenido, ListasDeConfiguracion& listas,
                        Problemas& problemas, Porciones& porciones)
        : contenido_(contenido), listas_(listas), problemas_(problemas), porciones_(porciones) {}

    Trabajo leer();
    [[nodiscard]] std::size_t linea() const { return numeroDeLinea_; }

  private:
    [[nodiscard]] bool alFinal() const { return posicion_ >= contenido_.size(); }
    void siguiente();
    [[nodiscard]] std::uint32_t lineaActual() const {
        return static_cast<std::uint32_t>(numeroDeLinea_);
    }
    [[nodiscard]] std::string texto(std::string_view bytes);
    void problema(std::string que, std::string consecuencia) {
        problemas_.agregar(listas_.archivo, numeroDeLinea_, std::move(que),
                           std::move(consecuencia));
    }
    void sinMarcaInicial();
    void puerto();
    Trabajo esclavos();
    Trabajo bloques();

    std::string_view contenido_;
    ListasDeConfiguracion& listas_;
    Problemas& problemas_;
    Porciones& porciones_;
    std::size_t posicion_ = 0;
    std::size_t numeroDeLinea_ = 0;
    std::string_view linea_;
    std::int16_t puertoActual_ = 0;
    bool avisoDeUtf8_ = false;
};

void LectorDeExportacion::siguiente() {
    if (alFinal()) throw Falla{"el archivo termina antes de sus marcas finales"};
    const auto salto = contenido_.find('\n', posicion_);
    const std::size_t fin = salto == kNada ? contenido_.size() : salto;
    linea_ = contenido_.substr(posicion_, fin - posicion_);
    if (salto != kNada && linea_.ends_with('\r')) linea_.remove_suffix(1);
    posicion_ = salto == kNada ? fin : fin + 1;
    ++numeroDeLinea_;
}

std::string LectorDeExportacion::texto(std::string_view bytes) {
    if (bytes.size() > kMaximoDeValor) {
        problema("el texto " + citar(bytes) + " es demasiado largo",
                 "se corta a " + std::to_string(kMaximoDeValor) + " caracteres");
        bytes = bytes.substr(0, kMaximoDeValor);
    }
    if (!avisoDeUtf8_ && pareceUtf8(bytes)) {
        avisoDeUtf8_ = true;
        problema("el texto " + citar(bytes) + " parece UTF-8 y debe ser Windows-1252",
                 "sus letras con acento se leen cambiadas");
    }
    return utf8DesdeWindows1252(bytes);
}

Trabajo LectorDeExportacion::leer() {
    if (contenido_.empty()) {
        problema("el archivo está vacío", "no se construye nada");
        co_return;
    }
    siguiente();
    siguiente();
    siguiente();
    if (!esMarca(linea_, "puertos:inicio")) {
        sinMarcaInicial();
        co_return;
    }
    while (!alFinal() && !esMarca(linea_, "puertos:fin")) {
        siguiente();
        if (esMarca(linea_, "puertos:fin")) break;
        puerto();
        siguiente();
        co_await esclavos();
        siguiente();
        co_await bloques();
    }
    if (!esMarca(linea_, "puertos:fin"))
        problema("el archivo termina sin la marca puertos:fin",
                 "está cortado: se usa lo leído hasta aquí");
}

void LectorDeExportacion::sinMarcaInicial() {
    const std::string enUtf8 = utf8DesdeWindows1252(kDelimitador);
    if (linea_.find(enUtf8) != kNada)
        return problema("el archivo está guardado como UTF-8 y debe ser Windows-1252",
                        "no se construye nada");
    problema("la tercera línea no es la marca puertos:inicio", "no se construye nada");
}

void LectorDeExportacion::puerto() {
    if (alFinal()) throw Falla{"el archivo termina en el registro de un puerto"};
    const Registro<kCamposDePuertoExportado.size()> r(linea_, kCamposDePuertoExportado);
    Puerto p;
    p.numero = r.corto(CampoDePuerto::Numero);
    p.scanPorDefecto = r.numero(CampoDePuerto::Scan);
    p.segReconeccion = r.numero(CampoDePuerto::Reconeccion);
    p.leerDespuesDeEscribir = r.numero(CampoDePuerto::LeerDespues) == 1;
    p.reintentosMax = r.numero(CampoDePuerto::Reintentos);
    p.tiempoFuera = r.numero(CampoDePuerto::TiempoFuera);
    p.tipoPlcPorDefecto = r.numero(CampoDePuerto::Tipo);
    puertoActual_ = puertoDeRegistros(p.numero);
    listas_.puertos.push_back(p);
    listas_.lineasDePuertos.push_back({lineaActual()});
}

Trabajo LectorDeExportacion::esclavos() {
    if (!esMarca(linea_, "esclavos:inicio")) {
        problema("se esperaba la marca esclavos:inicio", "el puerto queda sin estaciones");
        co_return;
    }
    if (alFinal()) co_return;
    siguiente();
    while (!alFinal() && !esMarca(linea_, "esclavos:fin")) {
        co_await porciones_.gastar(kPorRegistro);
        const Registro<kCamposDeEstacionExportada.size()> r(linea_, kCamposDeEstacionExportada);
        Estacion e;
        e.numero = r.corto(CampoDeEsclavo::Numero);
        e.digitos = r.corto(CampoDeEsclavo::Digitos);
        e.indice = r.corto(CampoDeEsclavo::Indice);
        e.ip = texto(r.bytes(CampoDeEsclavo::Ip));
        e.puertoTCP = texto(r.bytes(CampoDeEsclavo::Puerto));
        e.puerto = puertoActual_;
        listas_.estaciones.push_back(std::move(e));
        listas_.lineasDeEstaciones.push_back(lineaActual());
        siguiente();
    }
}

Trabajo LectorDeExportacion::bloques() {
    if (!esMarca(linea_, "bloques:inicio")) {
        if (!esMarca(linea_, "puertos:fin"))
            problema("se esperaba la marca bloques:inicio", "el puerto queda sin bloques");
        co_return;
    }
    if (alFinal()) co_return;
    siguiente();
    while (!alFinal() && !esMarca(linea_, "bloques:fin")) {
        co_await porciones_.gastar(kPorRegistro);
        const Registro<kCamposDeBloqueExportado.size()> r(linea_, kCamposDeBloqueExportado);
        ConfiguracionDeBloque b;
        static_cast<void>(r.numero(CampoDeBloque::Bloque)); // a name, but a number all the same
        b.nombre = texto(r.bytes(CampoDeBloque::Bloque));
        b.plc = r.numero(CampoDeBloque::Plc);
        b.cantidad = r.numero(CampoDeBloque::Quantity);
        b.scanSegundos = r.numero(CampoDeBloque::ScanTime);
        b.direccion = texto(r.bytes(CampoDeBloque::StarAdrees));
        b.nivel = r.numero(CampoDeBloque::Nivel);
        b.activoPorDefecto = r.activo(CampoDeBloque::Activo);
        b.puerto = puertoActual_;
        listas_.bloques.push_back(std::move(b));
        listas_.lineasDeBloques.push_back(lineaActual());
        siguiente();
    }
    if (!alFinal()) siguiente();
}

void fallar(std::size_t linea, const std::string& que, ListasDeConfiguracion& listas,
            Problemas& problemas, const MensajeDeError& mensaje) {
    problemas.agregar(listas.archivo, linea, que,
                      "la lectura termina aquí y se construye lo leído antes");
    if (mensaje) mensaje("Error al abrir el archivo");
}

Trabajo leerTexto(std::string_view contenido, ListasDeConfiguracion& listas, Problemas& problemas,
                  const MensajeDeError& mensaje, Porciones& porciones) {
    LectorDeExportacion lector(contenido, listas, problemas, porciones);
    try {
        co_await lector.leer();
    } catch (const Falla& f) {
        fallar(lector.linea(), f.que, listas, problemas, mensaje);
    }
    if (!empiezaComoUtf16(contenido)) // its reader has said so
        co_await revisarNombresDeExportacion(contenido, listas.archivo, listas.ignoradas,
                                             porciones);
}

} // namespace

std::vector<std::string_view> camposDeExportacion(std::string_view linea) {
    std::vector<std::string_view> campos;
    recorrerCampos(linea, [&campos](std::string_view campo, bool cerrado) {
        if (cerrado) campos.push_back(campo);
    });
    return campos;
}

void leerProyectoDeTexto(std::string_view contenido, const std::string& ruta,
                         ListasDeConfiguracion& listas, Problemas& problemas,
                         const MensajeDeError& mensaje) {
    listas = {};
    listas.archivo = ruta;
    Porciones una;
    Trabajo todo = leerTexto(contenido, listas, problemas, mensaje, una);
    una.hacer(todo);
}

Trabajo leerConfiguracionDeProyecto(Archivos& archivos, std::string rutaExportacion,
                                    ListasDeConfiguracion& listas, Problemas& problemas,
                                    const MensajeDeError& mensaje, Porciones& porciones) {
    listas = {};
    listas.archivo = archivos.comoEsta(rutaExportacion);
    const HuellaDeArchivo huella = archivos.huella(rutaExportacion);
    const auto contenido = archivos.leer(rutaExportacion, kMaximoDeArchivo);
    if (!contenido) {
        fallar(0,
               huella.largo > kMaximoDeArchivo ? "el archivo tiene más de 256 MiB"
                                               : "el archivo no se puede leer",
               listas, problemas, mensaje);
        co_return;
    }
    co_await porciones.gastar(costoDeLeer(*contenido));
    co_await leerTexto(*contenido, listas, problemas, mensaje, porciones);
}

} // namespace kv
