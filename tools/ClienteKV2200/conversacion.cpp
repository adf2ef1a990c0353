#include "ClienteKV2200/conversacion.h"

#include "server/cifrado.h"
#include "text/windows1252.h"

#include <ostream>
#include <random>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kv::cliente {
namespace {

constexpr std::int64_t kReintentoMs = 250;
constexpr std::int64_t kDibujoMs = 250;

std::size_t lineasDeTerminal() {
    winsize medida{};
    return ioctl(STDOUT_FILENO, TIOCGWINSZ, &medida) == 0 && medida.ws_row > 0 ? medida.ws_row : 24;
}

} // namespace

Conversacion::Conversacion(BucleEpoll& bucle, const Orden& orden, std::ostream& salida,
                           std::ostream& errores, bool terminal)
    : bucle_(bucle), orden_(orden), salida_(salida), errores_(errores),
      terminal_(terminal && !orden.json), lector_(orden.separadores),
      zocalo_(bucle.crearZocalo(*this, 0)),
      limite_(bucle.crearTemporizador([this] { alVencer(); })),
      reintento_(bucle.crearTemporizador([this] { conectar(); })),
      fin_(bucle.crearTemporizador([this] { terminar(kHecho); })),
      dibujo_(bucle.crearTemporizador([this] { dibujar(); })) {}

int Conversacion::correr() {
    esperar(orden_.esperaSegundos);
    if (orden_.duranteSegundos > 0)
        fin_->rearmar(static_cast<std::int64_t>(orden_.duranteSegundos * 1000));
    conectar();
    bucle_.correr();
    if (sucia_) dibujar();
    return codigo_;
}

void Conversacion::esperar(double segundos) {
    limite_->rearmar(static_cast<std::int64_t>(segundos * 1000));
}

void Conversacion::terminar(int codigo) {
    codigo_ = codigo;
    limite_->habilitar(false);
    bucle_.detener();
}

void Conversacion::fallar(const std::string& que) {
    errores_ << "ClienteKV2200: " << que << '\n';
    terminar(kNoHecho);
}

void Conversacion::conectar() {
    reintento_->habilitar(false);
    zocalo_->conectar(orden_.ip, orden_.puerto);
    if (zocalo_->estado() == EstadoZocalo::Error) reintento_->rearmar(kReintentoMs);
}

void Conversacion::alCortarse(std::size_t /*indice*/) {
    if (conectado_) return fallar("el driver cerró la conexión");
    reintento_->rearmar(kReintentoMs);
}

void Conversacion::alConectar(std::size_t /*indice*/) {
    conectado_ = true;
    identificarse();
}

void Conversacion::identificarse() {
    // The filler only has to differ from one login to the next; it hides nothing.
    const auto semilla = static_cast<std::uint32_t>(bucle_.reloj().monotonicoUs());
    const auto azar = [generador = std::mt19937(semilla)]() mutable {
        return std::uniform_real_distribution<double>(0, 1)(generador);
    };
    ++claves_;
    enviar(cifrar(textoDeClave(formatoDeHora(bucle_.reloj().ahora())), azar));
    esperar(orden_.esperaSegundos / 2);
}

void Conversacion::enviar(std::string_view bytes) {
    zocalo_->enviar({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()}); // NOLINT
}

void Conversacion::alVencer() {
    limite_->habilitar(false);
    if (!conectado_)
        return fallar("no se pudo conectar con " + orden_.ip + ":" + std::to_string(orden_.puerto) +
                      (zocalo_->motivo().empty() ? "" : ": " + zocalo_->motivo()) +
                      " (el driver atiende un solo cliente)");
    // A second try, because the hour may have changed on the way.
    if (!identificado_ && claves_ < 2) return identificarse();
    if (!identificado_) return fallar("el driver no aceptó la clave");
    fallar("el driver no respondió");
}

