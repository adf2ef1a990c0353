// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/senal.h"

#include "text/numeros.h"
#include "text/texto.h"

#include <cmath>
#include <numbers>

namespace kv::simulador {
namespace {

constexpr std::int64_t kPasoDeRampaMs = 100;
constexpr std::int64_t kPasoDeAzarMs = 1000;
constexpr double kPeriodoDeSenoMs = 60'000;
constexpr std::int64_t kTope = 1000;

} // namespace

std::optional<Senal> senalDeTexto(std::string_view texto) {
    if (igualSinCaja(texto, "rampa")) return Senal{Forma::Rampa, 0};
    if (igualSinCaja(texto, "seno")) return Senal{Forma::Seno, 0};
    if (igualSinCaja(texto, "azar")) return Senal{Forma::Azar, 0};
    const auto numero = numeroDeTexto(texto);
    if (!numero || !(*numero >= -32768 && *numero <= 65535) || *numero != std::floor(*numero))
        return std::nullopt;
    return Senal{Forma::Fijo, static_cast<std::int16_t>(static_cast<std::int32_t>(*numero))};
}

std::int16_t valorDe(const Senal& senal, std::int64_t ms, std::uint64_t semilla) {
    switch (senal.forma) {
    case Forma::Rampa:
        return static_cast<std::int16_t>(ms / kPasoDeRampaMs % (kTope + 1));
    case Forma::Seno: {
        const double angulo = 2 * std::numbers::pi * static_cast<double>(ms) / kPeriodoDeSenoMs;
        return static_cast<std::int16_t>(std::lround(kTope * std::sin(angulo)));
    }
    case Forma::Azar: {
        const auto paso = static_cast<std::uint64_t>(ms / kPasoDeAzarMs);
        return static_cast<std::int16_t>(mezclar(semilla, paso) % (kTope + 1));
    }
    case Forma::Fijo:
        break;
    }
    return senal.valor;
}

std::uint64_t mezclar(std::uint64_t a, std::uint64_t b) {
    std::uint64_t x = a ^ (b + 0x9E3779B97F4A7C15ULL + (a << 6) + (a >> 2));
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

} // namespace kv::simulador
