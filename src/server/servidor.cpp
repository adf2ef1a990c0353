// SPDX-License-Identifier: Apache-2.0
#include "server/servidor.h"

#include "server/mensajes.h"
#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::int64_t kEstadoMs = 3000;
constexpr std::int64_t kKeepAliveInicialMs = 3000;
constexpr std::int64_t kSincronismoMs = 1000;
constexpr int kCesionesPorMensaje = 4;
constexpr int kCesionesAlFinal = 3;
// A synchronisation lets events run every so many messages, some microseconds apart: much more
// often than timers fall due, and seldom enough to cost next to nothing.
constexpr std::size_t kMensajesPorCesion = 16;
constexpr std::size_t kColaMinima = 1U << 20;
constexpr std::size_t kLargoDeValor = 24; // the longest value in a record
constexpr std::size_t kLargoDeEstado = 2;

std::string_view textoDeEstado(EstadoZocalo estado) {
    switch (estado) {
    case EstadoZocalo::Cerrado:
        return "Inactivo";
    case EstadoZocalo::Escuchando:
        return "Esperando...";
    case EstadoZocalo::Conectando:
        return "Conectando...";
    case EstadoZocalo::Conectado:
        return "Conectado";
    default:
        return "Error";
    }
}

} // namespace

FrmServerTCP::FrmServerTCP(Bucle& bucle, const Tablas& tablas, Ajustes& ajustes, Vista& vista,
                           Sucesos& sucesos, ArchivoLog& log, OrdenesDelCliente& ordenes)
    : bucle_(bucle), tablas_(tablas), ajustes_(ajustes), vista_(vista), sucesos_(sucesos),
      log_(log, bucle.reloj()),
      puerta_(ajustes, bucle.reloj(), [this](const std::string& queja) { quejarse(queja); }),
      sesion_(bucle, tablas, vista, sucesos, log_, puerta_, ordenes, *this),
      wsEscucha_(bucle.crearZocalo(*this, 0)),
      TimerEstado_(bucle.crearTemporizador([this] { TimerEstado_Timer(); })),
      timer_keep_Alive_(bucle.crearTemporizador([this] { timer_keep_Alive_Timer(); })),
      timerDeSincronizmo_(bucle.crearTemporizador([this] { timerDeSincronizmo_Timer(); })) {
    TimerEstado_->fijarIntervalo(kEstadoMs);
    timer_keep_Alive_->fijarIntervalo(kKeepAliveInicialMs);
    timerDeSincronizmo_->fijarIntervalo(kSincronismoMs);
}

void FrmServerTCP::Form_Load() {
    leerAjustesDeConexion();
    vista_.servidor.lblPuertoServidor.poner("Puerto " + textoDeNumero(puertoEscucha_));
    escuchar();
    empezando_ = false;
    timerDeSincronizmo_->habilitar(true);
    TimerEstado_->habilitar(true);
    timer_keep_Alive_->habilitar(true);
}

/// While the driver starts, whoever starts it sees the complaint as well.
void FrmServerTCP::quejarse(const std::string& queja) {
    log_.escribir("Ajustes", queja, Novedad::AjusteNoValido);
    if (empezando_) vista_.mostrarMensaje(queja, "Ajustes");
}

double FrmServerTCP::ajuste(const AjusteNumerico& cual) {
    return ajustes_.leerNumero(
        cual, [this](std::string_view clave, const std::string& texto, double usado) {
            log_.escribir("Ajustes", enElLog(clave, texto, usado), Novedad::AjusteNoValido);
        });
}

void FrmServerTCP::leerAjustesDeConexion() {
    puertoEscucha_ = ajuste(kPuertoEscucha);
    const std::size_t largo = separadores_.campo.size() + separadores_.sobre.size();
    separadores_.campo = windows1252DesdeUtf8(ajustes_.leerConfiguracion(kPrimerSeparador));
    separadores_.sobre = windows1252DesdeUtf8(ajustes_.leerConfiguracion(kTramasSeparador));
    if (separadores_.campo.size() + separadores_.sobre.size() != largo)
        sala_.conTodas([this](Visita& v) { v.zocalo->limitarCola(limiteDeCola()); });
    puerta_.releer();
}

