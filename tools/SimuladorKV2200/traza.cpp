// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/traza.h"

#include "text/numeros.h"

#include <cstdint>

namespace kv::simulador {
namespace {

constexpr std::size_t kVolcarDesde = std::size_t{64} * 1024;
constexpr std::size_t kMaximoDeBytes = 64; // of one line

} // namespace

void Traza::linea(std::string_view enlace, std::string_view texto) {
    if (!encendida_) return;
    pendiente_.append(enlace).append(" ").append(texto).append("\n");
    if (pendiente_.size() >= kVolcarDesde) volcar();
}

void Traza::bytes(std::string_view enlace, std::string_view sentido, std::string_view bytes,
                  std::string_view nota) {
    if (!encendida_) return;
    std::string texto(sentido);
    for (const char c : bytes.substr(0, kMaximoDeBytes)) {
        texto += ' ';
        agregarDosCifras(texto, static_cast<std::uint8_t>(c));
    }
    if (bytes.size() > kMaximoDeBytes)
        texto += " y " + std::to_string(bytes.size() - kMaximoDeBytes) + " bytes más";
    if (!nota.empty()) texto.append("  ").append(nota);
    linea(enlace, texto);
}

void Traza::volcar() {
    if (pendiente_.empty()) return;
    salida_ << pendiente_ << std::flush;
    pendiente_.clear();
}

} // namespace kv::simulador
