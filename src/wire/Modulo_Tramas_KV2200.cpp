// SPDX-License-Identifier: Apache-2.0
#include "wire/Modulo_Tramas_KV2200.h"

#include "text/numeros.h"

#include <cmath>

namespace kv {
namespace {

std::optional<Solicitud> armar(std::uint8_t orden, std::string_view direccion,
                               std::string_view estacion, std::uint16_t valor) {
    const auto indice = numeroDeTexto(estacion);
    const auto e = indice ? byteDeEstacion(*indice) : std::nullopt;
    const auto d = byteDeRegistro(direccion);
    if (!e || !d) return std::nullopt;
    Solicitud trama{orden,
                    *e,
                    0,
                    *d,
                    static_cast<std::uint8_t>(valor >> 8),
                    static_cast<std::uint8_t>(valor & 0xFF),
                    0};
    trama.back() = sumaDeControl(std::span(trama).first(kLargoSolicitud - 1));
    return trama;
}

} // namespace

std::optional<std::uint8_t> byteDeRegistro(std::string_view texto) {
    const auto registro = hexadecimal(texto);
    if (!registro || *registro > kUltimoRegistro) return std::nullopt;
    return static_cast<std::uint8_t>(*registro);
}

std::optional<std::uint8_t> byteDeEstacion(double indice) {
    if (!(indice >= 0 && indice <= kUltimoIndice) || indice != std::floor(indice))
        return std::nullopt;
    const int n = static_cast<int>(indice);
    return static_cast<std::uint8_t>(n / 10 * 16 + n % 10);
}

std::optional<Solicitud> armarTramaLectura(std::string_view direccion, std::string_view estacion) {
    return armar(kLeer, direccion, estacion, 0);
}

std::optional<Solicitud> armarTramaEscritura(std::string_view direccion, std::string_view estacion,
                                             double valor) {
    if (!(valor >= -32768 && valor <= 65535) || valor != std::floor(valor)) return std::nullopt;
    const auto bits = static_cast<std::uint16_t>(static_cast<std::int32_t>(valor));
    return armar(kEscribir, direccion, estacion, bits);
}

bool verificarTramaRespuesta(std::span<const std::uint8_t> trama) {
    return trama.size() >= 3 && trama.front() == kMarcaRespuesta &&
           trama.back() == sumaDeControl(trama.subspan(1, trama.size() - 2));
}

std::int16_t valorDeRespuesta(std::span<const std::uint8_t, kLargoRespuesta> trama) {
    return static_cast<std::int16_t>(trama[5] << 8 | trama[6]);
}

std::uint8_t sumaDeControl(std::span<const std::uint8_t> bytes) {
    unsigned suma = 0;
    for (const std::uint8_t b : bytes)
        suma += b;
    return static_cast<std::uint8_t>(suma);
}

std::string trazaDeTrama(std::span<const std::uint8_t> trama) {
    std::string traza;
    traza.reserve(trama.size() * 4);
    for (const std::uint8_t b : trama) {
        traza += '[';
        if (b < 10) traza += '0';
        agregarHexadecimal(traza, b);
        traza += ']';
    }
    return traza;
}

} // namespace kv
