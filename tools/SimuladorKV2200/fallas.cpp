// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/fallas.h"

#include "text/numeros.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace kv::simulador {
namespace {

constexpr double kRetardoMaximoMs = 3'600'000;
constexpr double kTiempoMaximoS = 1'000'000;
constexpr std::int64_t kBasuraMaxima = 8; // bytes before an answer
constexpr std::int64_t kTrozosMaximos = 4;
constexpr std::int64_t kPausaMaximaMs = 20; // between the pieces of an answer

std::string fijarProbabilidad(double& destino, std::string_view valor) {
    const auto p = numeroDeTexto(valor);
    if (!p || !(*p >= 0 && *p <= 1)) return "debe ser una probabilidad de 0 a 1";
    destino = *p;
    return {};
}

std::optional<double> enRango(std::string_view valor, double minimo, double maximo) {
    const auto n = numeroDeTexto(valor);
    if (!n || !(*n >= minimo && *n <= maximo)) return std::nullopt;
    return n;
}

std::string fijarRetardo(Fallas& fallas, std::string_view valor) {
    const auto guion = valor.find('-');
    const auto a = enRango(valor.substr(0, guion), 0, kRetardoMaximoMs);
    const auto b =
        guion == std::string_view::npos ? a : enRango(valor.substr(guion + 1), 0, kRetardoMaximoMs);
    if (!a || !b || *a > *b || *a != std::floor(*a) || *b != std::floor(*b))
        return "debe ser A o A-B, en milisegundos enteros de 0 a 3600000";
    fallas.retardoMinMs = static_cast<std::int64_t>(*a);
    fallas.retardoMaxMs = static_cast<std::int64_t>(*b);
    return {};
}

std::string fijarAusente(Fallas& fallas, std::string_view valor) {
    const auto barra = valor.find('/');
    const auto dura = enRango(valor.substr(0, barra), 0, kTiempoMaximoS);
    const auto cada = barra == std::string_view::npos
                          ? std::nullopt
                          : enRango(valor.substr(barra + 1), 0.001, kTiempoMaximoS);
    if (!dura || !cada || *dura > *cada) return "debe ser DURA/CADA, en segundos";
    fallas.ausenteDuraS = *dura;
    fallas.ausenteCadaS = *cada;
    return {};
}

bool ausente(const Fallas& f, std::int64_t ms) {
    if (f.ausenteDuraS <= 0) return false;
    return std::fmod(static_cast<double>(ms) / 1000, f.ausenteCadaS) >=
           f.ausenteCadaS - f.ausenteDuraS;
}

void ensuciar(std::string& bytes, Azar& azar) {
    if (azar.acierta(0.5)) {
        std::string basura;
        for (std::int64_t n = azar.entre(1, kBasuraMaxima); n > 0; --n)
            basura += static_cast<char>(azar.entre(0, 255));
        bytes.insert(0, basura);
        return;
    }
    const auto donde = static_cast<std::size_t>(azar.entre(0, kLargoRespuesta - 1));
    bytes[donde] = static_cast<char>(bytes[donde] ^ azar.entre(1, 255));
}

std::vector<Trozo> partirEnTrozos(const std::string& bytes, Azar& azar) {
    std::vector<Trozo> trozos;
    const auto n = azar.entre(2, kTrozosMaximos);
    std::size_t desde = 0;
    for (std::int64_t i = 1; i <= n && desde < bytes.size(); ++i) {
        const auto quedan = static_cast<std::int64_t>(bytes.size() - desde);
        const auto largo = i == n ? quedan : azar.entre(1, std::max<std::int64_t>(1, quedan - 1));
        trozos.push_back({trozos.empty() ? 0 : azar.entre(1, kPausaMaximaMs),
                          bytes.substr(desde, static_cast<std::size_t>(largo))});
        desde += static_cast<std::size_t>(largo);
    }
    return trozos;
}

} // namespace

std::uint64_t Azar::siguiente() {
    estado_ += 0x9E3779B97F4A7C15ULL;
    std::uint64_t x = estado_;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

std::int64_t Azar::entre(std::int64_t desde, std::int64_t hasta) {
    const auto ancho = static_cast<std::uint64_t>(hasta - desde) + 1;
    return desde + static_cast<std::int64_t>(siguiente() % ancho);
}

bool Azar::acierta(double p) {
    return static_cast<double>(siguiente() >> 11) < p * 9007199254740992.0; // 2^53
}

std::string fijarFalla(Fallas& fallas, std::string_view nombre, std::string_view valor) {
    if (nombre == "retardo-ms") return fijarRetardo(fallas, valor);
    if (nombre == "sin-respuesta") return fijarProbabilidad(fallas.sinRespuesta, valor);
    if (nombre == "basura") return fijarProbabilidad(fallas.basura, valor);
    if (nombre == "perder-respuesta-de-escritura")
        return fijarProbabilidad(fallas.perderRespuestaDeEscritura, valor);
    if (nombre == "ausente") return fijarAusente(fallas, valor);
    if (nombre == "fragmentar" || nombre == "cortar-de-golpe") {
        if (valor != "1" && valor != "0") return "debe ser 1 o 0";
        (nombre == "fragmentar" ? fallas.fragmentar : fallas.cortarDeGolpe) = valor == "1";
        return {};
    }
    if (nombre == "cortar-cada") {
        const auto s = enRango(valor, 0, kTiempoMaximoS);
        if (!s) return "debe ser un número de segundos, 0 o más";
        fallas.cortarCadaS = *s;
        return {};
    }
    return "no existe esa opción";
}

std::vector<Trozo> planear(const Respuesta& respuesta, bool esEscritura, const Fallas& fallas,
                           std::int64_t ms, Azar& azar) {
    // Every chance is drawn for every request, so that what one fault does leaves the others alone.
    const std::int64_t retardo = azar.entre(fallas.retardoMinMs, fallas.retardoMaxMs);
    const bool calla = azar.acierta(fallas.sinRespuesta);
    const bool pierde = azar.acierta(fallas.perderRespuestaDeEscritura) && esEscritura;
    const bool ensucia = azar.acierta(fallas.basura);
    Azar detalle(azar.siguiente());
    if (calla || pierde || ausente(fallas, ms)) return {};
    std::string bytes(respuesta.begin(), respuesta.end());
    if (ensucia) ensuciar(bytes, detalle);
    std::vector<Trozo> trozos;
    if (fallas.fragmentar)
        trozos = partirEnTrozos(bytes, detalle);
    else
        trozos.push_back({0, std::move(bytes)});
    trozos.front().esperaMs = retardo;
    return trozos;
}

std::int64_t vidaDeEnlaceMs(const Fallas& fallas, Azar& azar) {
    const auto ms = static_cast<std::int64_t>(fallas.cortarCadaS * 1000);
    return ms <= 0 ? 0 : std::max<std::int64_t>(1, azar.entre(ms / 2, ms + ms / 2));
}

} // namespace kv::simulador
