// SPDX-License-Identifier: Apache-2.0
#include "ClienteKV2200/hora.h"

#include <array>
#include <chrono>
#include <ctime>

namespace kv::cliente {
namespace {

std::string conForma(const std::tm& t, const char* forma) {
    std::array<char, 64> texto{};
    return {texto.data(), std::strftime(texto.data(), texto.size(), forma, &t)};
}

std::string desfase(const std::tm& t) { return conForma(t, "%z").insert(3, ":"); }

std::tm local(std::time_t segundos) {
    std::tm t{};
    localtime_r(&segundos, &t);
    return t;
}

} // namespace

std::string horaIso() {
    using namespace std::chrono;
    const auto ahora = system_clock::now();
    const auto entera = floor<seconds>(ahora);
    const std::tm t = local(system_clock::to_time_t(entera));
    const auto ms = static_cast<int>(duration_cast<milliseconds>(ahora - entera).count());
    const std::string fraccion = std::to_string(1000 + ms).substr(1);
    return conForma(t, "%Y-%m-%dT%H:%M:%S.") + fraccion + desfase(t);
}

std::string horaYZona() {
    const std::tm t = local(std::time(nullptr));
    return conForma(t, "%d/%m/%Y %H h") + ", zona UTC" + desfase(t) + conForma(t, " (%Z)");
}

} // namespace kv::cliente
