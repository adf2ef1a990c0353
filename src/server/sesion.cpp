// SPDX-License-Identifier: Apache-2.0
#include "server/sesion.h"

#include "events/rechazo.h"
#include "plant/ordenantes.h"
#include "server/cifrado.h"
#include "text/fecha.h"
#include "text/numeros.h"
#include "text/texto.h"
#include "text/windows1252.h"

#include <stdexcept>

namespace kv {
namespace {

constexpr std::size_t kLlegadaEnCaja = 4096;     // bytes of one arrival that the box shows
constexpr std::size_t kLlegadaEnRegistro = 2048; // and a log entry
constexpr std::size_t kColumnaDeValor = 1;

double numeroDeCampo(std::string_view campo) {
    const auto numero = numeroDeTexto(campo);
    if (!numero)
        throw std::invalid_argument("No coinciden los tipos: " +
                                    utf8DesdeWindows1252(campo.substr(0, 64)));
    return *numero;
}

std::string paraMostrar(std::string_view llegada, std::size_t maximo) {
    std::string texto = enUnaLinea(utf8DesdeWindows1252(llegada.substr(0, maximo)));
    if (llegada.size() > maximo) texto += "... (" + std::to_string(llegada.size()) + " bytes)";
    return texto;
}

} // namespace

Sesion::Sesion(Bucle& bucle, const Tablas& tablas, Vista& vista, Sucesos& sucesos, LogAcotado& log,
               Puerta& puerta, OrdenesDelCliente& ordenes, CableDelCliente& cable)
    : bucle_(bucle), tablas_(tablas), vista_(vista), sucesos_(sucesos), log_(log), puerta_(puerta),
      ordenes_(ordenes), cable_(cable) {}

void Sesion::empezar(std::string_view remoto) {
    ++numero_;
    remoto_ = remoto;
}

void Sesion::atender(std::string_view llegada) {
    std::string memoria; // the receive buffer: what was not taken yet
    try {
        anotar(llegada);
        memoria = llegada;
        servir(memoria);
    } catch (const std::exception& falla) {
        anotarFalla(falla.what(), memoria);
    }
}

void Sesion::anotar(std::string_view llegada) {
    sucesos_.decir({.que = Que::DelCliente}, paraMostrar(llegada, kLlegadaEnCaja));
}

void Sesion::anotarFalla(std::string_view que, std::string_view memoria) {
    log_.escribir("arriba datos", "DriverKV2200",
                  std::string(que) + " Datos: " + paraMostrar(memoria, kLlegadaEnRegistro));
}

bool Sesion::identificar(std::string_view llegada, std::string_view remoto) {
    try {
        anotar(llegada);
        return esClave(llegada, remoto);
    } catch (const std::exception& falla) {
        anotarFalla(falla.what(), llegada);
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

void Sesion::servir(std::string& memoria) {
    const Numero mia = numero_;
    if (!porTramas(memoria, kMarcasDeEscritura, [this](std::string_view c) { escribirUna(c); }))
        return;
    if (quitarPalabra(memoria, kSincronizar)) cable_.pedirSincronismo();
    if (!porTramas(memoria, kMarcasDeForzado, [this](std::string_view c) { forzarUna(c); })) return;
    if (!porTramas(memoria, kMarcasDeLectura, [this](std::string_view c) { leerUna(c); })) return;
    if (numero_ == mia) contestarKeepAlive(memoria);
}

/// Takes the frames out of the buffer and does what they say; false when their client has gone.
/// One that throws leaves the buffer as it was when that frame, the last one, had been taken.
template <class F>
bool Sesion::porTramas(std::string& memoria, const Marcas& marcas, F hacer) {
    const Numero mia = numero_;
    Tramas tramas = extraerTramas(memoria, marcas);
    std::size_t tomadas = 0;
    if (tramas.repetidas > 0 && marcas.abre == kMarcasDeEscritura.abre)
        sucesos_.decir(
            {.que = Que::RepetidasDelCliente, .numero = static_cast<double>(tramas.repetidas)});
    try {
        for (const std::string& contenido : tramas.contenidos) {
            ++tomadas;
            hacer(contenido);
            if (numero_ != mia) return false;
        }
    } catch (const std::exception&) {
        memoria = extraerTramas(memoria, marcas, tomadas).resto;
        throw;
    }
    memoria = std::move(tramas.resto);
    return true;
}

void Sesion::escribirUna(std::string_view contenido) {
    cable_.enviarSuelto(kEscrituraRecibida);
    const auto campos = dosCampos(contenido);
    if (!campos) return;
    const double valor = numeroDeCampo(campos->second);
    const std::string direccion = utf8DesdeWindows1252(campos->first);
    const std::string origen = "cliente " + remoto_;
    const bool admitida = !puerta_.soloLectura() && puerta_.admiteOtraEscritura();
    if (admitida) return ordenes_.escribirDireccion(direccion, valor, origen);
    const std::string_view motivo =
        enPalabras(puerta_.soloLectura() ? Rechazo::SoloLectura : Rechazo::DemasiadasEnUnSegundo);
    log_.escribir("Escritura", remoto_ + ": no se hace " + direccion.substr(0, 64), motivo,
                  Novedad::EscrituraNoAdmitida);
    ordenes_.rechazarEscritura(direccion, valor, origen, motivo);
}

void Sesion::forzarUna(std::string_view contenido) {
    const auto campos = dosCampos(contenido);
    if (!campos) return;
    const double nivel = numeroDeCampo(campos->first);
    // Without its port: a client that comes again is the same one.
    const std::string quien = nombreDe(Ordenante::Cliente, remoto_.substr(0, remoto_.rfind(':')));
    ordenes_.forzarBloque_porNivel_NVeces(nivel, numeroDeCampo(campos->second), quien);
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
    Lista& lista = vista_.lstViewVariables;
    const std::int64_t fila = lista.buscar(buscada);
    if (fila < 0) {
        ordenes_.forzarPoleo(buscada);
        return {};
    }
    const auto f = static_cast<FilaDeLista>(fila);
    lista.seleccionar(f);
    const std::int64_t bloque = lista.etiqueta(f);
    if (!tablas_.bloques.vive(static_cast<double>(bloque))) return {};
    const std::string& separador = cable_.separadores().campo;
    std::string carga(direccion);
    carga.append(separador);
    agregarAlCable(carga, lista.texto(f, kColumnaDeValor));
    carga.append(separador);
    agregarNumero(carga, tablas_.bloques[static_cast<std::size_t>(bloque)].estado);
    return carga.append(separador);
}

} // namespace kv
