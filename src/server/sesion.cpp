// SPDX-License-Identifier: Apache-2.0
#include "server/sesion.h"

#include "events/rechazo.h"
#include "plant/ordenantes.h"
#include "server/cifrado.h"
#include "text/fecha.h"
#include "text/nombre_del_programa.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"
#include "view/columnas.h"

#include <cmath>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace kv {
namespace {

constexpr std::size_t kLlegadaEnCaja = 4096;     // bytes of one arrival that the box shows
constexpr std::size_t kLlegadaEnRegistro = 2048; // and a log entry
constexpr std::size_t kCampoEnRegistro = 64;     // of what is wrong in it

constexpr std::size_t kTramasPorTanda = 200;
constexpr std::int64_t kTandaUs = 1000;
constexpr std::int64_t kSeguirMs = 1;

std::string paraMostrar(std::string_view llegada, std::size_t maximo) {
    std::string texto = enUnaLinea(utf8DesdeWindows1252(llegada.substr(0, maximo)));
    if (llegada.size() > maximo) texto += "... (" + std::to_string(llegada.size()) + " bytes)";
    return texto;
}

/// `contenido` is the frame of which the field is part.
double numeroDeCampo(std::string_view campo, std::string_view contenido) {
    const auto numero = numeroDeTexto(campo);
    if (!numero)
        throw std::invalid_argument(
            "No coinciden los tipos: " + paraMostrar(campo, kCampoEnRegistro) + " en " +
            paraMostrar(contenido, kCampoEnRegistro));
    return *numero;
}

} // namespace

/// As much as is done in one go: about a millisecond's worth.
class Sesion::Tanda {
  public:
    explicit Tanda(const Reloj& reloj) : reloj_(&reloj), desdeUs_(reloj.monotonicoUs()) {}
    static Tanda sinFin() { return {}; }
    /// Whether there was enough; counts one more.
    [[nodiscard]] bool basta() {
        if (reloj_ == nullptr) return false;
        return hechas_++ == kTramasPorTanda || reloj_->monotonicoUs() - desdeUs_ >= kTandaUs;
    }

  private:
    Tanda() = default;
    const Reloj* reloj_ = nullptr;
    std::int64_t desdeUs_ = 0;
    std::size_t hechas_ = 0;
};

/// Marks the session as busy for as long as it lives, whichever way that ends.
class Sesion::Trabajo {
  public:
    explicit Trabajo(bool& trabajando) : trabajando_(trabajando) { trabajando_ = true; }
    ~Trabajo() { trabajando_ = false; }
    Trabajo(const Trabajo&) = delete;
    Trabajo& operator=(const Trabajo&) = delete;

  private:
    bool& trabajando_;
};

Sesion::Sesion(Bucle& bucle, const Tablas& tablas, Vista& vista, Sucesos& sucesos, LogAcotado& log,
               Puerta& puerta, OrdenesDelCliente& ordenes, CableDelCliente& cable)
    : bucle_(bucle), tablas_(tablas), vista_(vista), sucesos_(sucesos), log_(log), puerta_(puerta),
      ordenes_(ordenes), cable_(cable),
      seguir_(bucle.crearTemporizador([this] { trabajar(Tanda(bucle_.reloj())); })) {
    seguir_->tocarUnaVez();
}

void Sesion::empezar(std::string_view remoto) {
    terminar();
    remoto_ = remoto;
    origen_ = origenDeCliente(remoto_);
}

void Sesion::terminar() {
    ++numero_;
    freno_ = false;
    if (trabajando_) return; // what runs finds out
    llegadas_.clear();
    seguir_->habilitar(false);
}

void Sesion::atender(std::string_view llegada) {
    try {
        anotar(llegada);
        llegadas_.push_back({numero_, std::string(llegada)});
    } catch (const std::exception& falla) {
        return anotarFalla(falla.what(), llegada, remoto_);
    }
    if (trabajando_) return frenar(true);
    trabajar(Tanda(bucle_.reloj()));
}

void Sesion::acabar() { trabajar(Tanda::sinFin()); }

void Sesion::trabajar(Tanda tanda) {
    if (trabajando_) return;
    {
        const Trabajo trabajo(trabajando_);
        while (!llegadas_.empty() && adelantar(llegadas_.front(), tanda))
            llegadas_.pop_front();
    }
    frenar(!llegadas_.empty());
    if (!llegadas_.empty()) seguir_->rearmar(kSeguirMs);
}

void Sesion::frenar(bool freno) {
    if (std::exchange(freno_, freno) != freno) cable_.frenar(freno);
}

/// False: there is more of it to do.
bool Sesion::adelantar(Llegada& llegada, Tanda& tanda) {
    try {
        return llegada.de != numero_ || servir(llegada, tanda) || llegada.de != numero_;
    } catch (const std::exception& falla) {
        llegada.de = kDeNadie; // even if saying so fails as well
        anotarFalla(falla.what(), llegada.memoria, remoto_);
        return true;
    }
}

void Sesion::anotar(std::string_view llegada) {
    sucesos_.decir({.que = Que::DelCliente}, paraMostrar(llegada, kLlegadaEnCaja));
}

void Sesion::anotarFalla(std::string_view que, std::string_view memoria, std::string_view de) {
    log_.escribir("arriba datos", kNombreDelPrograma,
                  std::string(que) + ", de " + std::string(de) +
                      " Datos: " + paraMostrar(memoria, kLlegadaEnRegistro));
}

bool Sesion::identificar(std::string_view llegada, std::string_view remoto) {
    try {
        anotar(llegada);
        return esClave(llegada, remoto);
    } catch (const std::exception& falla) {
        anotarFalla(falla.what(), llegada, remoto);
        return false;
    }
}

