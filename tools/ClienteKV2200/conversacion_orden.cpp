// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/conversacion.h"
#include "ClienteKV2200/hora.h"
#include "plant/direcciones.h"
#include "plant/valor_y_estado.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kv::cliente {
namespace {

constexpr std::int64_t kDibujoMs = 250;
constexpr std::int64_t kLatidoMs = 5000; // the driver's own settings begin at ten seconds
constexpr std::int64_t kReintentoMs = 1000;
constexpr double kPalabras = 65536;
constexpr double kSincronismoSegundos = 3; // a driver takes its time to begin one

std::size_t lineasDeTerminal() {
    winsize medida{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &medida) == 0 && medida.ws_row > 0 ? medida.ws_row : 24;
}

std::string mayusculas(std::string texto) {
    std::transform(texto.begin(), texto.end(), texto.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c; });
    return texto;
}

std::string entre(const Marcas& marcas, const std::string& contenido) {
    return std::string(marcas.abre) + contenido + std::string(marcas.cierra);
}

std::string tramaDeLectura(const std::string& direccion) {
    return entre(kMarcasDeLectura, direccion + ";");
}

bool estaOk(const Variable& v) { return numeroDeTexto(v.estado) == kOk; }

/// The register of "1.1.10.3", and its bit; -1 for a register's own address.
std::pair<std::string, int> registroYBit(const std::string& direccion) {
    const auto punto = direccion.rfind('.');
    const int bit = bitDeTexto(direccion.substr(punto + 1));
    if (!esDeBit(direccion) || bit == kNoEsBit) return {direccion, -1};
    return {direccion.substr(0, punto), bit};
}

/// Whether the register holds what was written: a bit, or the word, which the driver makes of
/// fractions by rounding to even and reads with a sign.
bool esLoEscrito(const Variable& leida, int bit, double escrito) {
    const auto valor = numeroDeTexto(leida.valor);
    if (!valor || !estaOk(leida)) return false;
    if (bit >= 0) return (*valor != 0) == (escrito != 0);
    return std::remainder(*valor - std::nearbyint(escrito), kPalabras) == 0;
}

} // namespace

std::string Conversacion::hora() const {
    return orden_.json ? horaIso() : formatoDeSello(bucle_.reloj().ahora());
}

void Conversacion::mostrar(const Variable& v) {
    salida_ << lineaDe(v, orden_.json, orden_.json ? hora() : "") << '\n';
}

/// The variable that is being asked for, nothing known of it; its address as on the wire.
Variable Conversacion::pedida() const {
    return {windows1252DesdeUtf8(orden_.direcciones.at(leyendo_)), {}, {}};
}

void Conversacion::empezar() {
    identificado_ = true;
    esperar(orden_.esperaSegundos);
    switch (orden_.accion) {
    case Accion::Leer:
        return leerSiguiente();
    case Accion::Escribir:
        return enviar(entre(kMarcasDeEscritura, pedida().direccion + ";" + orden_.valor));
    case Accion::Forzar: // has no answer of its own: the echo says that it was taken
        return enviar(entre(kMarcasDeForzado, orden_.nivel + ";" + orden_.veces) +
                      std::string(kKeepAliveDelCliente));
    case Accion::Vigilar:
        latido_->rearmar(kLatidoMs);
        if (terminal_ && !dibujo_->habilitado()) {
            salida_ << "\033[2J";
            dibujo_->rearmar(kDibujoMs);
        }
        [[fallthrough]];
    case Accion::Sincronizar:
        esperar(std::max(orden_.esperaSegundos, kSincronismoSegundos));
        return enviar(kSincronizar);
    default: // of the local door only
        return fallar("esa orden necesita --local");
    }
}

/// The time for an answer is over.
void Conversacion::vencerOrden() {
    if (orden_.accion == Accion::Leer && esperaValor_) {
        if (!ultima_.valor.empty()) return alLeer(ultima_);
        decirError("sin respuesta, el driver no conoce esa dirección", pedida());
        codigo_ = kNoHecho;
        return terminarLectura();
    }
    if (orden_.accion == Accion::Escribir && escrita_) {
        const bool leida = !ultima_.valor.empty();
        const std::string que = leida ? ", se lee " + valorYEstado(ultima_) : ", no se pudo leer";
        decirError("sin confirmar" + que, leida ? ultima_ : pedida());
        return terminar(kNoHecho);
    }
    perder("el driver no respondió", kReintentoMs);
}

/// Of a bit that was written the register is read: the bit may have no variable of its own.
std::string Conversacion::leida() const {
    const std::string direccion = pedida().direccion;
    return escrita_ ? registroYBit(direccion).first : direccion;
}

/// The echo comes after the value, or alone when the driver does not know the address.
void Conversacion::preguntar() {
    enviar(tramaDeLectura(leida()) + std::string(kKeepAliveDelCliente));
}

/// One address at a time, so that no message is long enough to be cut on its way.
void Conversacion::leerSiguiente() {
    if (leyendo_ == orden_.direcciones.size()) return terminar(codigo_);
    esperaValor_ = false;
    ultima_ = {};
    esperar(orden_.esperaSegundos);
    preguntar();
}