void FrmServerTCP::escuchar() {
    const auto puerto = static_cast<std::uint32_t>(puertoEscucha_);
    const std::string direccion(puerta_.direccionDeEscucha());
    const std::string donde = direccion + ":" + textoDeNumero(puertoEscucha_);
    if (wsEscucha_->estado() == EstadoZocalo::Escuchando) {
        if (donde == escuchaEn_) return;
        wsEscucha_->cerrar();
    }
    escuchaEn_ = donde;
    vista_.servidor.lblPuertoServidor.poner("Puerto " + textoDeNumero(puertoEscucha_));
    if (direccion.empty()) return wsEscucha_->cerrar();
    wsEscucha_->escuchar(direccion, puerto);
    anotarFallaDeEscucha();
}

/// Said once, not every time it is tried again.
void FrmServerTCP::anotarFallaDeEscucha() {
    std::string falla;
    if (wsEscucha_->estado() == EstadoZocalo::Error)
        falla = "no se puede escuchar en " + escuchaEn_ + ": " + wsEscucha_->motivo();
    if (falla == fallaDeEscucha_) return;
    fallaDeEscucha_ = falla;
    if (falla.empty()) return;
    log_.escribir("escuchar", falla, Novedad::NoEscucha);
    if (empezando_) vista_.mostrarMensaje(falla, "Ajustes");
}

void FrmServerTCP::TimerEstado_Timer() {
    leerAjustesDeConexion();
    vigilarPlazoDeLogin();
    log_.alPasarElTiempo();
    vista_.servidor.lblEstado.poner(textoDeEstado(zocalo().estado()));
    // A client that went by itself is seen here, and from now on others may come.
    if (sala_.hayCliente() && !conectado()) despedir(sala_.primera()->numero);
    if (!sala_.hayCliente()) escuchar();
    mostrarCliente();
}

void FrmServerTCP::mostrarCliente() {
    ClienteVisto& visto = vista_.servidor.cliente;
    const Visita* oida = sala_.primera();
    if (oida != nullptr && oida->conectada()) {
        visto = {oida->remoto, oida->desdeMs, sala_.hayCliente()};
    } else if (!visto.direccion.empty()) {
        visto = {{}, bucle_.reloj().monotonicoMs(), false};
    }
}

void FrmServerTCP::vigilarPlazoDeLogin() {
    const double plazo = puerta_.plazoDeLogin();
    if (plazo == 0 || sala_.hayCliente()) return;
    const std::int64_t ahora = bucle_.reloj().monotonicoMs();
    sala_.conTodas([&](Visita& v) {
        if (static_cast<double>(ahora - v.desdeMs) / 1000 < plazo) return;
        log_.escribir("Login", v.remoto + ": no se identifico a tiempo, se cierra",
                      Novedad::PuertaCerrada);
        despedir(v.numero);
    });
}

/// Whatever the client has sent is done, and answered. It may go meanwhile.
void FrmServerTCP::acabar() {
    sesion_.acabar();
    if (sala_.hayCliente()) sala_.primera()->zocalo->agruparEnvios(false);
}

/// Ends what is done for it, and closes.
void FrmServerTCP::despedir(std::uint64_t numero, bool porCallar) {
    if (sala_.hayCliente()) {
        acabar();
        if (sala_.hallar(numero) == nullptr) return;
        sesion_.terminar();
        sucesos_.decir(
            {.que = Que::ClienteSale, .detalle = static_cast<std::int16_t>(porCallar ? 1 : 0)},
            sala_.primera()->remoto);
    }
    sala_.despedir(numero);
}

void FrmServerTCP::timer_keep_Alive_Timer() {
    timer_keep_Alive_->fijarIntervalo(static_cast<std::int64_t>(ajuste(kBaseKeepAlive)));
    const double maximo = ajuste(kMaximosKeepAlive);
    const double intervalos = ajuste(kIntervalosKeepAlive);
    if (conectado()) ++tics_;
    const bool toca = tics_ >= intervalos;
    sala_.conTodas([&](Visita& v) { contarKeepAlive(v, maximo, toca); });
    const Visita* oida = sala_.primera();
    vista_.servidor.lblKeepALive.poner(
        "Intentos: " + textoDeNumero(oida != nullptr ? oida->intentos : 0) +
        " Maximo: " + textoDeNumero(maximo));
    if (!sala_.hayCliente()) escuchar();
    bucle_.dejarCorrerPendientes();
}

