// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "events/suceso.h"
#include "events/textos.h"
#include "platform/reloj.h"

#include <array>
#include <cstdint>
#include <deque>
#include <initializer_list>
#include <memory>
#include <string_view>
#include <vector>

namespace kv {

/// Hears of everything as it happens. It must not say anything itself, nor let events run.
class OyenteDeSucesos {
  public:
    virtual ~OyenteDeSucesos() = default;
    /// `texto` is the event's own text, valid during the call, empty where there is none.
    virtual void alSuceder(const Suceso& suceso, std::string_view texto) = 0;
};

/// All that happened, said once and kept for a while: a day of a quiet plant, minutes of a busy
/// one. Whatever shows, counts or records something reads it here.
class Sucesos {
  public:
    static constexpr std::size_t kMaximo = std::size_t{1} << 20; ///< events, 48 bytes each

    /// The clock must outlive this. `maximo` is rounded up to thousands.
    explicit Sucesos(const Reloj& reloj, std::size_t maximo = kMaximo);

    void decir(Suceso suceso) { guardar(suceso, {}); }
    /// With a text, of which as much is kept as its kind may take up.
    void decir(Suceso suceso, std::string_view texto);

    /// Events have numbers, which only grow: [primero(), siguiente()) can be read.
    [[nodiscard]] std::uint64_t primero() const { return primero_; }
    [[nodiscard]] std::uint64_t siguiente() const { return siguiente_; }
    [[nodiscard]] const Suceso& operator[](std::uint64_t numero) const {
        const std::uint64_t k = numero - primero_;
        return trozos_[k / kTrozo]->sucesos[k % kTrozo];
    }
    /// Empty when it has none, or when it has been given up for later ones.
    [[nodiscard]] std::string_view textoDe(const Suceso& suceso) const;

    /// Of these kinds, or of all where none is named. It must outlive this or be taken off.
    void avisarA(OyenteDeSucesos* oyente, std::initializer_list<Que> deEstos = {});
    void dejarDeAvisarA(const OyenteDeSucesos* oyente) {
        std::erase_if(oyentes_, [oyente](const Oyente& o) { return o.quien == oyente; });
    }

  private:
    static constexpr std::size_t kTrozo = 1024;
    struct Trozo {
        std::int64_t desdeMs = 0; ///< when the first was said, on the clock that never goes back
        std::array<Suceso, kTrozo> sucesos;
    };

    struct Oyente {
        OyenteDeSucesos* quien;
        std::uint64_t de; ///< a bit for each kind that it hears of
    };
    static_assert(static_cast<unsigned>(Que::Ultimo) < 64);

    void guardar(Suceso& suceso, std::string_view texto);
    void hacerLugar();

    const Reloj& reloj_;
    std::size_t trozosMaximo_;
    std::deque<std::unique_ptr<Trozo>> trozos_; ///< full but for the last
    std::uint64_t primero_ = 0;
    std::uint64_t siguiente_ = 0;
    std::array<TextosDeSucesos, kAlmacenes> textos_;
    std::vector<Oyente> oyentes_;
};

} // namespace kv
