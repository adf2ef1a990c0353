// SPDX-License-Identifier: Apache-2.0
#include "recording/reproductor.h"

#include "recording/grabador.h"
#include "recording/zocalo_reproducido.h"

#include <utility>

namespace kv {
namespace {

/// The recording, full when it was made, ends in the midst of a call, but of no entry.
struct Termina {};

constexpr std::int64_t kMasLejosUs = 10'000'000'000'000'000; // three hundred years

} // namespace

Reproductor::Reproductor(CintaLeida& cinta) : cinta_(cinta), cola_([this] { return us_; }) {
    pasar(static_cast<std::uint64_t>(cinta.conSigno()));
}

void Reproductor::pasar(std::uint64_t us) {
    if (us > kMasLejosUs || us_ > kMasLejosUs) throw CintaMala{"un reloj imposible"};
    us_ += static_cast<std::int64_t>(us);
}

void Reproductor::noCorresponde(const std::string& que) const {
    throw CintaMala{"byte " + std::to_string(cinta_.lugar()) +
                    ": la grabacion no corresponde a lo que este programa hace (" + que + ")"};
}

std::unique_ptr<Zocalo> Reproductor::crearZocalo(OyenteDeZocalo& oyente, std::size_t indice) {
    auto z = std::make_unique<ZocaloReproducido>(*this, oyente, indice, creados_);
    zocalos_[creados_++] = z.get();
    return z;
}

bool Reproductor::toca(Entrada e) {
    if (!trabaja_) return false;
    ++preguntas_;
    const Entrada sigue = cinta_.mirar();
    // A recording that was cut in the midst of a call does not tell how the call went on.
    if (sigue == Entrada::Fin && enLlamada_) throw Termina{};
    if (!esRespuesta(sigue)) return false;
    if (faltan_ == 0) faltan_ = cinta_.mirarNumero();
    if (preguntas_ < faltan_) return false;
    if (sigue != e || preguntas_ > faltan_) noCorresponde("otra pregunta");
    cinta_.entrada();
    (void)cinta_.numero();
    preguntas_ = faltan_ = 0;
    return true;
}

bool Reproductor::correr() {
    detenido_ = false;
    try {
        while (!detenido_ && cinta_.mirar() != Entrada::Fin)
            llamar();
    } catch (const Termina&) {
        return true;
    } catch (const CintaCortada&) {
        return false;
    }
    return true;
}

void Reproductor::dejarCorrerPendientes() {
    if (!toca(Entrada::Pendientes)) return;
    if (!vuelta_.admiteOtroNivel()) noCorresponde("nadie anida tanto");
    const Vuelta::Nivel nivel(vuelta_);
    while (cinta_.mirar() != Entrada::FinPendientes) {
        if (cinta_.mirar() == Entrada::Fin) return;
        llamar();
    }
    cinta_.entrada();
    preguntas_ = 0;
}

void Reproductor::llamar() {
    const Entrada e = cinta_.entrada();
    preguntas_ = 0;
    if (esRespuesta(e) || e == Entrada::FinPendientes) noCorresponde("una respuesta de mas");
    if (e == Entrada::FinDeVuelta) return vuelta_.terminar();
    const bool antes = std::exchange(enLlamada_, true);
    entregar(e);
    enLlamada_ = antes;
}

void Reproductor::entregar(Entrada e) {
    pasar(cinta_.numero());
    if (e == Entrada::Orden) {
        if (orden_) orden_(cinta_.texto());
        return;
    }
    const std::uint64_t cual = cinta_.numero();
    if (e == Entrada::Tic) {
        if (!cola_.ticarPuesto(static_cast<std::uint32_t>(cual))) noCorresponde("un temporizador");
        return;
    }
    const auto z = zocalos_.find(cual);
    if (z == zocalos_.end()) noCorresponde("un zocalo");
    llamarZocalo(e, *z->second);
}

void Reproductor::llamarZocalo(Entrada e, ZocaloReproducido& z) {
    switch (e) {
    case Entrada::Conectado:
        return z.entregarConexion();
    case Entrada::Datos:
        return z.entregarDatos(cinta_.texto());
    case Entrada::Cortado: {
        const auto estado = static_cast<EstadoZocalo>(cinta_.numero());
        return z.entregarCorte(estado, std::string(cinta_.texto()));
    }
    default:
        return z.entregarPedido(cinta_.texto());
    }
}

std::int64_t Reproductor::mirarReloj() {
    if (toca(Entrada::Avance)) pasar(cinta_.numero());
    return us_;
}

FechaHora Reproductor::mirarCalendario() {
    if (toca(Entrada::Calendario)) {
        adelantoUs_ = cinta_.conSigno();
        if (adelantoUs_ > kMasLejosUs || adelantoUs_ < -us_) throw CintaMala{"una fecha imposible"};
    }
    return calendarioDesdeUs(us_ + adelantoUs_);
}

bool ArchivosReproducidos::toca(Entrada e, const std::string& ruta) {
    if (!reproductor_.toca(e)) return false;
    if (reproductor_.cinta().texto() != ruta) reproductor_.noCorresponde(ruta);
    return true;
}

bool ArchivosReproducidos::existe(const std::string& ruta) {
    bool& hay = existe_[ruta];
    if (toca(Entrada::Existe, ruta)) hay = reproductor_.cinta().numero() != 0;
    return hay;
}

HuellaDeArchivo ArchivosReproducidos::huella(const std::string& ruta) {
    HuellaDeArchivo& h = huellas_[ruta];
    if (toca(Entrada::Huella, ruta)) {
        CintaLeida& c = reproductor_.cinta();
        h.existe = c.numero() != 0;
        h.modificadoNs = c.conSigno();
        h.largo = c.numero();
        h.identidad = c.numero();
    }
    return h;
}

std::optional<std::string> ArchivosReproducidos::leer(const std::string& ruta, std::size_t maximo) {
    auto& contenido = contenidos_[{ruta, maximo}];
    if (toca(Entrada::Contenido, ruta)) {
        CintaLeida& c = reproductor_.cinta();
        if (c.numero() != maximo) reproductor_.noCorresponde(ruta);
        const bool hay = c.numero() != 0;
        const std::string_view texto = c.texto();
        contenido = hay ? std::optional<std::string>(texto) : std::nullopt;
    }
    return contenido;
}

} // namespace kv