void FrmServerTCP::contarKeepAlive(Visita& visita, double maximo, bool toca) {
    if (!visita.conectada()) return;
    if (toca) ++visita.intentos;
    const bool ultimo = visita.intentos > maximo;
    const std::uint64_t numero = visita.numero;
    // Closing drops what waits for the end of the turn; the client is to see the last one too.
    if (ultimo) visita.zocalo->agruparEnvios(false);
    if (toca && puedeSaber() && &visita == sala_.primera()) enviar(kKeepAliveDelDriver);
    if (ultimo) despedir(numero, true);
}

void FrmServerTCP::alContestarKeepAlive() {
    tics_ = 0;
    if (Visita* cliente = sala_.primera()) cliente->intentos = 0;
}

void FrmServerTCP::frenar(bool freno) {
    if (sala_.hayCliente()) sala_.primera()->zocalo->frenar(freno);
}

void FrmServerTCP::alPedirConexion(std::size_t /*indice*/, std::string_view remoto) {
    if (sala_.hayCliente()) return;
    puerta_.releer();
    if (!puerta_.puedeEntrar(remoto.substr(0, remoto.rfind(':'))))
        return log_.escribir("Conexion", std::string(remoto) + ": " + puerta_.porQueNoEntra(),
                             Novedad::PuertaCerrada);
    std::string salio;
    Visita& visita =
        sala_.recibir(*wsEscucha_, *this, remoto, bucle_.reloj().monotonicoMs(), salio);
    visita.zocalo->agruparEnvios(true);
    visita.zocalo->limitarCola(limiteDeCola());
    if (!salio.empty())
        log_.escribir("Conexion", salio + ": no se identifico y deja su lugar a otro",
                      Novedad::PuertaCerrada);
}

void FrmServerTCP::alLlegarDatos(std::size_t indice, std::span<const std::uint8_t> bytes) {
    const std::string_view llegada{reinterpret_cast<const char*>(bytes.data()), // NOLINT
                                   bytes.size()};
    if (sala_.hayCliente()) return sesion_.atender(llegada);
    Visita* visita = sala_.hallar(indice);
    if (visita != nullptr && sesion_.identificar(llegada, visita->remoto)) entra(*visita);
}

/// Its password was right: from now on it is the client.
void FrmServerTCP::entra(Visita& visita) {
    puerta_.releer(); // the door may have been closed since it came
    if (!puerta_.puedeEntrar(visita.ip())) {
        log_.escribir("Login", visita.remoto + ": " + puerta_.porQueNoEntra() + ", se cierra",
                      Novedad::PuertaCerrada);
        return despedir(visita.numero);
    }
    sala_.elegir(visita.numero);
    // Others are refused, and no other program can take the port while the client is served.
    wsEscucha_->reservar();
    sesion_.empezar(visita.remoto);
    sucesos_.decir({.que = Que::ClienteEntra}, visita.remoto);
    if (sincronizado_ != 0 && sincronizado_ != visita.numero) pedirSincronismo();
    sincronizado_ = 0;
    enviar(kClaveAceptada);
    bucle_.dejarCorrerPendientes();
}

void FrmServerTCP::alCortarse(std::size_t indice) {
    const Visita* visita = sala_.hallar(indice);
    if (visita == nullptr) return;
    anotarFalla(*visita);
    if (!sala_.hayCliente()) despedir(visita->numero);
}

void FrmServerTCP::anotarFalla(const Visita& visita) {
    if (visita.zocalo->estado() == EstadoZocalo::Error)
        log_.escribir("Conexion", visita.remoto + ": " + visita.zocalo->motivo());
}

const Zocalo& FrmServerTCP::zocalo() const {
    const Visita* oida = sala_.primera();
    return oida != nullptr ? *oida->zocalo : *wsEscucha_;
}

/// What listens is never connected, but in a recording that was tampered with.
bool FrmServerTCP::conectado() const {
    const Visita* oida = sala_.primera();
    return oida != nullptr && oida->zocalo->estado() == EstadoZocalo::Conectado;
}

bool FrmServerTCP::puedeSaber() const {
    return conectado() && (sala_.hayCliente() || !puerta_.exigeLogin());
}