bool Sesion::esClave(std::string_view llegada, std::string_view remoto) {
    const std::string_view ip = remoto.substr(0, remoto.rfind(':'));
    if (esSoloKeepAlive(llegada) || puerta_.enPausa(ip)) return false;
    const std::string debido = textoDeClave(formatoDeHora(bucle_.reloj().ahora()));
    if (minusculas(descifrar(llegada)).find(minusculas(debido)) != std::string::npos) return true;
    if (puerta_.claveErrada(ip))
        log_.escribir("Login",
                      std::string(remoto) + ": demasiadas claves erradas, no se miran por un rato",
                      Novedad::ClaveErrada);
    return false;
}

/// What is done with each frame of a kind. The kinds have their turns in this order.
struct Sesion::Paso {
    Marcas marcas;
    void (Sesion::*hacer)(std::string_view contenido);
};
const Sesion::Paso Sesion::kPasos[] = {{kMarcasDeEscritura, &Sesion::escribirUna},
                                       {kMarcasDeForzado, &Sesion::forzarUna},
                                       {kMarcasDeLectura, &Sesion::leerUna}};

bool Sesion::servir(Llegada& l, Tanda& tanda) {
    for (; l.paso < std::size(kPasos); ++l.paso) {
        if (!porTramas(l, kPasos[l.paso], tanda)) return false;
        if (l.paso == 0 && quitarPalabra(l.memoria, kSincronizar)) cable_.pedirSincronismo();
    }
    contestarKeepAlive(l.memoria);
    return true;
}

/// Takes the frames out of the buffer and does what they say; false while there are some left, or
/// when their client has gone. One that throws leaves the buffer as it was when that frame, the
/// last one, had been taken.
bool Sesion::porTramas(Llegada& l, const Paso& paso, Tanda& tanda) {
    if (!l.partida) {
        l.tramas = extraerTramas(l.memoria, paso.marcas);
        l.hechas = 0;
        l.partida = true;
        if (l.tramas.repetidas > 0 && l.paso == 0)
            sucesos_.decir({.que = Que::RepetidasDelCliente,
                            .numero = static_cast<double>(l.tramas.repetidas)});
    }
    try {
        while (l.hechas < l.tramas.contenidos.size()) {
            if (tanda.basta()) return false;
            (this->*paso.hacer)(l.tramas.contenidos[l.hechas++]);
            if (numero_ != l.de) return false;
        }
    } catch (const std::exception&) {
        l.memoria = extraerTramas(l.memoria, paso.marcas, l.hechas).resto;
        throw;
    }
    l.memoria = std::move(l.tramas.resto);
    l.partida = false;
    return true;
}

void Sesion::escribirUna(std::string_view contenido) {
    cable_.enviarSuelto(kEscrituraRecibida);
    const auto campos = dosCampos(contenido);
    if (!campos) return;
    const std::string direccion = utf8DesdeWindows1252(campos->first);
    if (!numeroDeTexto(campos->second)) // which ends the arrival, and is in the record all the same
        ordenes_.rechazarEscritura(direccion, std::nan(""), origen_,
                                   enPalabras(Rechazo::ValorNoNumerico));
    const double valor = numeroDeCampo(campos->second, contenido);
    const bool admitida = !puerta_.soloLectura() && puerta_.admiteOtraEscritura();
    if (admitida) return ordenes_.escribirDireccion(direccion, valor, origen_);
    const std::string_view motivo =
        enPalabras(puerta_.soloLectura() ? Rechazo::SoloLectura : Rechazo::DemasiadasEnUnSegundo);
    ordenes_.rechazarEscritura(direccion, valor, origen_, motivo);
}

void Sesion::forzarUna(std::string_view contenido) {
    const auto campos = dosCampos(contenido);
    if (!campos) return;
    const double nivel = numeroDeCampo(campos->first, contenido);
    ordenes_.forzarBloque_porNivel_NVeces(nivel, numeroDeCampo(campos->second, contenido), quien());
}

/// Without its port: a client that comes again is the same one.
std::string Sesion::quien() const {
    return nombreDe(Ordenante::Cliente, remoto_.substr(0, remoto_.rfind(':')));
}

void Sesion::leerUna(std::string_view contenido) {
    const Numero mia = numero_;
    const std::string carga = obtenerTramaParaENVIAR(direccionDeLectura(contenido));
    if (numero_ == mia && !carga.empty()) cable_.enviarDatos(carga);
}

void Sesion::contestarKeepAlive(std::string& memoria) {
    if (quitarPalabra(memoria, kKeepAliveDelCliente)) cable_.enviarSuelto(kKeepAliveDelCliente);
    if (quitarPalabra(memoria, kKeepAliveDelDriver)) cable_.alContestarKeepAlive();
}

std::string Sesion::obtenerTramaParaENVIAR(std::string_view direccion) {
    const std::string buscada = utf8DesdeWindows1252(direccion);
    const Lista& lista = vista_.lstViewVariables;
    const std::int64_t fila = lista.buscar(buscada);
    if (fila < 0) {
        ordenes_.forzarPoleo(buscada, quien());
        return {};
    }
    const auto f = static_cast<FilaDeLista>(fila);
    const std::int64_t bloque = lista.etiqueta(f);
    if (!tablas_.bloques.vive(static_cast<double>(bloque))) return {};
    const std::string& separador = cable_.separadores().campo;
    std::string carga(direccion);
    carga.append(separador);
    agregarAlCable(carga, lista.texto(f, de_variables::kValor));
    carga.append(separador);
    agregarNumero(carga, tablas_.bloques[static_cast<std::size_t>(bloque)].estado);
    return carga.append(separador);
}

} // namespace kv
