// SPDX-License-Identifier: Apache-2.0
#include "mundo/regla_porque.h"

#include "plant/valor_y_estado.h"

#include <algorithm>

namespace kv::mundo {
namespace {

constexpr std::size_t kPorBarrida = 8;
constexpr std::int64_t kLoVeLaSupervisionUs = 10'000'000; // with what a machine may stand still

} // namespace

void ReglaDePorQue::alSuceder(const kv::Suceso& s, std::string_view /*texto*/) {
    const std::int64_t ahora = c_.bucle.reloj().monotonicoMs();
    if (s.bloque != kNinguno && s.bloque >= bloques_.size()) bloques_.resize(s.bloque + 1);
    if (s.que == Que::Recepcion) bloques_[s.bloque] = {ahora, 0};
    // Where there was no link nothing was asked.
    if (s.que == Que::TiempoFuera && c_.supervisada(s.conexion)) ++bloques_[s.bloque].vencidas;
    if (s.conexion == kNinguno) return;
    if (s.conexion >= enlaces_.size()) enlaces_.resize(s.conexion + 1);
    DeEnlace& e = enlaces_[s.conexion];
    if (s.que == Que::EnlaceCortado) e.loCortoUs = c_.ahoraUs();
    if (s.que == Que::LineaNoCalla) e.noCallabaUs = c_.ahoraUs();
    if (s.que != Que::EnlaceArriba && s.que != Que::EnlaceAbajo) return;
    e.desdeMs = ahora;
    e.arriba = s.que == Que::EnlaceArriba;
}

/// Those that can no longer be given as a reason are forgotten: a reason stands until the
/// supervision has seen the loss, and then until the next attempt.
void ReglaDePorQue::alPedirEnlace(std::size_t n) {
    constexpr std::size_t kIntentos = 3;
    if (n >= enlaces_.size()) enlaces_.resize(n + 1);
    auto& todos = enlaces_[n].intentos;
    const std::int64_t viejo = c_.ahoraUs() - kLoVeLaSupervisionUs;
    while (todos.size() > kIntentos && todos[1].us < viejo)
        todos.erase(todos.begin());
    todos.push_back({c_.ahoraUs(), c_.lineas[n]->llegada()});
}

bool ReglaDePorQue::pudoPerderse(Indice n, std::string_view motivo, std::int64_t desdeUs) const {
    const Linea::Fines& f = c_.lineas[n]->fines();
    const DeEnlace& e = enlaces_[n];
    if (motivo == "la cerro el otro extremo") return f.cerroUs >= desdeUs;
    if (motivo == "la corto el otro extremo de golpe") return f.reinicioUs >= desdeUs;
    if (motivo == "nadie confirma lo que se envia") return f.retuvoUs >= desdeUs;
    if (motivo == "la corto el driver con una escritura abandonada") return e.loCortoUs >= desdeUs;
    return motivo == "la corto el driver porque la linea no callaba" && e.noCallabaUs >= desdeUs;
}

bool ReglaDePorQue::pudoSer(Indice n, std::string_view motivo) const {
    const std::string nombre = "nadie conoce el nombre " + c_.conexion(n).ip;
    const auto fueElIntento = [&](const Intento& i) {
        switch (i.llegada) {
        case Llegada::Entra:
            return pudoPerderse(n, motivo, i.us);
        case Llegada::Rechazada:
            return motivo == "rechaza la conexion (nadie atiende ese puerto)";
        case Llegada::SinRuta:
            return motivo == "no hay ruta hasta esa direccion";
        case Llegada::SinRutaLuego: // or the driver did not wait so long
            return motivo == "no hay ruta hasta esa direccion" ||
                   motivo == "nadie contesta en esa direccion";
        case Llegada::SinRed:
            return motivo == "no hay ruta hasta esa red";
        case Llegada::Reiniciada:
            return motivo == "el otro extremo la corta apenas se establece";
        case Llegada::SinNombre:
            return motivo == nombre;
        default:
            return motivo == "nadie contesta en esa direccion";
        }
    };
    const auto& todos = enlaces_[n].intentos;
    return std::any_of(todos.begin(), todos.end(), fueElIntento);
}

void ReglaDePorQue::mirarSinEnlace(Indice n) {
    const std::string dice = c_.motor.porQue.porQueConexion(n);
    c_.exigir(loQueFallaEnIngles(dice, ingles_.porQueConexion(n)).empty(),
              "the reason is the same in English", n);
    const DeEnlace& e = enlaces_[n];
    if (e.desdeMs >= 0)
        c_.exigir(dice.find((e.arriba ? "se acaba de perder (estaba conectada desde "
                                      : "esta caida desde ") +
                            c_.motor.porQue.hora(Momento(e.desdeMs).ms())) != std::string::npos,
                  "the reason knows since when", n);
    const auto desde = dice.find(": ");
    const auto hasta = dice.find("; ");
    const std::string motivo =
        desde < hasta ? dice.substr(desde + 2, hasta - desde - 2) : std::string();
    // What the supervision has not seen yet is a loss, whatever attempts there were since.
    c_.exigir(motivo.empty() ? e.desdeMs < 0
              : e.arriba     ? pudoPerderse(n, motivo, e.desdeMs * 1000 - kLoVeLaSupervisionUs)
                             : pudoSer(n, motivo),
              "the reason knows why there is no link", n);
}

void ReglaDePorQue::mirar() {
    const auto cuantos = static_cast<Indice>(c_.motor.tablas.bloques.limiteSuperior());
    bloques_.resize(cuantos);
    enlaces_.resize(c_.conexiones());
    for (std::size_t n = 0; n < c_.conexiones(); ++n) {
        if (!c_.conectada(n)) mirarSinEnlace(static_cast<Indice>(n));
    }
    for (std::size_t k = 0; k < std::min<std::size_t>(kPorBarrida, cuantos); ++k) {
        siguiente_ = siguiente_ + 1 < cuantos ? siguiente_ + 1 : 0;
        if (!c_.motor.tablas.bloques[siguiente_].retirado) mirar(siguiente_);
    }
}

/// The number that stands before words; 0 where they are not.
std::uint32_t ReglaDePorQue::numeroAntesDe(const std::string& texto, std::string_view que) {
    const auto i = texto.find(que);
    if (i == std::string::npos || i == 0) return 0;
    const auto desde = texto.find_last_not_of("0123456789", i - 1);
    return static_cast<std::uint32_t>(std::stoul(texto.substr(desde + 1, i - desde - 1)));
}

void ReglaDePorQue::mirar(Indice i) {
    const BloqueLectura& b = c_.motor.tablas.bloques[i];
    const PorQue& q = c_.motor.porQue;
    const std::string dice = q.porQueVariable(i);
    c_.exigir(loQueFallaEnIngles(dice, ingles_.porQueVariable(i)).empty(),
              "the reason is the same in English", i);
    const auto tiene = [&dice](std::string_view que) {
        return dice.find(que) != std::string::npos;
    };
    c_.exigir(dice.starts_with("OK") == (b.estado == kOk), "the reason knows what is OK", i);
    const DeBloque& suyo = bloques_[i];
    c_.exigir(tiene("nunca leida") == (suyo.leidaMs < 0), "the reason knows what was never read",
              i);
    if (suyo.leidaMs >= 0)
        c_.exigir(tiene("leida por ultima vez hace " + q.hace(suyo.leidaMs)),
                  "the reason knows the last answer", i);
    if (const std::string_view intentos = " sin nada"; tiene(intentos) || tiene(" con bytes "))
        c_.exigir(tiene("la estacion ") ||
                      numeroAntesDe(dice, intentos) + numeroAntesDe(dice, " con bytes ") ==
                          suyo.vencidas,
                  "the reason counts the tries", i);
    if (b.estado != kOk) mirarMalas(i, dice);
}

void ReglaDePorQue::mirarMalas(Indice i, const std::string& dice) {
    const BloqueLectura& b = c_.motor.tablas.bloques[i];
    const auto tiene = [&dice](const std::string& que) {
        return dice.find(que) != std::string::npos;
    };
    if (!b.tieneTrama) return;
    c_.exigir(tiene("el bloque esta apagado") == !b.activo, "the reason knows what is off", i);
    if (!b.activo) return;
    const Indice n = b.idConexion;
    const ConexionIP& c = c_.conexion(n);
    const bool arriba = c_.supervisada(n);
    c_.exigir(tiene("la conexion " + c.ip + ":" + c.puertoTCP) == !arriba,
              "the reason knows what has no link", i);
    if (!arriba) return;
    const Estacion& e = c_.motor.tablas.estacionDe(b);
    c_.exigir(tiene("pregunta por todos") || tiene("se esta preguntando por ella")
                  ? e.muda && !b.habilitadoPorRespuestas
                  : !e.muda || b.habilitadoPorRespuestas,
              "the reason knows who asks for a silent station", i);
}

} // namespace kv::mundo