std::size_t FrmServerTCP::limiteDeCola() const {
    const std::size_t porRegistro = kLargoDeValor + kLargoDeEstado + 3 * separadores_.campo.size() +
                                    kAbreSobre.size() + kCierraSobre.size() +
                                    2 * separadores_.sobre.size();
    const std::size_t sincronismo = tablas_.largoDeClaves +
                                    tablas_.bloques.limiteSuperior() * porRegistro +
                                    kFinDeSincronismo.size();
    return kColaMinima + 2 * sincronismo;
}

void FrmServerTCP::enviar(std::string_view bytes) {
    if (!conectado()) return;
    Visita& oida = *sala_.primera();
    oida.zocalo->enviar({reinterpret_cast<const std::uint8_t*>(bytes.data()), // NOLINT
                         bytes.size()});
    if (oida.conectada()) return;
    anotarFalla(oida);
    if (!sala_.hayCliente()) despedir(oida.numero);
}

void FrmServerTCP::enviarSuelto(std::string_view bytes) { enviar(bytes); }

/// Closes the envelope that is being put together and sends it.
void FrmServerTCP::enviarSobre() {
    cerrarSobre(sobre_, separadores_);
    enviar(sobre_);
    if (vista_.FrmServerTCPVisible)
        sucesos_.decir({.que = Que::AlCliente}, utf8DesdeWindows1252(sobre_));
    sobre_.clear();
}

void FrmServerTCP::enviarDatos(std::string_view carga) {
    if (!conectado()) return;
    abrirSobre(sobre_, separadores_);
    sobre_ += carga;
    enviarSobre();
    for (int i = 0; i < kCesionesPorMensaje; ++i)
        bucle_.dejarCorrerPendientes();
}

void FrmServerTCP::notificarVariable(std::string_view direccion, double valor, double estado) {
    if (!puedeSaber()) return;
    abrirSobre(sobre_, separadores_);
    agregarRegistro(sobre_, direccion, valor, estado, separadores_);
    enviarSobre();
}

void FrmServerTCP::pedirSincronismo() {
    pedidoNuevo_ = sincronizando_;
    timerDeSincronizmo_->habilitar(true);
}

void FrmServerTCP::timerDeSincronizmo_Timer() {
    if (sincronizando_ || !puedeSaber()) return;
    sincronizando_ = true;
    pedidoNuevo_ = false;
    const std::uint64_t oida = sala_.primera()->numero;
    const bool entera = sincronizar(oida);
    sincronizando_ = false;
    // One that its client did not get whole is still owed, to the next one.
    if (entera && !pedidoNuevo_) timerDeSincronizmo_->habilitar(false);
}

bool FrmServerTCP::sincronizar(std::uint64_t numero) {
    for (std::size_t i = 0; i < tablas_.bloques.limiteSuperior();) {
        if (!sincronizarDesde(i, numero)) return false;
    }
    enviarSuelto(kFinDeSincronismo);
    if (!conectado()) return false;
    sincronizado_ = sala_.hayCliente() ? 0 : numero;
    for (int i = 0; i < kCesionesAlFinal; ++i)
        bucle_.dejarCorrerPendientes();
    return true;
}

/// One message: the records of a configured block from `i` on, which becomes the first that has not
/// been sent. False when the client went meanwhile.
bool FrmServerTCP::sincronizarDesde(std::size_t& i, std::uint64_t numero) {
    if (tablas_.bloques[i].retirado) return ++i, true;
    abrirSobre(sobre_, separadores_);
    const Indice configurado = tablas_.bloques[i].primeroDelConfigurado;
    for (std::size_t k = 0; k < kRegistrosPorSobre && i < tablas_.bloques.limiteSuperior() &&
                            tablas_.bloques[i].primeroDelConfigurado == configurado;
         ++k, ++i) {
        const BloqueLectura& b = tablas_.bloques[i];
        if (b.retirado) continue;
        agregarRegistro(sobre_, b.clave, b.valor, b.estado, separadores_);
    }
    enviarSobre();
    if (++mensajesSinCeder_ == kMensajesPorCesion) {
        mensajesSinCeder_ = 0;
        bucle_.dejarCorrerPendientes();
    }
    return conectado() && sala_.primera()->numero == numero;
}

} // namespace kv
