// SPDX-License-Identifier: Apache-2.0
#include "evidence/hora.h"

#include <array>
#include <ctime>

namespace kv {
namespace {

std::tm partesDe(const FechaHora& f) {
    std::tm t{};
    t.tm_year = f.anio - 1900;
    t.tm_mon = f.mes - 1;
    t.tm_mday = f.dia;
    t.tm_hour = f.hora;
    t.tm_min = f.minuto;
    t.tm_sec = f.segundo;
    t.tm_isdst = -1;
    return t;
}

} // namespace

std::int64_t segundosUniversales(const FechaHora& local) {
    std::tm t = partesDe(local);
    return std::mktime(&t);
}

std::string zonaDe(const FechaHora& local) {
    std::tm t = partesDe(local);
    static_cast<void>(std::mktime(&t)); // enters the zone
    std::array<char, 64> texto{};
    const std::size_t n = std::strftime(texto.data(), texto.size(), "%Z (UTC%z)", &t);
    return {texto.data(), n};
}

} // namespace kv
