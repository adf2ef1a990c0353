// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "text/json_leido.h"

#include <cstdint>
#include <map>
#include <set>
#include <span>
#include <string>
#include <vector>

namespace kv {

/// Makes of the driver's events a capture as analysers of networks read it (classic pcap, raw IP,
/// microseconds): each request and each arrival a TCP segment, with addresses and numbers that make
/// a conversation of each link. The stations' addresses are their own where they are IPv4, the
/// others and the driver's are made up. Times are the events', to the millisecond.
class Captura {
  public:
    Captura();
    /// The next event, as the local door tells it; those without bytes on the wire are passed over.
    void agregar(const Json& suceso);
    [[nodiscard]] const std::string& bytes() const { return pcap_; }
    [[nodiscard]] std::size_t tramas() const { return tramas_; }
    [[nodiscard]] const std::set<std::uint16_t>& puertos() const { return puertos_; }
    [[nodiscard]] const std::string& primera() const { return primera_; }
    [[nodiscard]] const std::string& ultima() const { return ultima_; }

  private:
    struct Enlace {
        std::uint32_t ip = 0;
        std::uint16_t puerto = 0;
        std::uint16_t puertoDelDriver = 0;
        std::uint32_t enviados = 1, recibidos = 1; ///< sequence numbers that come next
        std::vector<std::uint8_t> tenidos;         ///< what the driver holds of an answer
    };
    [[nodiscard]] Enlace& enlaceDe(const std::string& direccion);
    void reanudar(Enlace& e);
    void segmento(Enlace& e, bool delDriver, const std::string& hora,
                  std::span<const std::uint8_t> datos);

    std::string pcap_;
    std::size_t tramas_ = 0;
    std::map<std::string, Enlace, std::less<>> enlaces_;
    std::set<std::uint16_t> puertos_;
    std::uint16_t siguientePuerto_ = 0;
    std::uint16_t identidad_ = 0; ///< of IP packets
    std::string primera_, ultima_;
};

} // namespace kv
