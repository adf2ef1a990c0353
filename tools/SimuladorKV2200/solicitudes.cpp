// SPDX-License-Identifier: Apache-2.0
#include "SimuladorKV2200/solicitudes.h"

#include <algorithm>

namespace kv::simulador {
namespace {

bool empieza(char c) { return c == 'R' || c == 'W'; }

std::optional<Solicitud> solicitudEn(std::string_view bytes) {
    Solicitud s{};
    std::copy_n(bytes.begin(), s.size(), s.begin());
    if (!empieza(bytes.front())) return std::nullopt;
    if (s.back() != sumaDeControl(std::span(s).first(kLargoSolicitud - 1))) return std::nullopt;
    return s;
}

} // namespace

void Solicitudes::agregar(std::span<const std::uint8_t> bytes) {
    bytes_.erase(0, leidos_);
    leidos_ = 0;
    bytes_.append(bytes.begin(), bytes.end());
}

std::optional<Solicitudes::Suceso> Solicitudes::siguiente() {
    const std::string_view todos = bytes_;
    std::size_t i = leidos_;
    for (; i < todos.size(); ++i) {
        const std::string_view resto = todos.substr(i);
        // Too few bytes to tell: they wait, if they can begin a request at all.
        if (resto.size() < kLargoSolicitud && empieza(resto.front())) break;
        if (resto.size() < kLargoSolicitud) continue;
        const auto solicitud = solicitudEn(resto);
        if (!solicitud) continue;
        if (i > leidos_) break; // first tell what was skipped
        leidos_ = i + kLargoSolicitud;
        return Suceso{solicitud, {}};
    }
    if (i == leidos_) return std::nullopt;
    Suceso s{std::nullopt, std::string(todos.substr(leidos_, i - leidos_))};
    leidos_ = i;
    return s;
}

} // namespace kv::simulador