void Conversacion::empezar() {
    identificado_ = true;
    esperar(orden_.esperaSegundos);
    const auto cable = [](const std::string& texto) { return windows1252DesdeUtf8(texto); };
    switch (orden_.accion) {
    case Accion::Leer:
        return leerSiguiente();
    case Accion::Escribir:
        return enviar("[Write]" + cable(orden_.direcciones.front()) + ";" + orden_.valor +
                      "[/Write]");
    case Accion::Forzar: // has no answer of its own: the echo says that it was taken
        return enviar("[FORZNIV]" + orden_.nivel + ";" + orden_.veces + "[/FORZNIV]" +
                      std::string(kKeepAliveDelCliente));
    case Accion::Vigilar:
        if (terminal_) {
            salida_ << "\033[2J";
            dibujo_->rearmar(kDibujoMs);
        }
        [[fallthrough]];
    case Accion::Sincronizar:
        return enviar(kSincronizar);
    }
}

/// One address at a time, so that no message is long enough to be cut on its way. The echo comes
/// after the value, or alone when there is none.
void Conversacion::leerSiguiente() {
    if (leyendo_ == orden_.direcciones.size()) return terminar(codigo_);
    leida_ = false;
    esperar(orden_.esperaSegundos);
    enviar("Read;" + windows1252DesdeUtf8(orden_.direcciones[leyendo_]) + ";FinRead;" +
           std::string(kKeepAliveDelCliente));
}

void Conversacion::alLlegarDatos(std::size_t /*indice*/, std::span<const std::uint8_t> bytes) {
    const std::string_view texto(reinterpret_cast<const char*>(bytes.data()), // NOLINT
                                 bytes.size());
    for (const Mensaje& m : lector_.agregar(texto))
        atender(m);
    salida_.flush();
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
        if (orden_.accion != Accion::Escribir) break;
        salida_ << lineaDe(
                       {windows1252DesdeUtf8(orden_.direcciones.front()), orden_.valor, "aceptado"},
                       orden_.json)
                << '\n';
        terminar(kHecho);
        break;
    case Clase::Eco:
        alEco();
        break;
    case Clase::FinDeSincronismo:
        if (identificado_ && orden_.accion == Accion::Sincronizar) {
            for (const Variable& v : sincronismo_)
                salida_ << lineaDe(v, orden_.json) << '\n';
            terminar(kHecho);
        }
        if (identificado_ && orden_.accion == Accion::Vigilar) limite_->habilitar(false);
        sincronismo_.clear();
        break;
    case Clase::Datos:
        atenderDatos(m);
        break;
    }
}

void Conversacion::alEco() {
    if (orden_.accion == Accion::Forzar) return terminar(kHecho);
    if (orden_.accion != Accion::Leer || leyendo_ == orden_.direcciones.size()) return;
    if (!leida_) {
        errores_ << "ClienteKV2200: " << orden_.direcciones[leyendo_]
                 << ": sin respuesta, el driver no conoce esa dirección\n";
        codigo_ = kNoHecho;
    }
    ++leyendo_;
    leerSiguiente();
}

void Conversacion::atenderDatos(const Mensaje& m) {
    if (orden_.accion == Accion::Sincronizar) {
        sincronismo_.insert(sincronismo_.end(), m.variables.begin(), m.variables.end());
        if (identificado_) esperar(orden_.esperaSegundos);
    } else if (orden_.accion == Accion::Vigilar) {
        mostrarCambios(tabla_.agregar(m.variables, formatoDeSello(bucle_.reloj().ahora())));
        if (identificado_ && limite_->habilitado()) esperar(orden_.esperaSegundos);
    } else if (orden_.accion == Accion::Leer && identificado_ && !leida_) {
        for (const Variable& v : m.variables) {
            if (leida_ || v.direccion != windows1252DesdeUtf8(orden_.direcciones[leyendo_]))
                continue;
            leida_ = true;
            salida_ << lineaDe(v, orden_.json) << '\n';
        }
    }
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
    tabla_.dibujar(salida_, lineasDeTerminal());
}

} // namespace kv::cliente
