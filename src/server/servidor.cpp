#include "server/servidor.h"

#include "text/numeros.h"
#include "text/windows1252.h"

#include <algorithm>

namespace kv {
namespace {

constexpr std::int64_t kEstadoMs = 3000;
constexpr std::int64_t kKeepAliveInicialMs = 3000;
constexpr std::int64_t kSincronismoMs = 1000;
constexpr std::size_t kRegistrosPorSobre = 10;
constexpr int kCesionesPorMensaje = 4;
constexpr int kCesionesAlFinal = 3;
// A synchronisation lets events run every so many messages, some microseconds apart: much more
// often than anything falls due, much more seldom than would cost something.
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
                           ArchivoLog& log, OrdenesDelCliente& ordenes)
    : bucle_(bucle), tablas_(tablas), ajustes_(ajustes), vista_(vista), log_(log, bucle.reloj()),
      puerta_(ajustes, bucle.reloj(),
              [this](const std::string& queja) { log_.escribir("Ajustes", queja); }),
      sesion_(bucle, tablas, vista, log_, puerta_, ordenes, *this),
      wsEscucha_(bucle.crearZocalo(*this, 0)),
      TimerEstado_(bucle.crearTemporizador([this] { TimerEstado_Timer(); })),
      timer_keep_Alive_(bucle.crearTemporizador([this] { timer_keep_Alive_Timer(); })),
      timerDeSincronizmo_(bucle.crearTemporizador([this] { timerDeSincronizmo_Timer(); })) {
    wsEscucha_->agruparEnvios(true);
    TimerEstado_->fijarIntervalo(kEstadoMs);
    timer_keep_Alive_->fijarIntervalo(kKeepAliveInicialMs);
    timerDeSincronizmo_->fijarIntervalo(kSincronismoMs);
}

void FrmServerTCP::Form_Load() {
    leerAjustesDeConexion();
    vista_.servidor.lblPuertoServidor.poner("Puerto " + textoDeNumero(puertoEscucha_));
    escuchar();
    timerDeSincronizmo_->habilitar(true);
    TimerEstado_->habilitar(true);
    timer_keep_Alive_->habilitar(true);
}

double FrmServerTCP::ajuste(const AjusteNumerico& cual) {
    return ajustes_.leerTiempo(
        cual, [this](std::string_view clave, const std::string& texto, double usado) {
            log_.escribir("Ajustes", std::string(clave) + "=" + texto +
                                         ": valor no valido, se usa " + textoDeNumero(usado));
        });
}

void FrmServerTCP::leerAjustesDeConexion() {
    puertoEscucha_ = ajuste(kPuertoEscucha);
    const std::size_t largo = separadores_.campo.size() + separadores_.sobre.size();
    separadores_.campo =
        windows1252DesdeUtf8(ajustes_.leerConfiguracion("primerSeparador", Separadores{}.campo));
    separadores_.sobre =
        windows1252DesdeUtf8(ajustes_.leerConfiguracion("tramasSeparador", Separadores{}.sobre));
    if (separadores_.campo.size() + separadores_.sobre.size() != largo)
        wsEscucha_->limitarCola(limiteDeCola());
    puerta_.releer();
}

void FrmServerTCP::escuchar() {
    if (wsEscucha_->estado() == EstadoZocalo::Escuchando) return;
    const auto puerto = static_cast<std::uint32_t>(puertoEscucha_);
    wsEscucha_->escuchar(puerta_.direccionDeEscucha(), puerto);
    vista_.servidor.lblPuertoServidor.poner("Puerto " + textoDeNumero(puertoEscucha_));
    anotarFallaDeEscucha();
}

/// Said once, not every time it is tried again.
void FrmServerTCP::anotarFallaDeEscucha() {
    std::string falla;
    if (wsEscucha_->estado() == EstadoZocalo::Error)
        falla = "no se puede escuchar en " + puerta_.direccionDeEscucha() + ":" +
                textoDeNumero(puertoEscucha_) + ": " + wsEscucha_->motivo();
    if (falla == fallaDeEscucha_) return;
    fallaDeEscucha_ = falla;
    if (!falla.empty()) log_.escribir("escuchar", falla);
}

void FrmServerTCP::cerrarYEscuchar() {
    wsEscucha_->cerrar();
    escuchar();
}

void FrmServerTCP::TimerEstado_Timer() {
    leerAjustesDeConexion();
    vigilarPlazoDeLogin();
    log_.alPasarElTiempo();
    const EstadoZocalo estado = wsEscucha_->estado();
    vista_.servidor.lblEstado.poner(textoDeEstado(estado));
    const bool sirve = estado == EstadoZocalo::Escuchando || estado == EstadoZocalo::Conectando ||
                       estado == EstadoZocalo::Conectado;
    if (!sirve) escuchar();
}

void FrmServerTCP::vigilarPlazoDeLogin() {
    const double plazo = puerta_.plazoDeLogin();
    if (plazo == 0 || !conectado() || sesion_.logueada() || sesion_.edad() < plazo) return;
    log_.escribir("Login", sesion_.remoto() + ": no se identifico a tiempo, se cierra");
    cerrarYEscuchar();
}

void FrmServerTCP::timer_keep_Alive_Timer() {
    timer_keep_Alive_->fijarIntervalo(static_cast<std::int64_t>(ajuste(kBaseKeepAlive)));
    const double maximo = ajuste(kMaximosKeepAlive);
    const double intervalos = ajuste(kIntervalosKeepAlive);
    if (conectado()) {
        ++tics_;
        if (tics_ >= intervalos) ++intentos_;
        const bool ultimo = intentos_ > maximo;
        // Closing drops what waits for the end of the turn; the client is to see the last one too.
        if (ultimo) wsEscucha_->agruparEnvios(false);
        if (tics_ >= intervalos && puedeSaber()) enviar(kKeepAliveDelDriver);
        wsEscucha_->agruparEnvios(true);
        if (ultimo) {
            intentos_ = 0;
            cerrarYEscuchar();
        }
    }
    vista_.servidor.lblKeepALive.poner("Intentos: " + textoDeNumero(intentos_) +
                                       " Maximo: " + textoDeNumero(maximo));
    bucle_.dejarCorrerPendientes();
}

void FrmServerTCP::alContestarKeepAlive() {
    tics_ = 0;
    intentos_ = 0;
}

void FrmServerTCP::alPedirConexion(std::size_t /*indice*/, std::string_view remoto) {
    puerta_.releer();
    if (!puerta_.puedeEntrar(remoto.substr(0, remoto.rfind(':'))))
        return log_.escribir("Conexion", std::string(remoto) + ": no esta entre los permitidos");
    wsEscucha_->aceptar();
    wsEscucha_->limitarCola(limiteDeCola());
    intentos_ = 0; // a newcomer does not answer for its predecessor
    sesion_.empezar(remoto);
}

void FrmServerTCP::alLlegarDatos(std::size_t /*indice*/, std::span<const std::uint8_t> bytes) {
    sesion_.atender({reinterpret_cast<const char*>(bytes.data()), bytes.size()}); // NOLINT
}

void FrmServerTCP::alCortarse(std::size_t /*indice*/) { anotarFalla(); }

void FrmServerTCP::anotarFalla() {
    if (wsEscucha_->estado() == EstadoZocalo::Error)
        log_.escribir("Conexion", sesion_.remoto() + ": " + wsEscucha_->motivo());
}

bool FrmServerTCP::conectado() const { return wsEscucha_->estado() == EstadoZocalo::Conectado; }

bool FrmServerTCP::puedeSaber() const {
    return conectado() && (sesion_.logueada() || !puerta_.exigeLogin());
}

std::size_t FrmServerTCP::limiteDeCola() const {
    const std::size_t campo = separadores_.campo.size();
    const std::size_t sobre =
        kAbreSobre.size() + kCierraSobre.size() + 2 * separadores_.sobre.size();
    std::size_t sincronismo = kFinDeSincronismo.size();
    for (std::size_t i = 0; i < tablas_.bloques.limiteSuperior(); ++i) {
        const BloqueLectura& b = tablas_.bloques[i];
        sincronismo += b.clave.size() + kLargoDeValor + kLargoDeEstado + 3 * campo + sobre;
    }
    return kColaMinima + 2 * sincronismo;
}

void FrmServerTCP::enviar(std::string_view bytes) {
    if (!conectado()) return;
    wsEscucha_->enviar(
        {reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}); // NOLINT
    if (!conectado()) anotarFalla();
}

void FrmServerTCP::enviarSuelto(std::string_view bytes) { enviar(bytes); }

/// Closes the envelope that is being put together and sends it.
void FrmServerTCP::enviarSobre() {
    cerrarSobre(sobre_, separadores_);
    enviar(sobre_);
    if (vista_.FrmServerTCPVisible) vista_.servidor.Text1.agregar(utf8DesdeWindows1252(sobre_));
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
    const bool entera = sincronizar();
    sincronizando_ = false;
    // One that its client did not get whole is still owed, to the next one.
    if (entera && !pedidoNuevo_) timerDeSincronizmo_->habilitar(false);
}

bool FrmServerTCP::sincronizar() {
    const std::uint64_t enlace = wsEscucha_->conexiones();
    for (std::size_t i = 0; i < tablas_.bloques.limiteSuperior();) {
        if (!sincronizarDesde(i, enlace)) return false;
    }
    enviarSuelto(kFinDeSincronismo);
    if (!conectado()) return false;
    for (int i = 0; i < kCesionesAlFinal; ++i)
        bucle_.dejarCorrerPendientes();
    return true;
}

/// One message: the records of a configured block from `i` on, which becomes the first that has not
/// been told. False when the client went meanwhile.
bool FrmServerTCP::sincronizarDesde(std::size_t& i, std::uint64_t enlace) {
    abrirSobre(sobre_, separadores_);
    const Indice configurado = tablas_.bloques[i].primeroDelConfigurado;
    for (std::size_t k = 0; k < kRegistrosPorSobre && i < tablas_.bloques.limiteSuperior() &&
                            tablas_.bloques[i].primeroDelConfigurado == configurado;
         ++k, ++i) {
        const BloqueLectura& b = tablas_.bloques[i];
        agregarRegistro(sobre_, b.clave, b.valor, b.estado, separadores_);
    }
    enviarSobre();
    if (++mensajesSinCeder_ == kMensajesPorCesion) {
        mensajesSinCeder_ = 0;
        bucle_.dejarCorrerPendientes();
    }
    return conectado() && wsEscucha_->conexiones() == enlace;
}

} // namespace kv
