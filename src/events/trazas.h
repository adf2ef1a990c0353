// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/redaccion.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace kv {

/// A trace box: the events that have a line in it, as text.
class Traza {
  public:
    static constexpr std::size_t kMaximo = 40000; ///< characters of the latest that are shown

    /// `indice`: the number of the box where boxes are numbered, else -1.
    Traza(const Redaccion& redaccion, Caja caja, std::int64_t indice = -1);

    /// Of these lines those of one connection, or of one block; kNinguno: of any.
    [[nodiscard]] Traza soloDe(Indice conexion, Indice bloque) const;
    /// The latest lines, at least `kMaximo` characters of them if there are so many.
    [[nodiscard]] std::string texto() const;
    /// The lines of what has happened since `visto`, which moves up to now. False when a part of it
    /// is gone already, or when it is more than a box shows: then it is what `texto` gives.
    bool seguir(std::uint64_t& visto, std::string& texto) const;
    [[nodiscard]] std::uint64_t hasta() const { return redaccion_->sucesos().siguiente(); }
    [[nodiscard]] std::string_view nombre() const { return nombreDe(caja_); }
    [[nodiscard]] std::int64_t indice() const { return indice_; }
    friend bool operator==(const Traza&, const Traza&) = default;

  private:
    class Final;
    [[nodiscard]] bool tiene(const Suceso& s) const;
    void agregar(const Suceso& s, std::string& texto) const;
    [[nodiscard]] bool desdeElAnillo(std::uint64_t primero, Final& lineas) const;
    [[nodiscard]] bool desdeLoApartado(std::uint64_t primero, Final& lineas) const;
    /// The latest lines since an event; false when there are more.
    [[nodiscard]] bool desde(std::uint64_t primero, std::string& texto) const;

    const Redaccion* redaccion_;
    Caja caja_;
    std::int64_t indice_;
    std::uint64_t ques_; ///< the kinds that may have a line in it, see bitDe
    Indice conexion_ = kNinguno;
    Indice bloque_ = kNinguno;
};

/// All trace boxes.
class Trazas {
  public:
    Trazas(const Sucesos& sucesos, const Tablas& tablas) : redaccion_(sucesos, tablas) {}
    Trazas(const Trazas&) = delete;
    Trazas& operator=(const Trazas&) = delete;

    [[nodiscard]] Traza txtTimer(std::size_t bloque) const {
        return {redaccion_, Caja::txtTimer, static_cast<std::int64_t>(bloque)};
    }
    [[nodiscard]] Traza txtTimerIpPuerto(std::size_t conexion) const {
        return {redaccion_, Caja::txtTimerIpPuerto, static_cast<std::int64_t>(conexion)};
    }

  private:
    Redaccion redaccion_;

  public:
    const Traza txtTramas{redaccion_, Caja::txtTramas};
    const Traza txtTramasDescartadas{redaccion_, Caja::txtTramasDescartadas};
    const Traza txtDemandaLecturaEscritura{redaccion_, Caja::txtDemandaLecturaEscritura};
    const Traza txtTimerEscritura{redaccion_, Caja::txtTimerEscritura};
    const Traza Text1{redaccion_, Caja::Text1};
    const Traza Text2{redaccion_, Caja::Text2};
};

/// Gets every line of every trace box as it happens.
class LectorDeTrazas {
  public:
    virtual ~LectorDeTrazas() = default;
    /// One or more whole lines; `indice` is -1 where boxes are not numbered.
    virtual void alAgregar(std::string_view caja, std::int64_t indice, std::string_view texto) = 0;
};

/// Words for everything at once, for a reader who wants all of it.
class TrazaAlMomento final : public OyenteDeSucesos {
  public:
    /// All must outlive this.
    TrazaAlMomento(Sucesos& sucesos, const Tablas& tablas, LectorDeTrazas& destino);
    ~TrazaAlMomento() override;
    TrazaAlMomento(const TrazaAlMomento&) = delete;
    TrazaAlMomento& operator=(const TrazaAlMomento&) = delete;

    void alSuceder(const Suceso& suceso, std::string_view texto) override;

  private:
    Sucesos& sucesos_;
    Redaccion redaccion_;
    LectorDeTrazas& destino_;
    std::string linea_;
};

} // namespace kv
