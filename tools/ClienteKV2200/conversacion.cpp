// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/conversacion.h"

#include "ClienteKV2200/hora.h"
#include "server/cifrado.h"

#include <ostream>
#include <poll.h>
#include <random>
#include <unistd.h>

namespace kv::cliente {
namespace {

constexpr std::int64_t kReintentoMs = 250;
/// A driver stops looking at passwords after ten wrong ones in a minute.
constexpr std::int64_t kReintentoDeClaveMs = 30'000;

/// While no value changes nothing is written, and a reader that went away would not be noticed.
bool hayLector() {
    pollfd salida{STDOUT_FILENO, 0, 0};
    return poll(&salida, 1, 0) != 1 || (salida.revents & POLLERR) == 0;
}

} // namespace

Conversacion::Conversacion(BucleEpoll& bucle, const Orden& orden, std::ostream& salida,
                           std::ostream& errores, bool terminal)
    : bucle_(bucle), orden_(orden), salida_(salida), errores_(errores),
      terminal_(terminal && !orden.json), lector_(orden.separadores), enlace_(bucle, *this),
      limite_(bucle.crearTemporizador([this] { alVencer(); })),
      reintento_(bucle.crearTemporizador([this] { conectar(); })),
      latido_(bucle.crearTemporizador([this] { alLatir(); })),
      fin_(bucle.crearTemporizador([this] { terminar(kHecho); })),
      dibujo_(bucle.crearTemporizador([this] { dibujar(); })) {}

int Conversacion::correr() {
    esperar(orden_.esperaSegundos);
    if (orden_.duranteSegundos > 0)
        fin_->rearmar(static_cast<std::int64_t>(orden_.duranteSegundos * 1000));
    conectar();
    bucle_.correr();
    if (sucia_) dibujar();
    volcar();
    return orden_.accion == Accion::Vigilar && !servido_ ? kNoHecho : codigo_;
}

void Conversacion::esperar(double segundos) {
    limite_->rearmar(static_cast<std::int64_t>(segundos * 1000));
}

void Conversacion::terminar(int codigo) {
    codigo_ = codigo;
    terminada_ = true;
    limite_->habilitar(false);
    bucle_.detener();
}

void Conversacion::decirError(const std::string& texto, const Variable& v) {
    errores_ << lineaDeError(texto, orden_.json, v) << std::endl;
}

void Conversacion::fallar(const std::string& que) {
    decirError(que);
    terminar(kNoHecho);
}

/// What cannot be written is nothing that anybody sees: the order has failed.
void Conversacion::volcar() {
    if (salida_.flush() || codigo_ == kNoHecho) return;
    fallar("no se puede escribir en la salida");
}

void Conversacion::conectar() {
    reintento_->habilitar(false);
    enlace_.conectar(orden_.servidor);
}

void Conversacion::alConectar(std::size_t /*indice*/) {
    conectado_ = true;
    identificarse();
}

void Conversacion::alCortarse(std::size_t /*indice*/) {
    if (terminada_) return;
    if (!conectado_) return reintento_->rearmar(kReintentoMs);
    perder("el driver cerró la conexión", kReintentoMs);
}

/// The link is of no use any more. Only who watches goes on.
void Conversacion::perder(const std::string& porque, std::int64_t reintentoMs) {
    if (orden_.accion != Accion::Vigilar) return fallar(porque);
    if (dichos_.insert(porque).second) decirError(porque + "; se sigue intentando");
    aviso_ = porque;
    sucia_ = dibujo_->habilitado();
    enlace_.cerrar();
    lector_ = Lector(orden_.separadores);
    sincronismo_.clear();
    conectado_ = identificado_ = callado_ = false;
    claves_ = 0;
    latido_->habilitar(false);
    reintento_->rearmar(reintentoMs);
    esperar(orden_.esperaSegundos + static_cast<double>(reintentoMs) / 1000);
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

void Conversacion::enviar(std::string_view bytes) { enlace_.enviar(bytes); }

void Conversacion::alVencer() {
    limite_->habilitar(false);
    if (!conectado_) {
        const std::string& motivo = enlace_.motivo();
        return perder("no se pudo conectar con " + orden_.servidor.texto() +
                          (motivo.empty() ? "" : ": " + motivo),
                      kReintentoMs);
    }
    // A second try, because the hour may have changed on the way.
    if (!identificado_ && claves_ < 2) return identificarse();
    if (!identificado_)
        return perder("el driver no aceptó la clave, o lo que ahí escucha no es un driver; la "
                      "clave lleva la fecha y la hora locales: tienen que ser las mismas en los "
                      "dos lados, y aquí son " +
                          horaYZona(),
                      kReintentoDeClaveMs);
    vencerOrden();
}

/// A driver that vanished without a word, as with a cable that is pulled, would leave its last
/// values on the screen for ever.
void Conversacion::alLatir() {
    if (!hayLector()) return fallar("nadie lee la salida");
    if (callado_) return perder("el driver no contesta", kReintentoMs);
    callado_ = true;
    enviar(kKeepAliveDelCliente);
}

} // namespace kv::cliente
