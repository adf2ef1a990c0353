// SPDX-License-Identifier: Apache-2.0
#include "recording/grabador.h"

#include "recording/zocalo_grabado.h"

#include <cstdlib>
#include <utility>

namespace kv {
namespace {

constexpr std::int64_t kSegundoUs = 1'000'000;
/// The calendar is read once per look at the kernel and may lag by a handler; the calendar that the
/// driver gets runs along with the clock as long as the real one is nearer than this.
constexpr std::int64_t kToleranciaUs = 150'000;

} // namespace

std::int64_t calendarioUs(const FechaHora& f) {
    return segundosDesdeFecha(f) * kSegundoUs + f.milisegundo * 1000LL;
}

FechaHora calendarioDesdeUs(std::int64_t us) {
    return fechaDesdeSegundos(us / kSegundoUs, static_cast<int>(us / 1000 % 1000));
}

Grabador::Grabador(Bucle& bucle, CintaEscrita& cinta)
    : bucle_(bucle), cinta_(cinta), us_(bucle.reloj().monotonicoUs()) {
    cinta_.conSigno(us_);
    cinta_.cerrarEntrada();
    temporizadores().vigilar([this](std::uint32_t puesto) {
        llamada(Entrada::Tic).numero(puesto);
        cerrar();
    });
    bucle_.alFinalDeVuelta([this] { terminarVuelta(); });
}

Grabador::~Grabador() {
    temporizadores().vigilar({});
    cinta_.volcar();
}

std::unique_ptr<Zocalo> Grabador::crearZocalo(OyenteDeZocalo& oyente, std::size_t indice) {
    return std::make_unique<ZocaloGrabado>(*this, bucle_, oyente, indice, zocalos_++);
}

CintaEscrita& Grabador::llamada(Entrada e) {
    if (enPendientes_) {
        enPendientes_ = false;
        cinta_.entrada(Entrada::Pendientes).numero(preguntas_);
        cerrar();
    }
    huboLlamadas_ = trabaja_ = true;
    preguntas_ = 0;
    const std::int64_t ahora = bucle_.reloj().monotonicoUs();
    cinta_.entrada(e).numero(static_cast<std::uint64_t>(ahora - us_));
    us_ = ahora;
    return cinta_;
}

CintaEscrita& Grabador::respuesta(Entrada e) {
    cinta_.entrada(e).numero(preguntas_);
    preguntas_ = 0;
    return cinta_;
}

void Grabador::cerrar() {
    cinta_.cerrarEntrada();
    if (us_ - volcadoUs_ < kSegundoUs) return;
    volcadoUs_ = us_;
    cinta_.volcar();
}

void Grabador::empezarOrden(std::string_view orden) {
    llamada(Entrada::Orden).texto(orden);
    cerrar();
}

void Grabador::dejarCorrerPendientes() {
    if (!preguntar()) return bucle_.dejarCorrerPendientes();
    enPendientes_ = true;
    bucle_.dejarCorrerPendientes();
    if (!std::exchange(enPendientes_, false)) {
        cinta_.entrada(Entrada::FinPendientes);
        preguntas_ = 0;
        cerrar();
    }
}

void Grabador::alFinalDeVuelta(std::function<void()> tarea) { tareas_.push_back(std::move(tarea)); }

void Grabador::terminarVuelta() {
    if (!std::exchange(huboLlamadas_, false)) return; // nothing happened: nothing to finish
    cinta_.entrada(Entrada::FinDeVuelta);
    preguntas_ = 0;
    cerrar();
    for (const auto& tarea : tareas_)
        tarea();
    trabaja_ = false;
}

std::int64_t Grabador::mirarReloj() {
    if (!preguntar()) return bucle_.reloj().monotonicoUs();
    const std::int64_t ahora = bucle_.reloj().monotonicoUs();
    if (ahora - us_ >= kPasoUs) {
        respuesta(Entrada::Avance).numero(static_cast<std::uint64_t>(ahora - us_));
        cerrar();
        us_ = ahora;
    }
    return us_;
}

FechaHora Grabador::mirarCalendario() {
    if (!preguntar()) return bucle_.reloj().ahora();
    const std::int64_t adelanto = calendarioUs(bucle_.reloj().ahora()) - us_;
    if (std::abs(adelanto - adelantoUs_) > kToleranciaUs) {
        adelantoUs_ = adelanto;
        respuesta(Entrada::Calendario).conSigno(adelanto);
        cerrar();
    }
    return calendarioDesdeUs(us_ + adelantoUs_);
}

bool ArchivosGrabados::existe(const std::string& ruta) {
    const bool hay = archivos_.existe(ruta);
    if (!grabador_.preguntar()) return hay;
    if (bool& antes = existe_[ruta]; antes != hay) {
        antes = hay;
        grabador_.respuesta(Entrada::Existe).texto(ruta).numero(hay ? 1 : 0);
        grabador_.cerrar();
    }
    return hay;
}

HuellaDeArchivo ArchivosGrabados::huella(const std::string& ruta) {
    const HuellaDeArchivo h = archivos_.huella(ruta);
    if (!grabador_.preguntar()) return h;
    if (HuellaDeArchivo& antes = huellas_[ruta]; antes != h) {
        antes = h;
        grabador_.respuesta(Entrada::Huella)
            .texto(ruta)
            .numero(h.existe ? 1 : 0)
            .conSigno(h.modificadoNs)
            .numero(h.largo)
            .numero(h.identidad);
        grabador_.cerrar();
    }
    return h;
}

std::optional<std::string> ArchivosGrabados::leer(const std::string& ruta, std::size_t maximo) {
    auto contenido = archivos_.leer(ruta, maximo);
    if (!grabador_.preguntar()) return contenido;
    if (auto& antes = contenidos_[{ruta, maximo}]; antes != contenido) {
        antes = contenido;
        grabador_.respuesta(Entrada::Contenido)
            .texto(ruta)
            .numero(maximo)
            .numero(contenido ? 1 : 0)
            .texto(contenido ? std::string_view(*contenido) : std::string_view());
        grabador_.cerrar();
    }
    return contenido;
}

bool ArchivosGrabados::escrito(bool bien) {
    if (grabador_.preguntar() && !bien) {
        grabador_.respuesta(Entrada::NoEscrito);
        grabador_.cerrar();
    }
    return bien;
}

bool ArchivosGrabados::reemplazar(const std::string& ruta, std::string_view contenido) {
    return escrito(archivos_.reemplazar(ruta, contenido));
}

bool ArchivosGrabados::agregar(const std::string& ruta, std::string_view contenido) {
    return escrito(archivos_.agregar(ruta, contenido));
}

bool ArchivosGrabados::crearCarpeta(const std::string& ruta) {
    return escrito(archivos_.crearCarpeta(ruta));
}

} // namespace kv