void Conversacion::terminarLectura() {
    ++leyendo_;
    leerSiguiente();
}

/// The value that was asked for. Its echo is waited for before the next address, unless it came
/// before.
void Conversacion::alLeer(const Variable& v) {
    ultima_ = v;
    mostrar({pedida().direccion, v.valor, v.estado});
    if (esperaValor_) terminarLectura();
}

/// An address that the driver does not know it asks of its station, and sends the answer. What has
/// hexadecimal letters it may know with others: "1.1.0A" as "1.1.0a".
void Conversacion::alEco() {
    if (orden_.accion == Accion::Forzar) return terminar(kHecho);
    if (orden_.direcciones.empty() || esperaValor_) return;
    if (!ultima_.valor.empty()) {
        if (orden_.accion == Accion::Leer) terminarLectura();
        return;
    }
    esperaValor_ = true;
    for (const std::string& otra : {minusculas(leida()), mayusculas(leida())}) {
        if (otra != leida()) enviar(tramaDeLectura(otra));
    }
}

/// The register that was written, as the driver sends it now.
void Conversacion::alConfirmar(const Variable& v) {
    ultima_ = v;
    const int bit = registroYBit(pedida().direccion).second;
    const auto palabra = numeroDeTexto(v.valor);
    if (bit >= 0 && palabra) ultima_.valor = std::to_string(wordbit(*palabra, bit));
    ultima_.direccion = pedida().direccion;
    if (!esLoEscrito(ultima_, bit, *numeroDeTexto(orden_.valor))) return;
    mostrar(ultima_);
    terminar(kHecho);
}

void Conversacion::alLlegarDatos(std::size_t /*indice*/, std::span<const std::uint8_t> bytes) {
    callado_ = false;
    const std::string_view texto(reinterpret_cast<const char*>(bytes.data()), // NOLINT
                                 bytes.size());
    for (const Mensaje& m : lector_.agregar(texto)) {
        if (!terminada_) atender(m);
    }
    volcar();
}

void Conversacion::atender(const Mensaje& m) {
    using Clase = Mensaje::Clase;
    switch (m.clase) {
    case Clase::Aceptada:
        if (!identificado_) empezar();
        break;
    case Clase::KeepAlive:
        if (identificado_) enviar(kKeepAliveDelDriver);
        break;
    case Clase::Escrita:
        if (orden_.accion != Accion::Escribir || escrita_) break;
        escrita_ = true;
        preguntar();
        break;
    case Clase::Eco:
        alEco();
        break;
    case Clase::FinDeSincronismo:
        if (identificado_) alTerminarSincronismo();
        sincronismo_.clear();
        break;
    case Clase::Datos:
        atenderDatos(m);
        break;
    }
}

void Conversacion::alTerminarSincronismo() {
    if (orden_.accion == Accion::Sincronizar) {
        for (const Variable& v : sincronismo_)
            mostrar(v);
        return terminar(kHecho);
    }
    if (orden_.accion != Accion::Vigilar) return;
    limite_->habilitar(false);
    servido_ = true;
    if (!aviso_.empty()) sucia_ = true;
    aviso_.clear();
    dichos_.clear();
}

void Conversacion::atenderDatos(const Mensaje& m) {
    if (orden_.accion == Accion::Sincronizar) {
        sincronismo_.insert(sincronismo_.end(), m.variables.begin(), m.variables.end());
        if (identificado_) esperar(orden_.esperaSegundos);
        return;
    }
    if (orden_.accion == Accion::Vigilar) {
        mostrarCambios(tabla_.agregar(m.variables, hora()));
        if (identificado_ && limite_->habilitado()) esperar(orden_.esperaSegundos);
        return;
    }
    if (!identificado_ || orden_.direcciones.empty()) return;
    for (const Variable& v : m.variables) {
        if (terminada_) return;
        if (minusculas(v.direccion) != minusculas(leida())) continue;
        if (escrita_)
            alConfirmar(v);
        else if (orden_.accion == Accion::Leer)
            alSaber(v);
    }
}

/// The driver sends a value or status of the address that is being read.
void Conversacion::alSaber(const Variable& v) {
    if (esperaValor_ && !estaOk(v))
        ultima_ = v;
    else if (esperaValor_ || ultima_.valor.empty())
        alLeer(v);
}

void Conversacion::mostrarCambios(const std::vector<std::size_t>& filas) {
    if (terminal_) {
        sucia_ = sucia_ || !filas.empty();
        return;
    }
    for (const std::size_t f : filas) {
        const Tabla::Fila& fila = tabla_.filas()[f];
        salida_ << lineaDe(fila.variable, orden_.json, fila.hora) << '\n';
    }
}

void Conversacion::dibujar() {
    if (!sucia_) return;
    sucia_ = false;
    tabla_.dibujar(salida_, lineasDeTerminal(),
                   aviso_.empty() ? "" : "SIN DRIVER, lo que sigue es viejo: " + aviso_);
    volcar();
}

} // namespace kv::cliente
