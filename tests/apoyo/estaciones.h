// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/simulated/red_simulada.h"
#include "wire/Modulo_Tramas_KV2200.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kv {

/// The four bytes of an answer that are the station's.
using Libres = std::array<std::uint8_t, 4>;

inline Respuesta respuestaDe(int valor, const Libres& libres) {
    Respuesta r{kMarcaRespuesta,
                libres[0],
                libres[1],
                libres[2],
                libres[3],
                static_cast<std::uint8_t>(valor >> 8),
                static_cast<std::uint8_t>(valor),
                0};
    r.back() = sumaDeControl(std::span(r).subspan(1, 6));
    return r;
}

/// An answer frame that tells station and register, as real stations may.
inline Respuesta respuestaCon(int valor, std::uint8_t estacion = 1, std::uint8_t registro = 0) {
    return respuestaDe(valor, {estacion, 0, registro, 0});
}

/// The stations behind one address of the simulated network, with a memory of what they were asked.
/// They answer at once unless `demora` says otherwise.
class Estaciones final : public ExtremoSimulado {
  public:
    struct Pedido {
        double ms;
        std::string traza;
        Solicitud trama;
    };
    Estaciones(RedSimulada& red, const Reloj& reloj) : red_(red), reloj_(reloj) {}

    void alConectar(IdEnlace enlace) override {
        enlace_ = enlace;
        ++conexiones;
    }
    void alRecibir(IdEnlace enlace, std::span<const std::uint8_t> bytes) override {
        entrada_.insert(entrada_.end(), bytes.begin(), bytes.end());
        while (entrada_.size() >= kLargoSolicitud) {
            Solicitud t{};
            std::copy_n(entrada_.begin(), kLargoSolicitud, t.begin());
            entrada_.erase(entrada_.begin(), entrada_.begin() + kLargoSolicitud);
            atender(enlace, t);
        }
    }
    void alCortarse(IdEnlace enlace) override {
        if (enlace == enlace_) enlace_ = 0;
        entrada_.clear();
    }

    /// Bytes at any time, asked for or not.
    void mandar(std::span<const std::uint8_t> bytes, double ms = 0) {
        red_.enviar(enlace_, bytes, static_cast<std::int64_t>(ms * 1000));
    }
    void cortar() { red_.cortar(enlace_); }
    [[nodiscard]] IdEnlace enlace() const { return enlace_; }

    /// Delay of an answer in ms, or nothing where there is to be no answer; asked for every
    /// request.
    std::function<std::optional<double>(const Solicitud&)> demora = [](const Solicitud&) {
        return std::optional<double>(0);
    };
    /// What the stations put into the free bytes of an answer; asked for every one.
    std::function<Libres(const Solicitud&)> libres = [](const Solicitud& t) {
        return Libres{t[1], 0, t[3], 0};
    };
    /// Changes an answer's bytes before they leave: damaged, doubled, behind noise.
    std::function<void(std::vector<std::uint8_t>&, const Solicitud&)> deformar;
    /// Registers by station byte and address byte; what was never set reads as 100 times the
    /// station plus the register.
    std::map<std::pair<int, int>, int> registros;
    std::vector<Pedido> pedidos;
    int conexiones = 0;

    [[nodiscard]] int valor(int estacion, int registro) const {
        const auto r = registros.find({estacion, registro});
        return r == registros.end() ? estacion * 100 + registro : r->second;
    }

  private:
    void atender(IdEnlace enlace, const Solicitud& t) {
        pedidos.push_back({static_cast<double>(reloj_.monotonicoUs()) / 1000, trazaDeTrama(t), t});
        if (t[0] == 0x57) registros[{t[1], t[3]}] = t[4] * 256 + t[5];
        const auto ms = demora(t);
        if (!ms) return;
        const Respuesta r = respuestaDe(valor(t[1], t[3]), libres(t));
        std::vector<std::uint8_t> bytes(r.begin(), r.end());
        if (deformar) deformar(bytes, t);
        red_.enviar(enlace, bytes, static_cast<std::int64_t>(*ms * 1000));
    }

    RedSimulada& red_;
    const Reloj& reloj_;
    IdEnlace enlace_ = 0;
    std::vector<std::uint8_t> entrada_;
};

} // namespace kv
