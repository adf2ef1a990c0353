// SPDX-License-Identifier: Apache-2.0
#include "wire/ensamblado.h"

#include <algorithm>

namespace kv {
namespace {

bool empiezaConRespuesta(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= kLargoRespuesta && verificarTramaRespuesta(bytes.first(kLargoRespuesta));
}

void hallar(std::span<const std::uint8_t> bytes, bool alPrincipio, Ensamblado& salida) {
    auto& hallada = salida.respuestas.emplace_back();
    std::copy_n(bytes.begin(), kLargoRespuesta, hallada.trama.begin());
    hallada.alPrincipio = alPrincipio;
}

} // namespace

void ensamblar(std::vector<std::uint8_t>& tenidos, std::span<const std::uint8_t> llegaron,
               Ensamblado& salida) {
    salida.respuestas.clear();
    salida.basura = 0;
    if (empiezaConRespuesta(llegaron)) {
        // An answer that begins where its packet does is one; what was held was noise.
        salida.basura = tenidos.size();
        tenidos.clear();
        if (llegaron.size() == kLargoRespuesta) return hallar(llegaron, true, salida);
    }
    if (tenidos.size() + llegaron.size() < kLargoRespuesta) {
        tenidos.insert(tenidos.end(), llegaron.begin(), llegaron.end());
        return;
    }
    std::span<const std::uint8_t> resto = llegaron;
    bool alPrincipio = tenidos.empty();
    if (!tenidos.empty()) {
        salida.juntos.assign(tenidos.begin(), tenidos.end());
        salida.juntos.insert(salida.juntos.end(), llegaron.begin(), llegaron.end());
        resto = salida.juntos;
    }
    while (!resto.empty()) {
        const auto marca = std::find(resto.begin(), resto.end(), kMarcaRespuesta);
        const auto salto = static_cast<std::size_t>(marca - resto.begin());
        salida.basura += salto;
        resto = resto.subspan(salto);
        alPrincipio = alPrincipio && salto == 0;
        if (resto.size() < kLargoRespuesta) break;
        if (empiezaConRespuesta(resto)) {
            hallar(resto, alPrincipio, salida);
            resto = resto.subspan(kLargoRespuesta);
        } else {
            ++salida.basura;
            alPrincipio = false;
            resto = resto.subspan(1);
        }
    }
    tenidos.assign(resto.begin(), resto.end());
}

bool esEco(const Ensamblado::Hallada& hallada, const Solicitud& solicitud) {
    return !hallada.alPrincipio &&
           std::equal(solicitud.begin(), solicitud.end(), hallada.trama.begin() + 1);
}

} // namespace kv
