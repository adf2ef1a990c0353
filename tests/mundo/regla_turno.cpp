// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_turno.h"

#include <algorithm>

namespace kv::mundo {
namespace {

constexpr std::int64_t kOciosaUs = 5000; // a handler that lets events run ends well before
constexpr int kEscriturasSeguidas = 6;   // four in a row, and those that found the line free
constexpr std::int64_t kHolguraUs = 30'000'000;
constexpr std::int64_t kRedondeoUs = 3000;

std::int64_t us(double ms) { return static_cast<std::int64_t>(ms * 1000); }

} // namespace

void ReglaDeTurno::alEnviar(std::size_t n, std::span<const std::uint8_t> bytes) {
    if (seguidas_.size() <= n) seguidas_.resize(n + 1);
    Seguida& s = seguidas_[n];
    const ConexionIP& c = c_.conexion(n);
    if (!c_.exigir(bytes.size() == kLargoSolicitud &&
                       bytes.back() == sumaDeControl(bytes.first(kLargoSolicitud - 1)),
                   "a request is a whole frame", n))
        return;
    Solicitud t{};
    std::copy(bytes.begin(), bytes.end(), t.begin());
    c_.exigir(c.turno == EstadoDeTurno::Esperando, "who sends is taken before the request leaves",
              n);
    c_.exigir(c_.motor.turnos.temporizadoresEncendidos(static_cast<Indice>(n)) == 1,
              "the time-out runs before the request leaves", n);
    c_.exigir(c.recepcion.empty(), "a request leaves over an empty buffer", n);
    const std::uint64_t enlace = c_.zocalo(n).conexiones();
    if (s.enlace != enlace) enlaceNuevo(n, s);
    s.enlace = enlace;
    // Without a pause the next request follows inside the handler of the answer.
    const double pausa = c_.motor.turnos.pausa();
    if (s.enVuelo && s.pausaAlEnviarMs >= 1 && pausa >= 1)
        repeticion(n, s, t);
    else
        nueva(n, s, t);
    s.ultima = t;
    s.pausaAlEnviarMs = pausa;
    s.envioUs = s.desdeUs = c_.ahoraUs();
    s.visto = c.turno;
    s.enVuelo = true;
}

/// Nothing is outstanding, and who waits begins to wait.
void ReglaDeTurno::enlaceNuevo(std::size_t n, Seguida& s) {
    s.enVuelo = false;
    s.finUs = s.leeHastaUs = 0;
    for (const Indice i : c_.conexion(n).bloques) {
        if (i < esperas_.size()) esperas_[i] = 0;
    }
}

void ReglaDeTurno::repeticion(std::size_t n, Seguida& s, const Solicitud& t) {
    const bool deEscritura = s.ultima[0] == 0x57 || c_.escribe(n);
    c_.exigir(t[1] == s.ultima[1] && t[3] == s.ultima[3] && (deEscritura || t[0] == 0x52),
              "one request is outstanding", n);
    c_.exigir(c_.ahoraUs() - s.envioUs >= c_.lineas[n]->plan().tiempoFueraMs * 1000,
              "a request is repeated after its time-out", n);
    ++s.envios;
    const int reintentos = c_.lineas[n]->plan().reintentos;
    if (deEscritura) {
        const std::size_t lectura = c_.motor.tablas.siguientePorPolear(static_cast<Indice>(n));
        // One on trial goes before all, and may have to wait for a quiet line.
        c_.exigir(lectura == ConjuntoDePosiciones::kNinguna || !cuenta(n, lectura) ||
                      c_.conexion(n).bloqueDePrueba != kNinguno,
                  "a write that timed out lets a read pass that can be told apart", n);
        c_.exigir(s.envios <= 2 * reintentos + 2, "a write is repeated so often as allowed", n);
        return;
    }
    c_.exigir(!c_.motor.tablas.bloques[c_.conexion(n).bloqueEnCurso].sondeo,
              "who is known to be silent is asked once", n);
    // Counted by the block, which begins anew when it is switched off and on.
    const double suyos = c_.motor.tablas.bloques[c_.conexion(n).bloqueEnCurso].reintentos;
    c_.exigir((suyos == s.reintentos + 1 || suyos == 1) && suyos <= reintentos,
              "a request is repeated so often as allowed", n);
    s.reintentos = suyos;
}

void ReglaDeTurno::nueva(std::size_t n, Seguida& s, const Solicitud& t) {
    if (s.finUs > 0)
        c_.exigir(c_.ahoraUs() - s.finUs >= us(s.pausaMs), "never sooner than the pause", n);
    s.envios = 1;
    s.pedido = ++pedidos_;
    s.deEscritura = c_.escribe(n);
    s.tomadaUs = c_.ahoraUs();
    // A write that is read back is no read of a block.
    const bool lectura = t[0] == 0x52 && !c_.escribe(n);
    s.bloque = lectura ? c_.conexion(n).bloqueEnCurso : kNinguno;
    c_.exigir(s.bloque == kNinguno || !c_.motor.tablas.bloques[s.bloque].retirado,
              "what is no longer configured is not asked for", n);
    s.reintentos = s.bloque != kNinguno ? c_.motor.tablas.bloques[s.bloque].reintentos : 0;
    if (s.bloque != kNinguno && s.pausaAlEnviarMs >= 1 && c_.motor.turnos.pausa() >= 1)
        c_.exigir(s.reintentos == 0 || c_.motor.tablas.bloques[s.bloque].enDuda,
                  "who is asked anew has all its tries", s.bloque);
    turnos(n, s, t);
}

/// The answer of the block at a place would count as its own.
bool ReglaDeTurno::cuenta(std::size_t n, std::size_t lugar) const {
    const BloqueLectura& b = c_.motor.tablas.bloques[c_.conexion(n).bloques[lugar]];
    return c_.motor.turnos.permiso(static_cast<Indice>(n), registroDe(b.tramaSolicitud)).cuenta;
}

/// Its first write has read its register and is about to change a bit of it.
bool ReglaDeTurno::aMedias(const ConexionIP& c) const {
    if (c.escrituras.empty()) return false;
    const BloqueEscritura& e = c_.motor.tablas.escrituras[c.escrituras.front()];
    return e.esBit() && e.lecturas > 0 && !e.cedio;
}

/// Reads go round, and writes leave a turn to them.
void ReglaDeTurno::turnos(std::size_t n, Seguida& s, const Solicitud& t) {
    const ConexionIP& c = c_.conexion(n);
    const Tablas& tablas = c_.motor.tablas;
    esperas_.resize(std::max(esperas_.size(), tablas.bloques.limiteSuperior()));
    bool alguno = false;
    for (const Indice i : c.bloques) {
        const BloqueLectura& b = tablas.bloques[i];
        const bool espera =
            b.pendiente && b.activo && b.tieneTrama && b.habilitadoPorRespuestas && i != s.bloque;
        alguno = alguno || espera;
        if (!espera) {
            esperas_[i] = 0;
        } else if (s.bloque != kNinguno && s.bloque != s.bloqueAnterior) {
            // Without a pause repetitions and read-backs come by here too, and a block that was
            // asked on trial is asked again.
            c_.exigir(++esperas_[i] <= 2 * c.bloques.size() + 3, "every due block has its turn", i);
        }
    }
    if (s.bloque != kNinguno) s.bloqueAnterior = s.bloque;
    const bool suTiempo = c_.ahoraUs() + kRedondeoUs < s.leeHastaUs && c_.motor.turnos.pausa() >= 1;
    c_.exigir(s.bloque != kNinguno || !alguno || !suTiempo || aMedias(c),
              "a write that timed out leaves its time to reads", n);
    s.escrituras = t[0] == 0x57 && alguno ? s.escrituras + 1 : 0;
    c_.exigir(s.escrituras <= kEscriturasSeguidas, "writes leave a turn to reads", n);
}

void ReglaDeTurno::mirar() {
    const std::size_t cuantas = c_.conexiones();
    if (seguidas_.size() < cuantas) seguidas_.resize(cuantas);
    for (std::size_t n = 0; n < cuantas; ++n)
        mirar(n, seguidas_[n]);
}

void ReglaDeTurno::mirar(std::size_t n, Seguida& s) {
    const ConexionIP& c = c_.conexion(n);
    if (c.turno != s.visto) {
        if (s.visto == EstadoDeTurno::Esperando) terminar(n, s);
        s.visto = c.turno;
        s.desdeUs = c_.ahoraUs();
    }
    const bool libre = c.turno == EstadoDeTurno::Libre;
    const int timers = c_.motor.turnos.temporizadoresEncendidos(static_cast<Indice>(n));
    c_.exigir(timers == (libre ? 0 : 1) && c.recepcion.size() < kLargoRespuesta,
              "who is not free has one timer, and no buffer holds a frame", n);
    if (!libre || !conTrabajo(c) || !c_.supervisada(n)) {
        s.ociosaUs = -1;
    } else if (s.ociosaUs < 0) {
        s.ociosaUs = c_.ahoraUs();
    } else {
        c_.exigir(c_.ahoraUs() - s.ociosaUs <= kOciosaUs, "nobody idles with work to do", n);
    }
}

void ReglaDeTurno::terminar(std::size_t n, Seguida& s) {
    s.enVuelo = false;
    s.finUs = c_.ahoraUs();
    // What was answered late may have been so at the last moment, and have lasted since.
    const std::int64_t plazoUs = c_.lineas[n]->plan().tiempoFueraMs * 1000;
    const bool tarde = c_.conexion(n).recibidoUs - s.envioUs > plazoUs / 2;
    if (s.deEscritura && !tarde && s.finUs - s.envioUs >= plazoUs)
        s.leeHastaUs = 2 * s.finUs - s.tomadaUs;
    s.pausaMs = c_.motor.turnos.pausa();
    if (c_.conexion(n).turno == EstadoDeTurno::Libre) s.finUs = 0; // the link was forgotten
    if (s.bloque != kNinguno) alTerminarLectura(s.bloque);
    s.bloque = kNinguno;
}

void ReglaDeTurno::barrer() {
    for (std::size_t n = 0; n < std::min(seguidas_.size(), c_.conexiones()); ++n) {
        const Seguida& s = seguidas_[n];
        const std::int64_t tiempoFuera = c_.lineas[n]->plan().tiempoFueraMs * 1000;
        const std::int64_t ahora = c_.ahoraUs();
        if (s.visto == EstadoDeTurno::Esperando)
            c_.exigir(ahora - std::max(s.envioUs, s.desdeUs) <= 8 * tiempoFuera + 2 * kHolguraUs,
                      "who waits is freed by the time-out", n);
        if (s.visto == EstadoDeTurno::EnPausa)
            c_.exigir(ahora - s.desdeUs <= 16 * tiempoFuera + us(s.pausaMs) + kHolguraUs,
                      "a pause ends", n);
    }
}

} // namespace kv::mundo
