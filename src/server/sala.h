// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/zocalo.h"

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <string_view>

namespace kv {

/// A peer that has come in: the client, or one that may become it.
struct Visita {
    std::uint64_t numero; ///< counts those who came, from 1 on; also the index of its socket
    std::string remoto;   ///< "address:port"
    std::int64_t desdeMs; ///< when it came
    double intentos = 0;  ///< keep-alives sent to it and not answered
    std::unique_ptr<Zocalo> zocalo{};

    [[nodiscard]] std::string_view ip() const;
    [[nodiscard]] bool conectada() const { return zocalo->estado() == EstadoZocalo::Conectado; }
};

/// Who waits to be known by its password, and who is. A newcomer always finds a place: where all
/// are taken, the one that has waited longest leaves, of its own address if that has as many as one
/// may have, else of the address that has most. So nobody is kept out by others who say nothing.
/// Once there is a client, nobody else is here.
class Sala {
  public:
    static constexpr std::size_t kLugares = 16;
    static constexpr std::size_t kPorDireccion = 8;

    /// Inside `alPedirConexion` of `escucha`: lets the peer in. What it sends goes to `oyente` with
    /// its number. The peer that had to leave for it, if any, is named in `salio`.
    Visita& recibir(Zocalo& escucha, OyenteDeZocalo& oyente, std::string_view remoto,
                    std::int64_t ahoraMs, std::string& salio);
    /// Null for one that has left.
    [[nodiscard]] Visita* hallar(std::uint64_t numero);
    /// The client, else the one that has waited longest; null if nobody is here.
    [[nodiscard]] Visita* primera() { return visitas_.empty() ? nullptr : &visitas_.front(); }
    [[nodiscard]] const Visita* primera() const {
        return visitas_.empty() ? nullptr : &visitas_.front();
    }
    [[nodiscard]] bool hayCliente() const { return hayCliente_; }
    /// Makes it the client; all others leave.
    void elegir(std::uint64_t numero);
    /// Closes its link. References to it end.
    void despedir(std::uint64_t numero);
    /// Calls `hacer` with everyone, who may leave meanwhile.
    template <class F>
    void conTodas(F hacer) {
        for (auto v = visitas_.begin(); v != visitas_.end();)
            hacer(*v++);
    }

  private:
    [[nodiscard]] std::size_t cuantas(std::string_view ip) const;
    [[nodiscard]] const Visita& laQueSale(std::string_view ip) const;

    std::list<Visita> visitas_; ///< in the order in which they came
    std::uint64_t ultimo_ = 0;
    bool hayCliente_ = false;
};

} // namespace kv
